// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"
#include "host/terminal/output.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <vector>

/// Green, red or no colour, if the output is a terminal with colour.
enum class Tone { Plain, Good, Bad };

/// One fact of a report, for people and for JSON.
struct Field {
    const char *title; ///< For people; null if the field is only in JSON.
    const char *name;  ///< In JSON; null if the field is only for people.
    QJsonValue value;  ///< In JSON, and for people when @c text is null.
    QString text = {}; ///< For people, if it differs from the value.
    Tone tone = Tone::Plain;
};

/// The fields of one object; in a table, one row.
using Record = std::vector<Field>;

/// The program's output: messages of the plug-in as they arrive, tables and texts, or one JSON
/// document at the end. Text for a terminal contains no control characters except the program's
/// own.
class Report
{
public:
    enum class Format { Text, Json };
    enum class Verbosity { Quiet, Normal, Verbose };
    /// Where the messages that the plug-in relays come from.
    enum class Source {
        Plugin,     ///< The plug-in itself: status is shown with --verbose, on standard error.
        Validation, ///< The report on a data file: status is hidden by --quiet.
        Stitcher    ///< The stitcher's output, passed on in chunks: status is hidden by --quiet.
    };

    /// @param watch must outlive this object
    Report(Format outputFormat, Verbosity outputVerbosity, const SignalWatch &watch);

    void setSource(Source messageSource);

    void addStatus(const QString &message);
    void addError(const QString &message);
    /// A failure of the program itself: a line on standard error, and a problem in JSON.
    /// @return ExitStatus::Failed
    int addFailure(const QString &text);
    /// A line on standard error, and a warning in JSON.
    void printError(const QString &text);
    /// The same for a warning that is among the problems.
    void printWarning(const QString &text);
    /// More lines on standard error for an earlier failure; nothing with JSON.
    void printHint(const QString &text);
    /// Problems in JSON; nothing without JSON.
    void addProblems(const Problems &added);
    /// A line on standard error, and a warning of its own in JSON.
    void addWarning(const QString &text);

    bool isVerbose() const;

    /// A line of text on standard output; nothing with JSON.
    void print(const QString &line, Tone tone = Tone::Plain);
    /// The same, but nothing when quiet.
    void printUnlessQuiet(const QString &line);
    /// Bytes on standard output, unchanged; nothing with JSON.
    void printRaw(const QByteArray &bytes);
    /// A value of the JSON document; nothing without JSON.
    void set(const char *name, const QJsonValue &value);
    /// The fields, one per line.
    void add(const Record &record);
    /// A table for people; nothing with JSON.
    void printTable(const std::vector<Record> &rows);
    /// A list in JSON; nothing without JSON.
    void setList(const char *name, const std::vector<Record> &rows);

    /// Ends the report: prints the JSON document, and returns @p exitStatus, or ExitStatus::Failed
    /// when writing to standard output failed.
    int finish(int exitStatus);

private:
    struct Stream {
        int descriptor;
        bool isTerminal;
        bool isAtLineStart;
    };

    /// One text of a table.
    struct Cell {
        QString text;
        Tone tone = Tone::Plain;
    };
    using Cells = std::vector<Cell>;

    QString coloured(const QString &text, Tone tone) const;
    void addMessage(const char *channel, const QString &message);
    void relay(Stream *stream, const QString &message);
    void printRows(std::vector<Cells> rows);
    void startLine(Stream *stream);
    void writeLine(Stream *stream, const QString &text, Tone tone = Tone::Plain);
    void writeJson(const QByteArray &json);
    void write(Stream *stream, const QByteArray &bytes);

    Format format;
    Verbosity verbosity;
    Source source = Source::Plugin;
    Stream output;
    Stream errors;
    bool hasColour;
    const SignalWatch &signalWatch;
    Output writer;
    QJsonArray messages;
    QJsonArray problems;
    QJsonArray failures;
    QJsonArray warnings;
    QJsonObject document;
};
