// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/project.h"

#include "host/core/objectreader.h"
#include "host/core/paths.h"
#include "host/core/stagedfile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>

namespace {

const int supportedSchemaVersion = 1;

const QLatin1String schemaVersionName("schemaVersion");
const QLatin1String targetName("target");
const QLatin1String ingredientsName("ingredients");
const QLatin1String keyName("key");
const QLatin1String nameName("name");
const QLatin1String sizeName("size");
const QLatin1String sha256Name("sha256");
const QLatin1String buildName("build");
const QLatin1String imageName("image");
const QLatin1String fileName("file");
const QLatin1String stitcherName("stitcher");
const QLatin1String exitStatusName("exitStatus");
const QLatin1String configurationName("configuration");
const QLatin1String versionsName("versions");
const QLatin1String hostName("host");
const QLatin1String pluginName("plugin");
const QLatin1String qtName("qt");
const QLatin1String timeName("time");

/// A path inside @p directory keeps its symlinks. In any other path, those to directories are
/// resolved: otherwise "link/.." would be taken for the directory of the link.
QString relativePath(const QString &path, const QDir &directory)
{
    const QString prefix = directory.path() + QLatin1Char('/');
    if (path.startsWith(prefix) && !path.contains(QLatin1String("/../"))) {
        return path.mid(prefix.size());
    }
    const QFileInfo info(path);
    return path.isEmpty()
        ? path
        : directory.relativeFilePath(pathIn(canonicalDirectory(info.path()), info.fileName()));
}

/// After a symlink, .. leads elsewhere than the text says.
QString absolutePath(const QString &path, const QDir &directory)
{
    if (path.isEmpty()) {
        return path;
    }
    const QString full = path.startsWith(QLatin1Char('/')) ? path : pathIn(directory.path(), path);
    return QDir::cleanPath(full.contains(QLatin1String("/../")) ? placeOf(full) : full);
}

QJsonObject toJson(const ProjectEntry &entry, const QDir &directory)
{
    QJsonObject object{{keyName, entry.ingredient.key}, {nameName, entry.ingredient.name}};
    const bool isFile = entry.kind == ValueKind::File;
    object.insert(kindName(entry.kind),
                  isFile ? relativePath(entry.value, directory) : entry.value);
    if (!entry.sha256.isEmpty()) {
        object.insert(sizeName, entry.size);
        object.insert(sha256Name, QLatin1String(entry.sha256));
    }
    return object;
}

QJsonObject toJson(const BuildRecord &build, const QDir &directory)
{
    return {{imageName,
             QJsonObject{{fileName, relativePath(build.imageFile, directory)},
                         {sizeName, build.imageSize},
                         {sha256Name, QLatin1String(build.imageSha256)}}},
            {configurationName, build.configuration},
            {stitcherName,
             QJsonObject{{fileName, build.stitcherFile},
                         {sha256Name, QLatin1String(build.stitcherSha256)},
                         {exitStatusName, build.stitcherExitStatus}}},
            {versionsName,
             QJsonObject{{hostName, build.hostVersion},
                         {pluginName, build.pluginVersion},
                         {qtName, build.qtVersion}}},
            {timeName, build.time}};
}

ProjectEntry readEntry(ObjectReader reader, const QDir &directory)
{
    ProjectEntry entry;
    entry.ingredient.key = reader.text(keyName);
    entry.ingredient.name = reader.text(nameName);
    int valueCount = 0;
    for (const ValueKind kind : {ValueKind::File, ValueKind::Choice, ValueKind::Text}) {
        if (reader.has(kindName(kind))) {
            ++valueCount;
            entry.kind = kind;
            entry.value = reader.text(kindName(kind));
        }
    }
    if (valueCount != 1) {
        reader.fail(QStringLiteral("one of \"file\", \"choice\" and \"text\" is needed"));
    }
    if (entry.kind == ValueKind::File) {
        entry.value = absolutePath(entry.value, directory);
        if (reader.has(sha256Name)) {
            entry.sha256 = reader.sha256(sha256Name);
            entry.size = reader.number(sizeName);
        }
    }
    reader.refuseUnknown();
    return entry;
}

BuildRecord readBuild(ObjectReader reader, const QDir &directory)
{
    BuildRecord build;
    ObjectReader image = reader.child(imageName);
    build.imageFile = absolutePath(image.text(fileName), directory);
    build.imageSize = image.number(sizeName);
    build.imageSha256 = image.sha256(sha256Name);
    image.refuseUnknown();
    build.configuration = reader.text(configurationName);
    ObjectReader stitcher = reader.child(stitcherName);
    build.stitcherFile = stitcher.text(fileName);
    build.stitcherSha256 = stitcher.sha256(sha256Name);
    build.stitcherExitStatus = int(stitcher.number(exitStatusName));
    stitcher.refuseUnknown();
    ObjectReader versions = reader.child(versionsName);
    build.hostVersion = versions.text(hostName);
    build.pluginVersion = versions.text(pluginName);
    build.qtVersion = versions.text(qtName);
    versions.refuseUnknown();
    build.time = reader.text(timeName);
    reader.refuseUnknown();
    return build;
}

QString readDocument(const QJsonDocument &document, const QDir &directory, Project *project)
{
    QString problem;
    ObjectReader reader(document.object(), QString(), &problem);
    if (!document.isObject()) {
        return QStringLiteral("it is not a JSON object");
    }
    const qint64 schemaVersion = reader.number(schemaVersionName);
    if (problem.isEmpty() && schemaVersion != supportedSchemaVersion) {
        return QStringLiteral("schemaVersion is %1, but this program reads %2")
            .arg(schemaVersion)
            .arg(supportedSchemaVersion);
    }
    Project read;
    read.target = reader.text(targetName);
    for (const ObjectReader &child : reader.children(ingredientsName)) {
        read.entries.append(readEntry(child, directory));
    }
    if (reader.has(buildName)) {
        read.build = readBuild(reader.child(buildName), directory);
    }
    reader.refuseUnknown();
    if (problem.isEmpty()) {
        *project = std::move(read);
    }
    return problem;
}

/// Why the value of @p entry is none for @p ingredient; empty when it is one.
QString valueProblem(const ProjectEntry &entry, const Ingredient &ingredient)
{
    const ValueKind kind = kindOf(ingredient.value);
    if (kind != entry.kind) {
        return QStringLiteral("It is a %1 in the file, but a %2 in the target.")
            .arg(kindName(entry.kind), kindName(kind));
    }
    QVariant ignored;
    return kind == ValueKind::Choice && entry.value.isEmpty()
        ? QString()
        : valueFromText(entry.value, ingredient.value, &ignored);
}

} // namespace

