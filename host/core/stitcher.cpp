// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/stitcher.h"

#include "host/core/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

QString stitcherName()
{
    return QStringLiteral("tamblin-stitcher");
}

/// Why @p file cannot be the stitcher; empty when it can.
QString problemOf(const QFileInfo &file)
{
    if (!file.exists()) {
        return (file.isSymLink()
                    ? QStringLiteral("The stitcher %1 is a symlink that leads nowhere.")
                    : QStringLiteral("The stitcher %1 does not exist."))
            .arg(file.filePath());
    }
    if (!file.isFile()) {
        return QStringLiteral("The stitcher %1 is not a regular file.").arg(file.filePath());
    }
    if (!file.isExecutable()) {
        return QStringLiteral("The stitcher %1 is not executable.").arg(file.filePath());
    }
    return {};
}

bool isRunner(const QFileInfo &file)
{
    const QString runner = QDir(runnerDirectory()).absoluteFilePath(stitcherName());
    return file.canonicalFilePath() == QFileInfo(runner).canonicalFilePath();
}

StitcherLocation searchPath()
{
    StitcherLocation location;
    const QStringList directories
        = qEnvironmentVariable("PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &directory : directories) {
        const QFileInfo file(absolutePath(directory), stitcherName());
        if (!file.exists() || isRunner(file)) {
            continue;
        }
        const QString problem = problemOf(file);
        if (problem.isEmpty()) {
            return {file.absoluteFilePath(), {}};
        }
        if (location.problem.isEmpty()) {
            location.problem = problem;
        }
    }
    if (location.problem.isEmpty()) {
        location.problem = QStringLiteral("There is no %1 in PATH.").arg(stitcherName());
    }
    return location;
}

} // namespace

StitcherLocation locateStitcher(const QString &chosenFile)
{
    if (chosenFile.isEmpty()) {
        return searchPath();
    }
    const QFileInfo file(absolutePath(chosenFile));
    if (file.exists() && isRunner(file)) {
        return {{},
                QStringLiteral("%1 is not the stitcher, but the program that supervises it.")
                    .arg(file.filePath())};
    }
    const QString problem = problemOf(file);
    return problem.isEmpty() ? StitcherLocation{file.absoluteFilePath(), {}}
                             : StitcherLocation{{}, problem};
}

QString runnerDirectory()
{
    const QDir programDirectory(QCoreApplication::applicationDirPath());
    for (const char *candidate : {"libexec/loomwright", LOOMWRIGHT_RUNNER_DIRECTORY}) {
        QString directory
            = QDir::cleanPath(programDirectory.absoluteFilePath(QLatin1String(candidate)));
        if (QFileInfo(directory, stitcherName()).isExecutable()) {
            return directory;
        }
    }
    return {};
}
