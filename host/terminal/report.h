// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

#include <cstdio>

/// A table for people: aligned columns under their titles.
struct Table {
    QStringList titles;
    QVector<QStringList> rows;
};

/// Everything that the program says: messages of the plug-in as they come, tables and texts, or one
/// JSON document at the end.
class Report
{
public:
    enum class Format { Text, Json };

    /// @param quiet drops the plug-in's status messages
    Report(Format outputFormat, bool quiet);

    /// Sends the plug-in's status to standard error, since standard output holds a configuration.
    void keepOutputClean();

    void addStatus(const QString &message);
    void addError(const QString &message);
    /// A failure that the program itself has found; it goes where errors go.
    void addProblem(const QString &text);
    /// How many errors the plug-in has sent.
    int errorCount() const;

    /// A line of text on standard output; nothing with JSON.
    void print(const QString &line);
    void print(const Table &table);
    /// Bytes on standard output as they are; nothing with JSON.
    void printRaw(const QByteArray &bytes);
    /// A value of the JSON document; nothing without JSON.
    void set(const QString &name, const QJsonValue &value);

    /// @p text in green or red where the output is a terminal that shows colour.
    QString good(const QString &text) const;
    QString bad(const QString &text) const;

    /// Ends the report: prints the JSON document, and returns @p exitStatus, or ExitStatus::Failed
    /// when standard output could not take all of it.
    int finish(int exitStatus);

private:
    QString coloured(const char *code, const QString &text) const;
    void addMessage(const QString &channel, const QString &message);
    void write(std::FILE *stream, const QByteArray &bytes);

    Format format;
    bool isQuiet;
    bool hasColour;
    bool isStatusOnError;
    bool hasWriteFailed = false;
    int errors = 0;
    QJsonArray messages;
    QJsonObject document;
};
