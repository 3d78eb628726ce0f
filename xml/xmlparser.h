// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Parsing XML with limits.

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

/// Length of the text that one entity may stand for, in characters. Qt 5.15 has this limit of its
/// own; Qt 4 expands until memory runs out.
const int maxEntityLength = 4096;

/// Parses @p text into @p document as QDomDocument::setContent does, but fails where elements nest
/// deeper than ::maxElementDepth, where an entity stands for more than ::maxEntityLength characters
/// or is declared after one that refers to it, or where entities expand the document to more than
/// ten times its length and a million characters.
///
/// @param document receives the content; undefined on failure
/// @param text the XML text itself, not a file name
/// @param errorMessage, errorLine, errorColumn set on failure where given (line and column from 1)
/// @return whether the whole text was parsed
bool parseXml(QDomDocument *document, const QString &text, QString *errorMessage = nullptr,
              int *errorLine = nullptr, int *errorColumn = nullptr);

/// Parses all bytes of @p device, which must be open for reading and seekable. The encoding is that
/// of the byte-order mark or the XML declaration.
bool parseXml(QDomDocument *document, QIODevice *device);
