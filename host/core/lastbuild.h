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
    Current,  ///< Values and files are still those that the image was built from.
    Outdated, ///< The image was built, but a value or a file has changed since.
    Failed    ///< The last build failed or was stopped.
};

/// What the last build was made from, to find out whether its image is still up to date.
class LastBuild
{
public:
    /// Records @p values, just before the build starts.
    void start(const Project &values);
    /// Records how the build ended; it counts as running between start() and finish().
    void finish(const BuildResult &newResult);
    /// Forgets the build.
    void reset();

    /// How the image compares to @p values and to the current files.
    BuildState state(const Project &values) const;
    /// Whether @p inputFile has changed since the image was built. For an image of an earlier
    /// session, the modification times are compared.
    bool isNewerThanImage(const QString &inputFile, const QString &imageFile) const;
    /// How the build ended; only meaningful after a build.
    const BuildResult &result() const;
    /// What it was made from.
    const Project &values() const;

private:
    BuildState currentState = BuildState::NotBuilt;
    BuildResult lastResult;
    Project builtValues;
    FileState imageState;
};
