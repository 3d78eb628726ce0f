// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/report.h"

#include "host/terminal/exitstatus.h"

#include <QJsonDocument>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

const char green[] = "\033[32m";
const char red[] = "\033[31m";
const char plain[] = "\033[0m";

/// The width on screen: what a colour adds does not count.
int widthOf(const QString &text)
{
    int width = 0;
    bool isEscape = false;
    for (const QChar character : text) {
        if (character == QLatin1Char('\033')) {
            isEscape = true;
        } else if (!isEscape) {
            ++width;
        } else if (character == QLatin1Char('m')) {
            isEscape = false;
        }
    }
    return width;
}

QString alignedLine(const QStringList &cells, const QVector<int> &widths)
{
    QString line;
    for (int column = 0; column < cells.count(); ++column) {
        line += cells.at(column);
        if (column + 1 < cells.count()) {
            line += QString(widths.at(column) - widthOf(cells.at(column)) + 2, QLatin1Char(' '));
        }
    }
    while (line.endsWith(QLatin1Char(' '))) {
        line.chop(1);
    }
    return line;
}

} // namespace

Report::Report(Format outputFormat, bool quiet)
    : format(outputFormat)
    , isQuiet(quiet)
    , hasColour(isatty(STDOUT_FILENO) == 1 && qEnvironmentVariableIsEmpty("NO_COLOR")
                && qgetenv("TERM") != "dumb")
    , isStatusOnError(outputFormat == Format::Json)
{
}

void Report::keepOutputClean()
{
    isStatusOnError = true;
}

void Report::addStatus(const QString &message)
{
    addMessage(QStringLiteral("status"), message);
    if (!isQuiet) {
        write(isStatusOnError ? stderr : stdout, message.toLocal8Bit());
    }
}

void Report::addError(const QString &message)
{
    ++errors;
    addMessage(QStringLiteral("error"), message);
    if (format == Format::Text || !isQuiet) {
        write(stderr, message.toLocal8Bit());
    }
}

void Report::addProblem(const QString &text)
{
    set(QStringLiteral("problem"), text);
    write(stderr, "loomwright: " + text.toLocal8Bit());
}

int Report::errorCount() const
{
    return errors;
}

void Report::addMessage(const QString &channel, const QString &message)
{
    if (format == Format::Json) {
        messages.append(
            QJsonObject{{QStringLiteral("channel"), channel}, {QStringLiteral("text"), message}});
    }
}

void Report::print(const QString &line)
{
    if (format == Format::Text) {
        write(stdout, line.toLocal8Bit());
    }
}

void Report::print(const Table &table)
{
    QVector<int> widths(table.titles.count(), 0);
    const auto widen = [&widths](const QStringList &cells) {
        for (int column = 0; column < cells.count(); ++column) {
            widths[column] = std::max(widths.at(column), widthOf(cells.at(column)));
        }
    };
    widen(table.titles);
    std::for_each(table.rows.begin(), table.rows.end(), widen);

    print(alignedLine(table.titles, widths));
    for (const QStringList &row : table.rows) {
        print(alignedLine(row, widths));
    }
}

void Report::printRaw(const QByteArray &bytes)
{
    if (format == Format::Text) {
        write(stdout, bytes);
    }
}

void Report::set(const QString &name, const QJsonValue &value)
{
    document.insert(name, value);
}

QString Report::good(const QString &text) const
{
    return coloured(green, text);
}

QString Report::bad(const QString &text) const
{
    return coloured(red, text);
}

QString Report::coloured(const char *code, const QString &text) const
{
    return hasColour ? QLatin1String(code) + text + QLatin1String(plain) : text;
}

/// Writes at once, so that both streams stay in step; a line that is not ended yet is ended.
void Report::write(std::FILE *stream, const QByteArray &bytes)
{
    const QByteArray text = bytes.endsWith('\n') ? bytes : bytes + '\n';
    const bool isWritten
        = std::fwrite(text.constData(), 1, size_t(text.size()), stream) == size_t(text.size())
        && std::fflush(stream) == 0;
    if (!isWritten && stream == stdout) {
        hasWriteFailed = true;
    }
}

int Report::finish(int exitStatus)
{
    if (format == Format::Json) {
        set(QStringLiteral("exitStatus"), exitStatus);
        set(QStringLiteral("messages"), messages);
        write(stdout, QJsonDocument(document).toJson());
    }
    if (hasWriteFailed) {
        write(stderr, "loomwright: standard output could not be written.");
        return exitStatus == AllWell ? Failed : exitStatus;
    }
    return exitStatus;
}
