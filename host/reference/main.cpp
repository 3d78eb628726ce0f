// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/reference/completiontext.h"
#include "host/reference/manualtext.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QString>

#include <cstdio>

namespace {

QHash<QString, QString> markers()
{
    return {
        {QStringLiteral("VERSION"), QStringLiteral(LOOMWRIGHT_VERSION)},
        {QStringLiteral("MANUAL_COMMANDS"), manualCommands()},
        {QStringLiteral("MANUAL_INPUTS"), manualInputs()},
        {QStringLiteral("MANUAL_OPTIONS"), manualOptions()},
        {QStringLiteral("BASH_COMMANDS"), bashCommands()},
        {QStringLiteral("BASH_OPTIONS"), bashOptions()},
        {QStringLiteral("BASH_VALUES"), bashValues()},
        {QStringLiteral("ZSH_COMMANDS"), zshCommands()},
        {QStringLiteral("ZSH_OPTIONS"), zshOptions()},
        {QStringLiteral("FISH_COMPLETIONS"), fishCompletions()},
    };
}

/// Replaces every marker in @p text; the first unknown one is stored in @p unknown.
QString filled(const QString &text, QString *unknown)
{
    const QHash<QString, QString> values = markers();
    const QRegularExpression marker(QStringLiteral("@([A-Z_]+)@"));
    QString result;
    int end = 0;
    for (auto match = marker.match(text); match.hasMatch(); match = marker.match(text, end)) {
        if (!values.contains(match.captured(1)) && unknown->isEmpty()) {
            *unknown = match.captured();
        }
        result += text.midRef(end, match.capturedStart() - end) + values.value(match.captured(1));
        end = match.capturedEnd();
    }
    return result + text.midRef(end);
}

} // namespace

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
    QString unknown;
    const QByteArray text = filled(QString::fromUtf8(file.readAll()), &unknown).toUtf8();
    if (!unknown.isEmpty()) {
        std::fprintf(stderr, "%s: unknown marker %s\n", argv[1], qPrintable(unknown));
        return 1;
    }
    return std::fputs(text.constData(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}
