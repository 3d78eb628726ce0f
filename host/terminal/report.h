// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/problem.h"
#include "host/terminal/outputqueue.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

#include <vector>

/// One fact of a report, stated once for people and for JSON.
struct Field {
    const char *title; ///< For people; null when it is in JSON only.
    const char *name;  ///< In JSON; null when it is for people only.
    QJsonValue value;  ///< In JSON, and for people when @c text is null.
    QString text = {}; ///< For people, where that is not the value.
};

/// The fields of one thing; in a table, one row.
using Record = std::vector<Field>;

/// Everything that the program says: messages of the plug-in as they come, tables and texts, or one
/// JSON document at the end. Text that reaches a terminal holds no control characters but our own.
class Report
{
public:
    enum class Format { Text, Json };
    enum class Verbosity { Quiet, Normal, Verbose };
    /// Whose messages the plug-in relays at the moment.
    enum class Source {
        Plugin,     ///< Its own: status is shown when verbose.
        Validation, ///< The report on a legacy data file: status is shown unless quiet.
        Stitcher    ///< The stitcher's output in chunks: passed on as it is, status unless quiet.
    };

    Report(Format outputFormat, Verbosity outputVerbosity);

    /// Sends the plug-in's status to standard error, since standard output holds a configuration.
    void keepOutputClean();
    void setSource(Source messageSource);

    void addStatus(const QString &message);
    void addError(const QString &message);
    /// A failure that the program itself has found: a line on standard error, and one of the
    /// problems in JSON.
    void addFailure(const QString &text);
    /// A line on standard error; in JSON as well.
    void printError(const QString &text);
    /// Lines on standard error that belong to a failure before; nothing with JSON.
    void printHint(const QString &text);
    /// One of the problems in JSON; nothing without JSON.
    void noteProblem(const Problem &problem);
    void addWarning(const QString &text);
    /// Replaces the line of progress on a terminal; an empty text removes it.
    void showProgress(const QString &text);

    bool isVerbose() const;

    /// A line of text on standard output; nothing with JSON.
    void print(const QString &line);
    /// The same, but nothing when quiet.
    void printUnlessQuiet(const QString &line);
    /// Bytes on standard output as they are; nothing with JSON.
    void printRaw(const QByteArray &bytes);
    /// A value of the JSON document; nothing without JSON.
    void set(const char *name, const QJsonValue &value);
    /// The fields, each on a line of its own.
    void add(const Record &record);
    /// A table for people; nothing with JSON.
    void printTable(const std::vector<Record> &rows);
    /// A list in JSON; nothing without JSON.
    void setList(const char *name, const std::vector<Record> &rows);

    /// @p text in green or red where the output is a terminal that shows colour.
    QString good(const QString &text) const;
    QString bad(const QString &text) const;

    /// The queue through which all is written, to learn about a reader that is gone.
    const OutputQueue &queue() const;
    /// Notes that the program ends because of a signal; what cannot be written soon is given up.
    void setEndSignal(int signalNumber);
    /// The signal of which the program has to die; 0 for none.
    int endSignal() const;

    /// Ends the report: prints the JSON document, waits until all is written, and returns @p
    /// exitStatus, or ExitStatus::Failed when standard output could not take all of it.
    int finish(int exitStatus);

private:
    struct Stream {
        int descriptor;
        bool isTerminal;
        bool isAtLineStart;
    };

    QString coloured(const char *code, const QString &text) const;
    void addMessage(const char *channel, const QString &message);
    void printLines(const QVector<QStringList> &lines);
    void startLine(Stream *stream);
    void writeLine(Stream *stream, const QString &text);
    void writeUnchanged(Stream *stream, const QString &text);
    void write(Stream *stream, const QByteArray &bytes);

    Format format;
    Verbosity verbosity;
    Source source = Source::Plugin;
    Stream output;
    Stream errors;
    bool hasColour;
    bool isStatusOnError;
    bool isProgressShown = false;
    int endSignalNumber = 0;
    OutputQueue writer;
    QJsonArray messages;
    QJsonArray problems;
    QJsonArray warnings;
    QJsonObject document;
};
