// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/pluginsession.h"

#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QFile>
#include <QFileInfo>
#include <QSignalBlocker>

namespace {

const QByteArray elfMagic("\177ELF");
/// Qt 4 searches plug-in files for this text.
const QByteArray qt4PluginPattern("pattern=QT_PLUGIN_VERIFICATION_DATA");

} // namespace

PluginSession::PluginSession(QObject *parent)
    : QObject(parent)
{
}

PluginSession::~PluginSession()
{
    if (loadedPlugin) {
        loadedPlugin->registerStatusManager(nullptr);
    }
    loader.unload();
}

bool PluginSession::fail(const QString &reason)
{
    problemText = reason;
    return false;
}

bool PluginSession::load(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        if (QFileInfo::exists(candidate)) {
            return checkFile(candidate) && instantiate();
        }
    }
    return fail(
        tr("No plug-in found. Searched for: %1").arg(candidates.join(QStringLiteral(", "))));
}

bool PluginSession::checkFile(const QString &file)
{
    QFile library(file);
    if (!QFileInfo(library).isFile() || !library.open(QIODevice::ReadOnly)) {
        return fail(tr("%1 is not a file that can be read.").arg(file));
    }
    const QByteArray content = library.readAll();
    if (!content.startsWith(elfMagic)) {
        return fail(tr("%1 is not a shared library.").arg(file));
    }

    loader.setFileName(QFileInfo(file).absoluteFilePath());
    // The types of the cells' values point into the library, so it must stay in memory as long as a
    // value of such a type may exist.
    loader.setLoadHints(QLibrary::PreventUnloadHint);
    if (loader.metaData().isEmpty()) {
        if (content.contains(qt4PluginPattern)) {
            return fail(tr("%1 is a plug-in for another Qt: for Qt 4, while this host runs Qt %2.")
                            .arg(file, QLatin1String(qVersion())));
        }
        return fail(
            tr("%1 is a library, but no plug-in for Qt 5. %2").arg(file, loader.errorString()));
    }
    return true;
}

bool PluginSession::instantiate()
{
    const QString file = loader.fileName();
    const QString expected = QStringLiteral(ILoomwrightPlugin_iid);
    const QString offered = loader.metaData().value(QStringLiteral("IID")).toString();
    if (offered != expected) {
        return fail(tr("%1 has the wrong identifier: it offers \"%2\", this host asks for \"%3\".")
                        .arg(file, offered, expected));
    }
    if (!loader.load()) {
        const bool isOtherQt = loader.errorString().contains(QLatin1String("incompatible Qt"));
        return fail((isOtherQt ? tr("%1 is a plug-in for another Qt. %2")
                               : tr("%1 could not be loaded. %2"))
                        .arg(file, loader.errorString()));
    }
    return adoptRoot();
}

bool PluginSession::reload()
{
    // load() has already reported the greeting.
    const QSignalBlocker quiet(&relay);
    loadedPlugin = nullptr;
    delete loader.instance();
    if (!adoptRoot()) {
        return false;
    }
    emit reloaded();
    return true;
}

/// Gets the root object of the library, a new one if the last was deleted.
bool PluginSession::adoptRoot()
{
    const QString file = loader.fileName();
    loadedPlugin = qobject_cast<ILoomwrightPlugin *>(loader.instance());
    if (!loadedPlugin) {
        return fail(tr("%1 has the wrong identifier: its root object is not a \"%2\".")
                        .arg(file, QStringLiteral(ILoomwrightPlugin_iid)));
    }
    loadedPlugin->registerStatusManager(&relay);
    ingredients = loadedPlugin->getIngredientManager();
    execution = loadedPlugin->getExecutionManager();
    if (!ingredients || !execution || !ingredients->getIngredients()) {
        return fail(tr("%1 offers no ingredients.").arg(file));
    }
    return true;
}

QString PluginSession::problem() const
{
    return problemText;
}

QString PluginSession::fileName() const
{
    return loader.fileName();
}

StatusManager *PluginSession::statusManager()
{
    return &relay;
}

ILoomwrightPlugin *PluginSession::plugin() const
{
    return loadedPlugin;
}

IIngredientManager *PluginSession::ingredientManager() const
{
    return ingredients;
}

IExecutionManager *PluginSession::executionManager() const
{
    return execution;
}
