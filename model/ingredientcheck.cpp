// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "model/ingredientcheck.h"

#include <QDir>
#include <QFileInfo>

namespace {

bool isBlank(const QString &path)
{
    return path.trimmed().isEmpty();
}

CheckResult makeResult(const QString &name, bool passed, const char *details)
{
    CheckResult result;
    result.passed = passed;
    result.ingredientName = name;
    result.details = QLatin1String(details);
    return result;
}

} // namespace

CheckResult IngredientCheck::fileExists(const QString &name, const QString &path)
{
    if (isBlank(path)) {
        return makeResult(name, false, "File path is empty");
    }
    if (!QFileInfo(path).exists()) {
        return makeResult(name, false, "File path does not exist!");
    }
    return makeResult(name, true, "File path exists");
}

CheckResult IngredientCheck::directoryForFileExists(const QString &name, const QString &path)
{
    if (isBlank(path)) {
        return makeResult(name, false, "Directory and file is missing");
    }
    if (!QFileInfo(path).absoluteDir().exists()) {
        return makeResult(name, false, "Directory for file does not exist!");
    }
    return makeResult(name, true, "Directory for file exists");
}

CheckResult IngredientCheck::exactFileSize(const QString &name, const QString &path, int size)
{
    if (isBlank(path)) {
        return makeResult(name, false, "File path is empty, can't check file size");
    }
    const QFileInfo file(path);
    if (!file.exists()) {
        return makeResult(name, false, "File path does not exist, can't check file size");
    }
    if (file.size() != size) {
        return makeResult(name, false, "File size is incorrect");
    }
    return makeResult(name, true, "Exact file size is correct");
}
