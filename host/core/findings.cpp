// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/findings.h"

#include "host/core/filestate.h"
#include "host/core/paths.h"
#include "host/core/stagedfile.h"
#include "model/filepath.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace {

bool isControlCharacter(QChar character)
{
    return character.category() == QChar::Other_Control;
}

QString typeText(mode_t type)
{
    switch (type) {
    case S_IFDIR:
        return QStringLiteral("a directory");
    case S_IFLNK:
        return QStringLiteral("a symlink");
    case S_IFIFO:
        return QStringLiteral("a FIFO");
    case S_IFSOCK:
        return QStringLiteral("a socket");
    default:
        return QStringLiteral("a device");
    }
}

Problem findingFor(const Ingredient &ingredient, Severity severity, const QString &text)
{
    return {ProblemKind::Finding, severity, text, ingredient.id, filesOf(ingredient)};
}

Problem typeFinding(const Ingredient &ingredient, Severity severity, const QString &text,
                    const FileState &state)
{
    Problem problem = findingFor(ingredient, severity, text);
    problem.required = QStringLiteral("a regular file");
    problem.actual = typeText(state.type);
    return problem;
}

void findControlCharacters(const Ingredient &ingredient, Problems *problems)
{
    const QString value = ingredient.text();
    if (std::any_of(value.begin(), value.end(), isControlCharacter)) {
        problems->append(findingFor(
            ingredient, Severity::Fatal,
            QStringLiteral("The value contains a control character, such as a line feed")));
    }
}

/// A missing file, or one of the wrong size, is left to the plug-in's checks.
void findUnusableFile(const Ingredient &ingredient, Problems *problems)
{
    const QString file = ingredient.text();
    const FileState state = FileState::of(file);
    if (!ingredient.isInputFile() || !ingredient.isVisible || file.isEmpty() || !state.exists) {
        return;
    }
    if (!state.isRegular()) {
        problems->append(typeFinding(ingredient, Severity::Error,
                                     QStringLiteral("It is not a regular file"), state));
    } else if (!QFile(file).open(QIODevice::ReadOnly)) {
        problems->append(
            findingFor(ingredient, Severity::Error, QStringLiteral("The file cannot be read")));
    } else if (state.size == 0 && ingredient.value.value<FilePath>().exactSize <= 0) {
        problems->append(
            findingFor(ingredient, Severity::Error, QStringLiteral("The file is empty")));
        problems->last().actual = sizeText(0);
    }
}

void findUnusableImage(const Ingredient &output, Problems *problems)
{
    const QString image = output.text();
    if (image.isEmpty()) {
        problems->append(findingFor(output, Severity::Fatal, QStringLiteral("No image is named")));
        return;
    }
    const FileState state = FileState::ofLink(image);
    if (state.exists && !state.isRegular()) {
        problems->append(typeFinding(output, Severity::Fatal,
                                     QStringLiteral("The image is not a regular file"), state));
        return;
    }
    const QString directory = QFileInfo(absolutePath(image)).path();
    const QString reason = directoryProblem(directory);
    if (!reason.isEmpty()) {
        // A configuration may be written before there is the directory.
        const bool exists = QFileInfo::exists(directory);
        problems->append(
            findingFor(output, exists ? Severity::Fatal : Severity::Error,
                       QStringLiteral("%1 cannot be written: %2").arg(directory, reason)));
    }
}

void findOverwrittenInput(const Ingredients &ingredients, const Ingredient &output,
                          Problems *problems)
{
    const auto input = inputWithFile(ingredients, output.text());
    if (input) {
        problems->append(findingFor(
            output, Severity::Fatal,
            QStringLiteral("The image is the same file as the input \"%1\"").arg(input->id.name)));
    }
}

} // namespace

Problems findingsFor(const Ingredients &ingredients)
{
    Problems problems;
    for (const Ingredient &ingredient : ingredients) {
        findControlCharacters(ingredient, &problems);
        findUnusableFile(ingredient, &problems);
        if (ingredient.isOutputFile()) {
            findUnusableImage(ingredient, &problems);
            findOverwrittenInput(ingredients, ingredient, &problems);
        }
    }
    return problems;
}

std::optional<Ingredient> inputWithFile(const Ingredients &ingredients, const QString &file)
{
    const FileState state = FileState::of(file);
    const auto input
        = std::find_if(ingredients.begin(), ingredients.end(), [&state](const Ingredient &each) {
              return each.isInputFile() && FileState::of(each.text()).isSameFileAs(state);
          });
    return input == ingredients.end() ? std::nullopt : std::make_optional(*input);
}

QString xmlProblem(const QString &file)
{
    QFile source(file);
    if (!QFileInfo(source).isFile() || !source.open(QIODevice::ReadOnly)) {
        return {};
    }
    QXmlStreamReader reader(&source);
    while (!reader.atEnd()) {
        reader.readNext();
    }
    return reader.hasError() ? QStringLiteral("line %1, column %2: %3")
                                   .arg(reader.lineNumber())
                                   .arg(reader.columnNumber())
                                   .arg(reader.errorString())
                             : QString();
}

SkippedEntries skippedEntriesOf(const QString &directory)
{
    namespace fs = std::filesystem;
    SkippedEntries skipped;
    std::vector<fs::path> pending{QFile::encodeName(directory).toStdString()};
    while (!pending.empty()) {
        const fs::path current = pending.back();
        pending.pop_back();
        std::error_code error;
        fs::directory_iterator entry(current, error);
        for (; entry != fs::directory_iterator(); entry.increment(error)) {
            const QByteArray path = entry->path().c_str();
            const QString name = QFile::decodeName(path);
            if (entry->path().filename().c_str()[0] == '.') {
                continue;
            }
            if (QFile::encodeName(name) != path) {
                skipped.undecodable.append(name);
            } else if (entry->is_symlink(error)) {
                skipped.symlinks.append(name);
            } else if (entry->is_directory(error)) {
                pending.push_back(entry->path());
            }
        }
        if (error) {
            skipped.unreadable.append(QFile::decodeName(current.c_str()));
        }
    }
    return skipped;
}
