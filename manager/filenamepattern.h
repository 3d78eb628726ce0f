// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// A regular expression for whole file names, in any case of letters.
///
/// Most files of a large folder fit no pattern: they are turned away by the plain text with which
/// the pattern begins and ends, at a fraction of what the expression costs. It is compiled when a
/// file first gets past that (Qt keeps it), and not while the host waits for the plug-in to load.
class FileNamePattern
{
public:
    /// An expression that does not compile matches nothing.
    explicit FileNamePattern(const QString &regularExpression = QString());

    /// Whether the pattern fits all of @p fileName, which has no directory.
    bool matches(const QString &fileName) const;

private:
    QString expression;
    QString plainStart;
    QString plainEnd;
};
