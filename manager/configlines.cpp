// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/configlines.h"

#include <QHash>
#include <QPair>

#include <algorithm>

namespace {

const QChar equalsSign = QLatin1Char('=');

/// Narrows a range of @p text until no white space stands at its ends.
void trim(const QString &text, int *first, int *last)
{
    while (*first < *last && text.at(*first).isSpace()) {
        ++*first;
    }
    while (*last > *first && text.at(*last - 1).isSpace()) {
        --*last;
    }
}

} // namespace

ConfigLine::ConfigLine(const QString *sourceText, int firstCharacter, int endOfLine)
    : source(sourceText)
    , first(firstCharacter)
    , last(endOfLine)
{
    for (int i = first; i < last; ++i) {
        if (source->at(i) == equalsSign) {
            const bool isSecond = separator >= 0;
            separator = isSecond ? -1 : i;
            if (isSecond) {
                break;
            }
        }
    }
}

bool ConfigLine::isWellFormed() const
{
    return separator >= 0;
}

bool ConfigLine::isRepeated() const
{
    return repeated;
}

QString ConfigLine::text() const
{
    return source->mid(first, last - first);
}

QString ConfigLine::sharedKey() const
{
    int start = first;
    int end = separator;
    trim(*source, &start, &end);
    return QString::fromRawData(source->constData() + start, end - start);
}

QString ConfigLine::key() const
{
    const QString shared = sharedKey();
    return QString(shared.constData(), shared.length());
}

QString ConfigLine::value() const
{
    return source->mid(separator + 1, last - separator - 1).trimmed();
}

QVector<ConfigLine> readConfigLines(const QString &text)
{
    QVector<ConfigLine> lines;
    for (int start = 0, end = 0; start < text.length(); start = end + 1) {
        end = text.indexOf(QLatin1Char('\n'), start);
        if (end < 0) {
            end = text.length();
        }
        int first = start;
        int last = end;
        trim(text, &first, &last);
        const bool isComment = first < last && text.at(first) == QLatin1Char('\'');
        if (end > start && !isComment) {
            lines.append(ConfigLine(&text, first, last));
        }
    }

    // Equal keys stand together once the lines are sorted by their keys' hashes, and a text is
    // looked at only where hashes are equal: with a million lines this takes an eighth of what a
    // hash table of the keys does.
    QVector<QPair<uint, int>> order;
    for (int i = 0; i < lines.count(); ++i) {
        if (lines.at(i).isWellFormed()) {
            order.append(qMakePair(uint(qHash(lines.at(i).sharedKey())), i));
        }
    }
    const QVector<ConfigLine> &read = lines;
    std::sort(order.begin(), order.end(),
              [&read](const QPair<uint, int> &left, const QPair<uint, int> &right) {
                  if (left.first != right.first) {
                      return left.first < right.first;
                  }
                  const int comparison
                      = read.at(left.second).sharedKey().compare(read.at(right.second).sharedKey());
                  return comparison != 0 ? comparison < 0 : left.second < right.second;
              });
    for (int i = 1; i < order.count(); ++i) {
        lines[order.at(i).second].repeated = order.at(i).first == order.at(i - 1).first
            && read.at(order.at(i).second).sharedKey()
                == read.at(order.at(i - 1).second).sharedKey();
    }
    return lines;
}
