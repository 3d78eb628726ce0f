// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/statustext.h"

#include "host/window/problemtext.h"
#include "host/window/session.h"
#include "model/filepath.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace {

/// Of more errors of a data file, only the first are known one by one.
const int maxCountedProblems = 50;

struct FileCount {
    int found = 0;
    int wanted = 0;
};

QString tr(const char *text)
{
    return QCoreApplication::translate("StatusText", text);
}

QString number(int value)
{
    return QLocale().toString(value);
}

/// Counts input files that are required or chosen.
FileCount countFiles(const Session &session)
{
    FileCount count;
    for (const Ingredient &ingredient : session.ingredients()) {
        if (kindOf(ingredient.value) != ValueKind::File || !ingredient.isVisible) {
            continue;
        }
        const auto file = ingredient.value.value<FilePath>();
        if (file.isInput && (file.isRequired || !file.fileName.isEmpty())) {
            ++count.wanted;
            count.found += FileState::of(file.fileName).isRegular() ? 1 : 0;
        }
    }
    return count;
}

QString problemText(int count)
{
    if (count == 0) {
        return tr("no problems");
    }
    if (count > maxCountedProblems) {
        return tr("more than %1 problems").arg(number(maxCountedProblems));
    }
    return count == 1 ? tr("1 problem") : tr("%1 problems").arg(number(count));
}

QString buildText(BuildState state)
{
    switch (state) {
    case BuildState::NotBuilt:
        return tr("not built yet");
    case BuildState::Running:
    case BuildState::Stopping:
        return tr("being built");
    case BuildState::Current:
        return tr("the image is up to date");
    case BuildState::Outdated:
        return tr("not built since the last change");
    case BuildState::Stopped:
        return tr("the build was stopped");
    case BuildState::Failed:
        break;
    }
    return tr("the last build failed");
}

QString nextStep(bool start, int problemCount, BuildState state)
{
    if (state == BuildState::Running || state == BuildState::Stopping
        || state == BuildState::Current) {
        return {};
    }
    if (state == BuildState::Failed && problemCount == 0) {
        return tr("Next: read the reason above.");
    }
    if (start) {
        return tr("Next: open or drop a folder of firmware files.");
    }
    return problemCount > 0 ? tr("Next: look at the problems.") : tr("Next: build the image.");
}

} // namespace

bool isStart(const Session &session)
{
    const Ingredients all = session.ingredients();
    return session.isLoaded() && session.projectFile().isEmpty()
        && std::none_of(all.begin(), all.end(), [](const Ingredient &each) {
               return each.isInputFile() && !each.text().isEmpty();
           });
}

Problems shownProblems(const Session &session)
{
    Problems problems = session.problems();
    if (isStart(session)) {
        problems.erase(std::remove_if(problems.begin(), problems.end(), isMissingFile),
                       problems.end());
    }
    return problems;
}

QString statusText(const Session &session)
{
    if (!session.isLoaded()) {
        return tr("No plug-in is loaded.");
    }
    const FileCount files = countFiles(session);
    const int problemCount = shownProblems(session).count();
    const BuildState state = session.buildState();
    QStringList standing{tr("%1 of %2 files found").arg(number(files.found), number(files.wanted))};
    if (problemCount > 0 || !isStart(session)) {
        standing.append(problemText(problemCount));
    }
    standing.append(buildText(state));
    const QString line = standing.join(tr(", ")) + QLatin1Char('.');
    const QString next = nextStep(isStart(session) && files.wanted > 0, problemCount, state);
    return next.isEmpty() ? line : line + QLatin1Char(' ') + next;
}
