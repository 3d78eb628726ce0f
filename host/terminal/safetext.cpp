// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/safetext.h"

namespace {

const ushort firstDirectionMark = 0x202a;
const ushort lastDirectionMark = 0x202e;
const ushort firstIsolate = 0x2066;
const ushort lastIsolate = 0x2069;

bool isHarmful(QChar character)
{
    const ushort code = character.unicode();
    return character.category() == QChar::Other_Control
        || (code >= firstDirectionMark && code <= lastDirectionMark)
        || (code >= firstIsolate && code <= lastIsolate);
}

} // namespace

QString safeText(const QString &text, const QString &allowed)
{
    QString safe;
    safe.reserve(text.length());
    for (const QChar character : text) {
        if (isHarmful(character) && !allowed.contains(character)) {
            safe += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            safe += character;
        }
    }
    return safe;
}
