// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// An XML parser with limits.

#include <QString>

class QDomDocument;
class QIODevice;

/// Deepest nesting of elements that parseXml() accepts.
///
/// A QDomDocument recurses once per level when it is destroyed and when the text below an element
/// is collected. Measured with Qt 5.15 on x86-64: 3,093 levels fit on a stack of 1 MiB, 24,898 on
/// one of 8 MiB; one level more ends the process. A third of the smaller figure leaves room for the
/// host's own frames.
const int maxElementDepth = 1000;

/// Maximum length of the text that one entity stands for, in characters. Qt 5.15 has the same
/// limit; Qt 4 expands until memory runs out.
const int maxEntityLength = 4096;

/// Parses @p text into @p document as QDomDocument::setContent does, but fails if elements nest
/// deeper than ::maxElementDepth, if an entity stands for more than ::maxEntityLength characters or
/// is declared after one that refers to it, or if entities expand the document to more than ten
/// times its length plus a million characters.
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
/// @param device must be open for reading and seekable; not closed
/// @return whether everything was parsed
bool parseXml(QDomDocument *document, QIODevice *device);
