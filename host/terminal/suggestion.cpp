// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/suggestion.h"

#include <QVector>

#include <algorithm>

namespace {

/// The number of letters to insert, remove or replace to turn one word into the other.
int distanceBetween(const QString &left, const QString &right)
{
    QVector<int> row(right.length() + 1);
    for (int column = 0; column < row.count(); ++column) {
        row[column] = column;
    }
    for (int i = 0; i < left.length(); ++i) {
        int diagonal = row.at(0);
        row[0] = i + 1;
        for (int j = 0; j < right.length(); ++j) {
            const int replaced = diagonal + (left.at(i) == right.at(j) ? 0 : 1);
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({replaced, diagonal + 1, row.at(j) + 1});
        }
    }
    return row.last();
}

} // namespace

QString closestTo(const QString &word, const QStringList &candidates)
{
    QString closest;
    // With more differences it is a different word.
    int smallest = word.length() / 3 + 2;
    for (const QString &candidate : candidates) {
        const bool begun = !word.isEmpty() && candidate.startsWith(word);
        const int distance = begun ? 0 : distanceBetween(word, candidate);
        if (distance < smallest) {
            smallest = distance;
            closest = candidate;
        }
    }
    return closest;
}
