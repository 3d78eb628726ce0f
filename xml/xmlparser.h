// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// An XML parser with limits.

#include <QString>

class QDomDocument;
class QIODevice;

/// Deepest nesting of elements, and of parentheses in a declaration, that parseXml() accepts.
///
/// A QDomDocument recurses once per level when it is destroyed and when the text below an element
/// is collected. Measured with Qt 5.15 on x86-64: 3,093 levels fit on a stack of 1 MiB, 24,898 on
/// one of 8 MiB; one level more ends the process. A third of the smaller figure leaves room for the
/// host's own frames. Qt's reader recurses once per parenthesis of a declaration.
const int maxElementDepth = 1000;

/// How many characters entities may stand for, counted each time one is used, in addition to the
/// length of the document. Without a limit, a hundred kilobytes could become gigabytes in memory.
const int maxEntityText = 1 << 21;

/// Parses @p text into @p document as QDomDocument::setContent does, but fails if elements or
/// declarations nest deeper than ::maxElementDepth, or if entities stand for more than
/// ::maxEntityText characters beyond the length of @p text.
///
/// @param document receives the content; undefined on failure
/// @param text the XML text itself, not a file name
/// @param errorMessage, errorLine, errorColumn set on failure unless null (line and column from 1)
/// @return whether the whole text was parsed
bool parseXml(QDomDocument *document, const QString &text, QString *errorMessage = nullptr,
              int *errorLine = nullptr, int *errorColumn = nullptr);

/// Parses all bytes of @p device, with the same limits. The encoding is that of the byte-order mark
/// or the XML declaration.
/// @param document receives the content; undefined on failure
/// @param device must be open for reading; not closed
/// @return whether everything was parsed
bool parseXml(QDomDocument *document, QIODevice *device);
