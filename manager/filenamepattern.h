// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// A case-insensitive regular expression for whole file names.
///
/// Most files of a large directory match no pattern. The plain text with which the pattern begins
/// and ends rejects them at a fraction of the cost of the expression. The expression is compiled
/// when a file first passes that test, not while the host loads the plug-in; Qt caches the result.
class FileNamePattern
{
public:
    /// An expression that does not compile matches nothing.
    explicit FileNamePattern(const QString &regularExpression = QString());

    /// Whether the pattern matches all of @p fileName, a name without a directory.
    bool matches(const QString &fileName) const;

private:
    QString expression;
    QString plainStart;
    QString plainEnd;
};
