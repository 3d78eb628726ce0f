// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/filenamepattern.h"

#include <QRegExp>

namespace {

bool isPlain(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_');
}

/// The text that every match begins with: what precedes the first special character, without a last
/// character that is repeated or optional.
QString plainStartOf(const QString &expression)
{
    int length = 0;
    while (length < expression.length() && isPlain(expression.at(length))) {
        ++length;
    }
    const bool quantified = length < expression.length()
        && QString::fromLatin1("*+?{").contains(expression.at(length));
    return expression.left(quantified ? qMax(0, length - 1) : length);
}

/// The text that every match ends with: what follows the last special character, unless a backslash
/// gives that text another meaning.
QString plainEndOf(const QString &expression)
{
    int start = expression.length();
    while (start > 0 && isPlain(expression.at(start - 1))) {
        --start;
    }
    const bool escaped = start > 0 && expression.at(start - 1) == QLatin1Char('\\');
    return escaped ? QString() : expression.mid(start);
}

/// Whether two characters may be the same letter for the expression.
bool mayBeSame(QChar left, QChar right)
{
    return left.toLower() == right.toLower() || left.toCaseFolded() == right.toCaseFolded();
}

/// Whether @p fileName has @p text at @p position, in upper or lower case.
bool hasTextAt(const QString &fileName, int position, const QString &text)
{
    if (position < 0 || position + text.length() > fileName.length()) {
        return false;
    }
    for (int i = 0; i < text.length(); ++i) {
        if (!mayBeSame(fileName.at(position + i), text.at(i))) {
            return false;
        }
    }
    return true;
}

} // namespace

FileNamePattern::FileNamePattern(const QString &regularExpression)
    : expression(regularExpression)
{
    // Alternatives have no common start or end.
    if (expression.contains(QLatin1Char('|'))) {
        return;
    }
    const int start = expression.startsWith(QLatin1Char('^')) ? 1 : 0;
    const int end = expression.endsWith(QLatin1Char('$')) ? 1 : 0;
    const QString inner = expression.mid(start, expression.length() - start - end);
    plainStart = plainStartOf(inner);
    plainEnd = plainEndOf(inner);
}

bool FileNamePattern::matches(const QString &fileName) const
{
    return hasTextAt(fileName, fileName.length() - plainEnd.length(), plainEnd)
        && hasTextAt(fileName, 0, plainStart)
        && QRegExp(expression, Qt::CaseInsensitive).exactMatch(fileName);
}
