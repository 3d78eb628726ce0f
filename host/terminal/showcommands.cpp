// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/plugin.h"
#include "host/core/pluginfiles.h"
#include "host/core/values.h"
#include "host/terminal/commandline.h"
#include "host/terminal/commands.h"
#include "host/terminal/exitstatus.h"
#include "host/terminal/report.h"
#include "model/choice.h"
#include "model/filepath.h"
#include "plugin/idataview.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

namespace {

Field listField(const char *title, const char *name, const QStringList &texts)
{
    return {title, name, QJsonArray::fromStringList(texts),
            texts.isEmpty() ? QStringLiteral("none") : texts.join(QStringLiteral(", "))};
}

QStringList viewNames(const Plugin &plugin)
{
    QStringList names;
    const QList<IDataView *> views = plugin.ingredientManager()->getSupportedViews();
    for (IDataView *view : views) {
        names.append(view->getDisplayName());
    }
    return names;
}

Record recordOf(const Ingredient &ingredient)
{
    Record record{{"Group", "group", ingredient.group},
                  {"Ingredient", "name", ingredient.id.name,
                   ingredient.isVisible ? ingredient.id.name
                                        : ingredient.id.name + QLatin1String(" (hidden)")},
                  {"Key", "key", ingredient.id.key},
                  {"Value", "value", ingredient.text()},
                  {"Requirement", nullptr, {}, demandOf(ingredient.value)},
                  {nullptr, "kind", kindName(kindOf(ingredient.value))},
                  {nullptr, "visible", ingredient.isVisible}};
    if (kindOf(ingredient.value) == ValueKind::File) {
        const auto file = ingredient.value.value<FilePath>();
        record.push_back({nullptr, "input", file.isInput});
        record.push_back({nullptr, "required", file.isRequired});
        record.push_back(
            {nullptr, "exactSize", file.exactSize > 0 ? QJsonValue(file.exactSize) : QJsonValue()});
        record.push_back({nullptr, "filter", file.fileFilter});
    } else if (kindOf(ingredient.value) == ValueKind::Choice) {
        record.push_back(listField(nullptr, "choices", ingredient.value.value<Choice>().choices));
    }
    return record;
}

/// Why @p file cannot be loaded; empty when it can.
QString loadingProblem(const QString &file)
{
    Plugin plugin;
    return plugin.load({file}) ? QString() : plugin.problem();
}

/// One per line, each once.
void printNames(CommandContext &context, QStringList names)
{
    names.removeDuplicates();
    names.removeAll(QString());
    for (const QString &name : qAsConst(names)) {
        context.report.print(name);
    }
}

} // namespace

int showInfo(CommandContext &context)
{
    ILoomwrightPlugin *root = context.plugin->root();
    context.report.add({{"Target", "target", root->getTargetName()},
                        {"Version", "version", root->getPluginVersion()},
                        {"Author", "author", root->getAuthor()},
                        listField("Host interface", "hostInterfaces", root->getTargetAPIVersions()),
                        {"Identifier", "identifier", QStringLiteral(ILoomwrightPlugin_iid)},
                        {"Qt", "qt", QLatin1String(qVersion())},
                        {"File", "file", context.plugin->fileName()},
                        listField("Data views", "dataViews", viewNames(*context.plugin))});
    return inputStatus(context);
}

int listTargets(CommandContext &context)
{
    const QString chosenFile = context.commandLine.pluginFile;
    const QString problem = chosenFile.isEmpty() ? QString() : loadingProblem(chosenFile);
    if (!problem.isEmpty()) {
        context.report.addFailure(problem);
        return PluginProblem;
    }
    std::vector<Record> rows;
    QStringList names;
    int status = Success;
    for (const QString &file : installedPlugins(chosenFile)) {
        if (context.isInterrupted()) {
            return Failed;
        }
        Plugin plugin;
        if (!plugin.load({file})) {
            context.report.addFailure(plugin.problem());
            status = Failed;
            continue;
        }
        names.append(plugin.root()->getTargetName());
        rows.push_back({{"Target", "target", plugin.root()->getTargetName()},
                        {"Version", "version", plugin.root()->getPluginVersion()},
                        {"File", "file", file}});
    }
    if (rows.empty() && status == Success) {
        context.report.addFailure(QStringLiteral("No plug-in found."));
        status = PluginProblem;
    }
    if (context.commandLine.areNamesWanted) {
        printNames(context, names);
        return status;
    }
    context.report.printTable(rows);
    context.report.setList("targets", rows);
    return status;
}

int listIngredients(CommandContext &context)
{
    std::vector<Record> rows;
    QStringList names; // And keys, as --set accepts them.
    for (const Ingredient &ingredient : context.values->ingredients()) {
        rows.push_back(recordOf(ingredient));
        names << ingredient.id.name << ingredient.id.key;
    }
    if (context.commandLine.areNamesWanted) {
        printNames(context, names);
    } else {
        context.report.printTable(rows);
        context.report.setList("ingredients", rows);
    }
    return inputStatus(context);
}
