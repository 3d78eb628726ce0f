// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/lastbuild.h"

void LastBuild::start(const Project &values)
{
    currentState = BuildState::Running;
    builtValues = values;
}

void LastBuild::finish(const BuildResult &newResult)
{
    lastResult = newResult;
    currentState = newResult.isSuccess ? BuildState::Current : BuildState::Failed;
    imageState = FileState::of(newResult.imageFile);
}

void LastBuild::reset()
{
    *this = LastBuild();
}

BuildState LastBuild::state(const Project &values) const
{
    if (currentState != BuildState::Current) {
        return currentState;
    }
    const bool unchanged = builtValues.hasSameValuesAs(values)
        && FileState::of(lastResult.imageFile) == imageState
        && changedFile(lastResult.inputStates).isEmpty();
    return unchanged ? BuildState::Current : BuildState::Outdated;
}

bool LastBuild::isNewerThanImage(const QString &inputFile, const QString &imageFile) const
{
    const FileState input = FileState::of(inputFile);
    const FileState image = FileState::of(imageFile);
    if (!input.isRegular() || !image.isRegular()) {
        return false;
    }
    const bool built = currentState == BuildState::Current && imageFile == lastResult.imageFile;
    const FileStates &states = lastResult.inputStates;
    return built && states.contains(inputFile) ? states.value(inputFile) != input
                                               : input.modified > image.modified;
}

const BuildResult &LastBuild::result() const
{
    return lastResult;
}

const Project &LastBuild::values() const
{
    return builtValues;
}
