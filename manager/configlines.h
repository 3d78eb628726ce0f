// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVector>

/// One line of a configuration that is neither empty nor a comment. It points into the text that it
/// was read from, which must outlive it: a line costs no copy until its words are asked for.
class ConfigLine
{
public:
    ConfigLine() = default;
    /// The line of @p sourceText from @p firstCharacter up to, without, @p endOfLine; no white space
    /// may stand at its ends.
    ConfigLine(const QString *sourceText, int firstCharacter, int endOfLine);

    /// Whether there is exactly one equals sign.
    bool isWellFormed() const;
    /// Whether an earlier line has the same key.
    bool isRepeated() const;
    /// The line as it stands.
    QString text() const;
    /// What stands before and behind the equals sign, without white space at the ends.
    QString key() const;
    QString value() const;

private:
    friend QVector<ConfigLine> readConfigLines(const QString &text);

    /// The key where it stands, without a copy.
    QString sharedKey() const;

    const QString *source = nullptr;
    int first = 0;
    int last = 0;
    int separator = -1;
    bool repeated = false;
};

/// The lines of @p text, which must outlive them.
QVector<ConfigLine> readConfigLines(const QString &text);
