// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/findings.h"

#include "host/core/filestate.h"
#include "host/core/imageguard.h"
#include "model/filepath.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>
#include <sys/stat.h>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Findings", text);
}

bool isInput(const Ingredient &ingredient)
{
    return kindOf(ingredient.value) == ValueKind::File
        && ingredient.value.value<FilePath>().isInput;
}

bool isOutput(const Ingredient &ingredient)
{
    return kindOf(ingredient.value) == ValueKind::File
        && !ingredient.value.value<FilePath>().isInput;
}

bool isControlCharacter(QChar character)
{
    return character.category() == QChar::Other_Control;
}

QString typeText(mode_t type)
{
    switch (type) {
    case S_IFDIR:
        return tr("a directory");
    case S_IFIFO:
        return tr("a FIFO");
    case S_IFSOCK:
        return tr("a socket");
    default:
        return tr("a device");
    }
}

Problem findingFor(const Ingredient &ingredient, const QString &text)
{
    Problem problem;
    problem.kind = ProblemKind::Finding;
    problem.text = text;
    problem.ingredient = ingredient.name;
    problem.key = ingredient.key;
    if (kindOf(ingredient.value) == ValueKind::File) {
        problem.file = textOf(ingredient.value);
    }
    return problem;
}

void findControlCharacters(const Ingredient &ingredient, QVector<Problem> *problems)
{
    const QString value = textOf(ingredient.value);
    if (std::any_of(value.begin(), value.end(), isControlCharacter)) {
        problems->append(findingFor(
            ingredient, tr("The value contains a control character, such as a line feed")));
        problems->last().mustBeFixed = true;
    }
}

/// A missing file is left to the plug-in's checks.
void findUnusableFile(const Ingredient &ingredient, QVector<Problem> *problems)
{
    const QString file = textOf(ingredient.value);
    const FileState state = FileState::of(file);
    if (!isInput(ingredient) || !ingredient.isVisible || file.isEmpty() || !state.exists) {
        return;
    }
    if (!state.isRegular()) {
        const QString type = typeText(state.type);
        problems->append(findingFor(ingredient, tr("It is %1, not a regular file").arg(type)));
        problems->last().actual = type;
    } else if (!QFile(file).open(QIODevice::ReadOnly)) {
        problems->append(findingFor(ingredient, tr("The file cannot be read")));
    } else if (state.size == 0) {
        problems->append(findingFor(ingredient, tr("The file is empty")));
        problems->last().actual = sizeText(0);
    }
}

void findUnusableImage(const Ingredient &output, QVector<Problem> *problems)
{
    const FileState state = FileState::ofLink(textOf(output.value));
    if (state.type == S_IFLNK) {
        problems->append(findingFor(output, tr("The image is a symlink, which no build follows")));
    } else if (state.exists && !state.isRegular()) {
        problems->append(findingFor(output, tr("The image is %1").arg(typeText(state.type))));
    }
}

void findOverwrittenInput(const QVector<Ingredient> &ingredients, const Ingredient &output,
                          QVector<Problem> *problems)
{
    const QString image = textOf(output.value);
    const FileState imageState = FileState::of(image);
    const Ingredient input = inputWithFile(ingredients, image);
    if (input.valueIndex.isValid()) {
        problems->append(findingFor(
            output, tr("The output is the same file as the input \"%1\"").arg(input.name)));
        problems->last().mustBeFixed = true;
    }
    for (const Ingredient &each : ingredients) {
        const QString file = textOf(each.value);
        if (isInput(each) && !FileState::of(file).isSameFileAs(imageState)
            && ImageGuard::isReserved(image, file)) {
            problems->append(
                findingFor(each, tr("A build would replace this file because of its name")));
            problems->last().mustBeFixed = true;
        }
    }
}

} // namespace

QVector<Problem> findingsFor(const QVector<Ingredient> &ingredients)
{
    QVector<Problem> problems;
    for (const Ingredient &ingredient : ingredients) {
        findControlCharacters(ingredient, &problems);
        findUnusableFile(ingredient, &problems);
        if (isOutput(ingredient)) {
            findUnusableImage(ingredient, &problems);
            findOverwrittenInput(ingredients, ingredient, &problems);
        }
    }
    return problems;
}

Ingredient inputWithFile(const QVector<Ingredient> &ingredients, const QString &file)
{
    const FileState state = FileState::of(file);
    const auto input
        = std::find_if(ingredients.begin(), ingredients.end(), [&](const Ingredient &ingredient) {
              return isInput(ingredient)
                  && FileState::of(textOf(ingredient.value)).isSameFileAs(state);
          });
    return input == ingredients.end() ? Ingredient() : *input;
}

bool isChangedByConfiguration(const QString &value)
{
    return value.contains(QLatin1Char('=')) || value != value.trimmed()
        || QString::fromLocal8Bit(value.toLocal8Bit()) != value;
}

QStringList configurationRemarks(const QVector<Ingredient> &ingredients, const QString &file)
{
    QFile configuration(file);
    if (!configuration.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString text = QLatin1Char('\n') + QString::fromLocal8Bit(configuration.readAll());
    QStringList remarks;
    for (const Ingredient &ingredient : ingredients) {
        const QString value = textOf(ingredient.value);
        if (value.isEmpty()) {
            continue;
        }
        if (!text.contains(QLatin1Char('\n') + ingredient.key + QLatin1String(" = "))) {
            remarks << tr("\"%1\" is not part of a configuration.").arg(ingredient.name);
        } else if (isChangedByConfiguration(value)) {
            remarks << tr("\"%1\" cannot be read back from a configuration: %2")
                           .arg(ingredient.name, value);
        }
    }
    return remarks;
}

QString directoryRemark(const QString &directory)
{
    const QFileInfo info(directory);
    if (!info.exists()) {
        return tr("there is no such directory");
    }
    if (!info.isDir()) {
        return tr("it is not a directory");
    }
    if (!info.isReadable() || !info.isExecutable()) {
        return tr("the directory cannot be read");
    }
    int symlinkCount = 0;
    QDirIterator entries(directory, QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        symlinkCount += entries.fileInfo().isSymLink() ? 1 : 0;
    }
    return symlinkCount == 0 ? QString() : tr("its symlinks (%1) are skipped").arg(symlinkCount);
}
