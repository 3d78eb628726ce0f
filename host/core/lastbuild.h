// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/buildrunner.h"
#include "host/core/filestate.h"
#include "host/core/projectfile.h"

#include <QHash>

/// How the image compares to the values.
enum class BuildState {
    NotBuilt, ///< Nothing was built since the program or the project was opened.
    Running,
    Current,  ///< The image was built from the values and files as they are.
    Outdated, ///< The image was built, but a value or a file has changed since.
    Failed    ///< The last build failed or was stopped.
};

/// What the last build was made from, to tell whether its image is still that of the values.
class LastBuild
{
public:
    /// Notes @p values and the states of the @p inputFiles, just before the build starts.
    void start(const Project &values, const QStringList &inputFiles);
    /// Notes how it ended; the time between start() and finish() counts as running.
    void finish(const BuildResult &newResult);
    /// Forgets the build.
    void reset();

    /// How the image compares to @p values and to the files as they are now.
    BuildState state(const Project &values) const;
    /// Whether @p inputFile has changed since the image was built. For an image of an earlier
    /// session its time of modification decides.
    bool isNewerThanImage(const QString &inputFile, const QString &imageFile) const;
    /// How it ended; only of use when there was one.
    const BuildResult &result() const;
    /// What it was made from.
    const Project &values() const;
    /// The states of its input files at the start, by path.
    const QHash<QString, FileState> &inputStates() const;

private:
    BuildState currentState = BuildState::NotBuilt;
    BuildResult lastResult;
    Project builtValues;
    QHash<QString, FileState> states;
    FileState imageState;
};
