// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/plugin.h"

#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QFile>
#include <QFileInfo>

namespace {

const QByteArray elfMagic("\177ELF");
/// Qt 4 searches plug-in files for this text.
const QByteArray qt4PluginPattern("pattern=QT_PLUGIN_VERIFICATION_DATA");

} // namespace

Plugin::Plugin(QObject *parent)
    : QObject(parent)
{
    connect(&relay, &StatusManager::statusMessage, this, [this](const QString &message) {
        if (!isSilent) {
            emit statusMessage(message);
        }
    });
    connect(&relay, &StatusManager::errorMessage, this, [this](const QString &message) {
        if (!isSilent) {
            emit errorMessage(message);
        }
    });
    connect(&relay, &StatusManager::dataFileChanged, this, &Plugin::dataFileChanged);
}

Plugin::~Plugin()
{
    if (rootObject) {
        rootObject->registerStatusManager(nullptr);
    }
    loader.unload();
}

bool Plugin::fail(const QString &reason)
{
    problemText = reason;
    return false;
}

bool Plugin::load(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        if (QFileInfo::exists(candidate)) {
            return checkFile(candidate) && instantiate();
        }
    }
    return fail(QStringLiteral("No plug-in found. Searched for: %1")
                    .arg(candidates.join(QStringLiteral(", "))));
}

bool Plugin::checkFile(const QString &file)
{
    QFile library(file);
    if (!QFileInfo(library).isFile() || !library.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("%1 is not a file that can be read.").arg(file));
    }
    const QByteArray content = library.readAll();
    if (!content.startsWith(elfMagic)) {
        return fail(QStringLiteral("%1 is not a shared library.").arg(file));
    }

    loader.setFileName(QFileInfo(file).absoluteFilePath());
    // The types of the cells' values point into the library, so it must stay in memory as long as a
    // value of such a type may exist.
    loader.setLoadHints(QLibrary::PreventUnloadHint);
    if (loader.metaData().isEmpty()) {
        if (content.contains(qt4PluginPattern)) {
            return fail(QStringLiteral(
                            "%1 is a plug-in for another Qt: for Qt 4, while this host runs Qt %2.")
                            .arg(file, QLatin1String(qVersion())));
        }
        return fail(QStringLiteral("%1 is a library, but no plug-in for Qt 5. %2")
                        .arg(file, loader.errorString()));
    }
    return true;
}

bool Plugin::instantiate()
{
    const QString file = loader.fileName();
    const QString expected = QStringLiteral(ILoomwrightPlugin_iid);
    const QString offered = loader.metaData().value(QStringLiteral("IID")).toString();
    if (offered != expected) {
        return fail(QStringLiteral(
                        "%1 has the wrong identifier: it offers \"%2\", this host asks for \"%3\".")
                        .arg(file, offered, expected));
    }
    if (!loader.load()) {
        const bool isOtherQt = loader.errorString().contains(QLatin1String("incompatible Qt"));
        return fail((isOtherQt ? QStringLiteral("%1 is a plug-in for another Qt. %2")
                               : QStringLiteral("%1 could not be loaded. %2"))
                        .arg(file, loader.errorString()));
    }
    return adoptRoot();
}

bool Plugin::renew()
{
    emit aboutToRenew();
    rootObject = nullptr;
    delete loader.instance();
    {
        const auto silent = silence(); // The greeting.
        if (!adoptRoot()) {
            return false;
        }
    }
    emit renewed();
    return true;
}

/// Gets the root object of the library, a new one if the last was deleted.
bool Plugin::adoptRoot()
{
    const QString file = loader.fileName();
    auto root = qobject_cast<ILoomwrightPlugin *>(loader.instance());
    if (!root) {
        return fail(QStringLiteral("%1 has the wrong identifier: its root object is not a \"%2\".")
                        .arg(file, QStringLiteral(ILoomwrightPlugin_iid)));
    }
    if (!root->getExecutionManager() || !root->getIngredientManager()
        || !root->getIngredientManager()->getIngredients()) {
        return fail(QStringLiteral("%1 offers no ingredients.").arg(file));
    }
    rootObject = root;
    rootObject->registerStatusManager(&relay);
    return true;
}

bool Plugin::isLoaded() const
{
    return rootObject != nullptr;
}

QString Plugin::problem() const
{
    return problemText;
}

QString Plugin::fileName() const
{
    return loader.fileName();
}

ILoomwrightPlugin *Plugin::root() const
{
    return rootObject;
}

IIngredientManager *Plugin::ingredientManager() const
{
    return rootObject->getIngredientManager();
}

IExecutionManager *Plugin::executionManager() const
{
    return rootObject->getExecutionManager();
}

QAbstractItemModel *Plugin::model() const
{
    return ingredientManager()->getIngredients();
}

QScopedValueRollback<bool> Plugin::silence()
{
    return QScopedValueRollback<bool>(isSilent, true);
}
