// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "files.h"

#include <QtTest>

/// One run of the terminal host.
struct Run {
    int status = -1; ///< -1 when a signal ended it.
    QString output;
    QString errors;

    QJsonObject json() const
    {
        return QJsonDocument::fromJson(output.toUtf8()).object();
    }
};

/// Runs the terminal host in a folder of its own, which also is where a stitcher is looked for
/// first.
class HostProgram
{
public:
    HostProgram()
    {
        if (!makeSample(samples.filePath("good"))
            || !makeSample(samples.filePath("broken"), true)) {
            qFatal("no samples");
        }
    }

    /// A new empty folder and environment.
    void reset()
    {
        folder.reset(new QTemporaryDir);
        environment = QProcessEnvironment::systemEnvironment();
        const QString program = QFileInfo(HOST_PROGRAM).path();
        environment.insert(
            "PATH", QStringList{folder->path(), program, environment.value("PATH")}.join(':'));
        environment.insert("TMPDIR", folder->path());
        // Fontconfig writes to standard error when it cannot read its configuration.
        environment.insert("FONTCONFIG_FILE",
                           writeFile(samples.filePath("fonts.conf"), "<fontconfig/>"));
        environment.remove("QT_QPA_PLATFORM");
        environment.remove("DISPLAY");
        environment.remove("XDG_RUNTIME_DIR");
    }

    /// Runs the host with the words of @p line; GOOD and BROKEN are the samples.
    Run start(const QString &line) const
    {
        return run(HOST_PROGRAM, line.split(' ', Qt::SkipEmptyParts));
    }
    /// Runs a shell script, in which the host is loomwright.
    Run shell(const QString &script) const
    {
        return run("bash", {"-c", script});
    }

    QString path(const QString &name) const
    {
        return folder->filePath(name);
    }

    QTemporaryDir samples;
    QScopedPointer<QTemporaryDir> folder;
    QProcessEnvironment environment;

private:
    Run run(const QString &file, QStringList arguments) const
    {
        arguments.replaceInStrings("GOOD", samples.filePath("good"))
            .replaceInStrings("BROKEN", samples.filePath("broken"));
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(folder->path());
        program.start(file, arguments);
        program.closeWriteChannel();
        Run run;
        if (program.waitForFinished(60000) && program.exitStatus() == QProcess::NormalExit) {
            run.status = program.exitCode();
        }
        run.output = QString::fromUtf8(program.readAllStandardOutput());
        run.errors = QString::fromUtf8(program.readAllStandardError());
        return run;
    }
};

inline bool matches(const QString &text, const QString &pattern)
{
    return QRegularExpression(pattern, QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}
