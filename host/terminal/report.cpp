// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/report.h"

#include "host/core/signalwatch.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/safetext.h"

#include <QJsonDocument>

#include <algorithm>
#include <unistd.h>

namespace {

const int schemaVersion = 1;

/// Aligns fields that are added one after the other, such as those of a build.
const int minTitleWidth = 8;

const char green[] = "\033[32m";
const char red[] = "\033[31m";
const char plain[] = "\033[0m";
const char eraseLine[] = "\r\033[K";

/// The width on screen, without colour codes.
int widthOf(QString text)
{
    for (const char *code : {green, red, plain}) {
        text.remove(QLatin1String(code));
    }
    return text.length();
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

QString textOf(const Field &field)
{
    if (!field.text.isNull()) {
        return field.text;
    }
    return field.value.isDouble() ? QString::number(field.value.toDouble(), 'f', 0)
                                  : field.value.toString();
}

QString kindName(ProblemKind kind)
{
    switch (kind) {
    case ProblemKind::Input:
        return QStringLiteral("input");
    case ProblemKind::Difference:
        return QStringLiteral("difference");
    case ProblemKind::Candidates:
        return QStringLiteral("candidates");
    case ProblemKind::Message:
        return QStringLiteral("message");
    case ProblemKind::Finding:
        return QStringLiteral("finding");
    case ProblemKind::Check:
        break;
    }
    return QStringLiteral("check");
}

QString severityName(Severity severity)
{
    switch (severity) {
    case Severity::Warning:
        return QStringLiteral("warning");
    case Severity::Error:
        return QStringLiteral("error");
    case Severity::Fatal:
        break;
    }
    return QStringLiteral("fatal");
}

QJsonObject toJson(const Record &record)
{
    QJsonObject object;
    for (const Field &field : record) {
        if (field.name) {
            object.insert(QLatin1String(field.name), field.value);
        }
    }
    return object;
}

QJsonObject toJson(const Problem &problem)
{
    return toJson(Record{{nullptr, "kind", kindName(problem.kind)},
                         {nullptr, "severity", severityName(problem.severity)},
                         {nullptr, "ingredient", problem.ingredient.name},
                         {nullptr, "key", problem.ingredient.key},
                         {nullptr, "text", problem.text},
                         {nullptr, "required", problem.required},
                         {nullptr, "actual", problem.actual},
                         {nullptr, "files", QJsonArray::fromStringList(problem.files)}});
}

} // namespace

Report::Report(Format outputFormat, Verbosity outputVerbosity, const SignalWatch &watch)
    : format(outputFormat)
    , verbosity(outputVerbosity)
    , output{STDOUT_FILENO, isatty(STDOUT_FILENO) == 1, true}
    , errors{STDERR_FILENO, isatty(STDERR_FILENO) == 1, true}
    , hasColour(output.isTerminal && qEnvironmentVariableIsEmpty("NO_COLOR")
                && qgetenv("TERM") != "dumb")
    , isStatusOnError(outputFormat == Format::Json)
    , signalWatch(watch)
    , writer(watch)
{
}

void Report::keepOutputClean()
{
    isStatusOnError = true;
}

void Report::setSource(Source messageSource)
{
    source = messageSource;
}

bool Report::isVerbose() const
{
    return verbosity == Verbosity::Verbose;
}

void Report::addStatus(const QString &message)
{
    if (source == Source::Repeated) {
        return;
    }
    addMessage("status", message);
    const bool shown = source == Source::Plugin ? isVerbose() : verbosity != Verbosity::Quiet;
    if (!shown) {
        return;
    }
    Stream *stream = isStatusOnError ? &errors : &output;
    if (source == Source::Stitcher) {
        writeUnchanged(stream, message);
    } else {
        writeLine(stream, message);
    }
}

void Report::addError(const QString &message)
{
    if (source == Source::Repeated) {
        return;
    }
    addMessage("error", message);
    if (format == Format::Json && verbosity == Verbosity::Quiet) {
        return;
    }
    if (source == Source::Stitcher) {
        writeUnchanged(&errors, message);
    } else {
        writeLine(&errors, message);
    }
}

void Report::addFailure(const QString &text)
{
    failures.append(toJson(Record{{nullptr, "kind", QStringLiteral("failure")},
                                  {nullptr, "severity", QStringLiteral("fatal")},
                                  {nullptr, "text", text}}));
    printError(text);
}

void Report::printError(const QString &text)
{
    writeLine(&errors, QLatin1String("loomwright: ") + text);
}

void Report::printHint(const QString &text)
{
    if (format == Format::Text) {
        writeLine(&errors, text);
    }
}

void Report::noteProblem(const Problem &problem)
{
    problems.append(toJson(problem));
}

void Report::addWarning(const QString &text)
{
    warnings.append(text);
    printWarning(text);
}

void Report::printWarning(const QString &text)
{
    if (format == Format::Text || verbosity != Verbosity::Quiet) {
        writeLine(&errors, QLatin1String("loomwright: warning: ") + text);
    }
}

void Report::showProgress(const QString &text)
{
    if (!errors.isTerminal || verbosity == Verbosity::Quiet
        || (text.isEmpty() && !isProgressShown)) {
        return;
    }
    if (!isProgressShown) {
        startLine(&errors);
    }
    isProgressShown = !text.isEmpty();
    writer.write(errors.descriptor, eraseLine + safeLine(text).toLocal8Bit());
}

void Report::addMessage(const char *channel, const QString &message)
{
    if (format == Format::Json) {
        messages.append(toJson(
            Record{{nullptr, "channel", QLatin1String(channel)}, {nullptr, "text", message}}));
    }
}

void Report::print(const QString &line)
{
    if (format == Format::Text) {
        writeLine(&output, line);
    }
}

void Report::printUnlessQuiet(const QString &line)
{
    if (verbosity != Verbosity::Quiet) {
        print(line);
    }
}

void Report::printRaw(const QByteArray &bytes)
{
    if (format == Format::Text) {
        startLine(&output);
        write(&output,
              output.isTerminal ? safeText(QString::fromLocal8Bit(bytes)).toLocal8Bit() : bytes);
    }
}

void Report::set(const char *name, const QJsonValue &value)
{
    document.insert(QLatin1String(name), value);
}

void Report::add(const Record &record)
{
    QVector<QStringList> lines;
    for (const Field &field : record) {
        if (field.name) {
            set(field.name, field.value);
        }
        if (field.title) {
            lines.append(
                {QString::fromLatin1(field.title).leftJustified(minTitleWidth), textOf(field)});
        }
    }
    printLines(lines);
}

void Report::printTable(const std::vector<Record> &rows)
{
    QVector<QStringList> lines;
    for (const Record &row : rows) {
        QStringList titles;
        QStringList cells;
        for (const Field &field : row) {
            if (field.title) {
                titles.append(QLatin1String(field.title));
                cells.append(textOf(field));
            }
        }
        if (lines.isEmpty()) {
            lines.append(titles);
        }
        lines.append(cells);
    }
    printLines(lines);
}

void Report::setList(const char *name, const std::vector<Record> &rows)
{
    QJsonArray list;
    for (const Record &row : rows) {
        list.append(toJson(row));
    }
    set(name, list);
}

/// Prints cells in aligned columns.
void Report::printLines(const QVector<QStringList> &lines)
{
    if (format != Format::Text || lines.isEmpty()) {
        return;
    }
    QVector<QStringList> shown = lines;
    QVector<int> widths(lines.first().count(), 0);
    for (QStringList &cells : shown) {
        for (int column = 0; column < cells.count(); ++column) {
            QString &cell = cells[column];
            const bool isOurs = hasColour && cell.startsWith(QLatin1Char('\033'));
            cell = output.isTerminal && !isOurs ? safeLine(cell) : cell;
            widths[column] = std::max(widths.at(column), widthOf(cell));
        }
    }
    startLine(&output);
    for (const QStringList &cells : qAsConst(shown)) {
        write(&output, alignedLine(cells, widths).toLocal8Bit() + '\n');
    }
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

/// Ends a line that the stitcher has left unfinished.
void Report::startLine(Stream *stream)
{
    if (!stream->isAtLineStart) {
        write(stream, "\n");
    }
}

/// Writes a text on lines of its own.
void Report::writeLine(Stream *stream, const QString &text)
{
    const QByteArray bytes = (stream->isTerminal ? safeText(text) : text).toLocal8Bit();
    startLine(stream);
    write(stream, bytes.endsWith('\n') ? bytes : bytes + '\n');
}

void Report::writeUnchanged(Stream *stream, const QString &text)
{
    write(stream, (stream->isTerminal ? safeOutput(text) : text).toLocal8Bit());
}

void Report::write(Stream *stream, const QByteArray &bytes)
{
    if (bytes.isEmpty()) {
        return;
    }
    showProgress(QString());
    stream->isAtLineStart = bytes.endsWith('\n');
    if (output.isTerminal && errors.isTerminal) {
        // Both are on the same screen.
        output.isAtLineStart = stream->isAtLineStart;
        errors.isAtLineStart = stream->isAtLineStart;
    }
    writer.write(stream->descriptor, bytes);
}

int Report::finish(int exitStatus)
{
    showProgress(QString());
    if (format == Format::Json) {
        set("schemaVersion", schemaVersion);
        set("exitStatus", exitStatus);
        // The causes come first.
        for (const QJsonValue &failure : qAsConst(failures)) {
            problems.append(failure);
        }
        set("problems", problems);
        set("warnings", warnings);
        set("messages", messages);
        writeLine(&output, QString::fromUtf8(QJsonDocument(document).toJson()));
    }
    if (!writer.hasFailed(output.descriptor)) {
        return exitStatus;
    }
    if (!signalWatch.hasReceived()) {
        writeLine(&errors, QStringLiteral("loomwright: standard output could not be written."));
    }
    return exitStatus == Success ? Failed : exitStatus;
}