bool Project::hasSameValuesAs(const Project &other) const
{
    return std::equal(entries.begin(), entries.end(), other.entries.begin(), other.entries.end(),
                      [](const ProjectEntry &left, const ProjectEntry &right) {
                          return left.ingredient == right.ingredient && left.value == right.value;
                      });
}

QString readProject(const QString &file, Project *project)
{
    QFile source(::absolutePath(file));
    if (!QFileInfo(source).isFile()) {
        return (source.exists() ? QStringLiteral("The file %1 is not a regular file.")
                                : QStringLiteral("The file %1 does not exist."))
            .arg(file);
    }
    if (!source.open(QIODevice::ReadOnly)) {
        return QStringLiteral("The file %1 cannot be read: %2.").arg(file, source.errorString());
    }
    const QByteArray content = source.readAll();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        return QStringLiteral("%1: line %2: not valid JSON: %3.")
            .arg(file, QString::number(content.left(error.offset).count('\n') + 1),
                 error.errorString());
    }
    // The same directory by whatever symlinks the file is reached.
    const QDir directory = QFileInfo(resolvedTarget(file)).dir();
    const QString problem = readDocument(document, directory, project);
    return problem.isEmpty() ? QString() : file + QLatin1String(": ") + problem + QLatin1Char('.');
}

QJsonObject projectToJson(const Project &project, const QString &directory)
{
    const QDir base(directory);
    QJsonArray ingredients;
    for (const ProjectEntry &entry : project.entries) {
        ingredients.append(toJson(entry, base));
    }
    QJsonObject object{{schemaVersionName, supportedSchemaVersion},
                       {targetName, project.target},
                       {ingredientsName, ingredients}};
    if (project.build) {
        object.insert(buildName, toJson(*project.build, base));
    }
    return object;
}

QString writeProject(const QString &file, const Project &project)
{
    return writeWhole(file, QJsonDocument(projectToJson(project, QFileInfo(file).path())).toJson());
}

std::optional<Ingredient> ingredientFor(const ProjectEntry &entry, const Ingredients &ingredients)
{
    auto exact = findIngredient(ingredients, entry.ingredient);
    const QString key = entry.ingredient.key;
    return exact || key.isEmpty() ? exact : findByKey(ingredients, key);
}

QString projectProblem(const Project &project, const QString &target,
                       const Ingredients &ingredients)
{
    if (project.target != target) {
        return QStringLiteral("It is for the target \"%1\", not for \"%2\".")
            .arg(project.target, target);
    }
    if (project.entries.isEmpty()) {
        return QStringLiteral("It names no ingredients.");
    }
    QSet<IngredientId> named;
    for (const ProjectEntry &entry : project.entries) {
        const QString name
            = entry.ingredient.key.isEmpty() ? entry.ingredient.name : entry.ingredient.key;
        const auto ingredient = ingredientFor(entry, ingredients);
        const QString problem = ingredient ? valueProblem(entry, *ingredient)
                                           : QStringLiteral("The target has no such ingredient.");
        if (!problem.isEmpty()) {
            return QStringLiteral("\"%1\": %2").arg(name, problem);
        }
        if (named.contains(ingredient->id)) {
            return QStringLiteral("The ingredient \"%1\" occurs twice.").arg(name);
        }
        named.insert(ingredient->id);
    }
    return {};
}
