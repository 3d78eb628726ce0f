// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/terminal/report.h"

#include "host/core/signalwatch.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/safetext.h"

#include <QJsonDocument>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace {

const int schemaVersion = 1;

/// Aligns fields that are added one after the other, such as those of a build.
const int minTitleWidth = 8;

const int columnGap = 2;

/// In the order of ProblemKind.
const char *const kindNames[]
    = {"input", "difference", "candidates", "message", "finding", "check"};
/// In the order of Severity.
const char *const severityNames[] = {"warning", "error", "fatal"};

QString textOf(const Field &field)
{
    return field.text.isNull() ? field.value.toString() : field.text;
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
    return toJson(Record{{nullptr, "kind", kindNames[int(problem.kind)]},
                         {nullptr, "severity", severityNames[int(problem.severity)]},
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
    , signalWatch(watch)
    , writer(watch)
{
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
    addMessage("status", message);
    const bool isPlugin = source == Source::Plugin;
    if (isPlugin ? isVerbose() : verbosity != Verbosity::Quiet) {
        // Standard output is for results alone.
        relay(isPlugin || format == Format::Json ? &errors : &output, message);
    }
}

void Report::addError(const QString &message)
{
    addMessage("error", message);
    if (format == Format::Text || verbosity != Verbosity::Quiet) {
        relay(&errors, message);
    }
}

/// Shows a message of the plug-in; the stitcher's output arrives in chunks and stays as it is. It
/// may overwrite its own lines to show progress.
void Report::relay(Stream *stream, const QString &message)
{
    if (source == Source::Stitcher) {
        const QString shown
            = stream->isTerminal ? safeText(message, QStringLiteral("\n\t\r")) : message;
        write(stream, shown.toLocal8Bit());
    } else {
        writeLine(stream, message);
    }
}

int Report::addFailure(const QString &text)
{
    failures.append(toJson(Record{
        {nullptr, "kind", "failure"}, {nullptr, "severity", "fatal"}, {nullptr, "text", text}}));
    printError(text);
    return Failed;
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

void Report::addProblems(const Problems &added)
{
    for (const Problem &problem : added) {
        problems.append(toJson(problem));
    }
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

void Report::addMessage(const char *channel, const QString &message)
{
    if (format == Format::Json) {
        messages.append(toJson(
            Record{{nullptr, "channel", QLatin1String(channel)}, {nullptr, "text", message}}));
    }
}

void Report::print(const QString &line, Tone tone)
{
    if (format == Format::Text) {
        writeLine(&output, line, tone);
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
    std::vector<Cells> rows;
    for (const Field &field : record) {
        if (field.name) {
            set(field.name, field.value);
        }
        if (field.title) {
            rows.push_back({{QString::fromLatin1(field.title).leftJustified(minTitleWidth)},
                            {textOf(field), field.tone}});
        }
    }
    printRows(std::move(rows));
}

void Report::printTable(const std::vector<Record> &rows)
{
    std::vector<Cells> shown;
    for (const Record &row : rows) {
        Cells titles;
        Cells cells;
        for (const Field &field : row) {
            if (field.title) {
                titles.push_back({QLatin1String(field.title)});
                cells.push_back({textOf(field), field.tone});
            }
        }
        if (shown.empty()) {
            shown.push_back(titles);
        }
        shown.push_back(cells);
    }
    printRows(std::move(shown));
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
void Report::printRows(std::vector<Cells> rows)
{
    if (format != Format::Text || rows.empty()) {
        return;
    }
    std::vector<int> widths(rows.front().size(), 0);
    for (Cells &cells : rows) {
        for (std::size_t column = 0; column < cells.size(); ++column) {
            QString &text = cells[column].text;
            text = output.isTerminal ? safeText(text, QString()) : text;
            widths[column] = std::max(widths[column], text.length() + columnGap);
        }
    }
    startLine(&output);
    for (const Cells &cells : rows) {
        QString line;
        for (std::size_t column = 0; column < cells.size(); ++column) {
            const auto &[text, tone] = cells[column];
            line
                += coloured(text, tone) + QString(widths[column] - text.length(), QLatin1Char(' '));
        }
        while (line.endsWith(QLatin1Char(' '))) {
            line.chop(1);
        }
        write(&output, line.toLocal8Bit() + '\n');
    }
}

QString Report::coloured(const QString &text, Tone tone) const
{
    if (!hasColour || tone == Tone::Plain) {
        return text;
    }
    const QLatin1String code(tone == Tone::Good ? "\033[32m" : "\033[31m");
    return code + text + QLatin1String("\033[0m");
}

/// Ends a line that the stitcher has left unfinished.
void Report::startLine(Stream *stream)
{
    if (!stream->isAtLineStart) {
        write(stream, "\n");
    }
}

/// Writes a text on lines of its own.
void Report::writeLine(Stream *stream, const QString &text, Tone tone)
{
    const QString shown = stream->isTerminal ? safeText(text) : text;
    startLine(stream);
    write(stream,
          coloured(shown, tone).toLocal8Bit() + (shown.endsWith(QLatin1Char('\n')) ? "" : "\n"));
}

/// JSON is UTF-8 in every locale, and may be large: it is converted for a terminal alone.
void Report::writeJson(const QByteArray &json)
{
    if (output.isTerminal) {
        writeLine(&output, QString::fromUtf8(json));
    } else {
        write(&output, json);
    }
}

void Report::write(Stream *stream, const QByteArray &bytes)
{
    if (bytes.isEmpty()) {
        return;
    }
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
        writeJson(QJsonDocument(document).toJson());
    }
    if (!writer.hasFailed(output.descriptor)) {
        return exitStatus;
    }
    if (!signalWatch.hasReceived()) {
        writeLine(&errors, QStringLiteral("loomwright: standard output could not be written."));
    }
    return exitStatus == Success ? Failed : exitStatus;
}
