// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/reference/markers.h"

#include <QFile>
#include <QRegularExpression>

#include <cstdio>

/// Generates a manual page or a completion script from the command table.
int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("Usage: loomwright-reference TEMPLATE\n", stderr);
        return 2;
    }
    QFile file(QFile::decodeName(argv[1]));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "loomwright-reference: cannot read %s\n", argv[1]);
        return 1;
    }
    QString text = QString::fromUtf8(file.readAll());
    for (const Markers &markers :
         {manualMarkers(), completionMarkers(),
          Markers{{QStringLiteral("VERSION"), QStringLiteral(LOOMWRIGHT_VERSION)}}}) {
        for (auto marker = markers.begin(); marker != markers.end(); ++marker) {
            text.replace(QLatin1Char('@') + marker.key() + QLatin1Char('@'), marker.value());
        }
    }
    const auto unknown = QRegularExpression(QStringLiteral("@[A-Z_]+@")).match(text);
    if (unknown.hasMatch()) {
        std::fprintf(stderr, "%s: unknown marker %s\n", argv[1], qPrintable(unknown.captured()));
        return 1;
    }
    return std::fputs(text.toUtf8().constData(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}
