// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT
// minimal-host DIRECTORY IMAGE: builds IMAGE from the files below DIRECTORY.

#include "model/filepath.h"
#include "model/modelcolumns.h"
#include "plugin/iexecutionmanager.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"
#include "plugin/statusmanager.h"

#include <QtWidgets>

#include <sys/wait.h>

/// Sets the path of the image, which is an ingredient like the input files.
void setImage(QAbstractItemModel *ingredients, const QString &file)
{
    const QModelIndexList names
        = ingredients->match(ingredients->index(0, 0), Qt::DisplayRole, "Output file name", 1,
                             Qt::MatchExactly | Qt::MatchRecursive);
    const QModelIndex cell = names.value(0).siblingAtColumn(IngredientColumn::Value);
    auto value = cell.data().value<FilePath>();
    value.fileName = file;
    ingredients->setData(cell, QVariant::fromValue(value));
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv); // The plug-in creates a widget.
    QPluginLoader loader(PLUGIN_FILE);
    auto *plugin = qobject_cast<ILoomwrightPlugin *>(loader.instance());
    if (!plugin || argc != 3) {
        qCritical("%s", plugin ? "Two arguments needed" : qPrintable(loader.errorString()));
        return 2;
    }
    StatusManager relay;
    const auto print = [](const QString &text) { qInfo().noquote() << text; };
    QObject::connect(&relay, &StatusManager::statusMessage, print);
    QObject::connect(&relay, &StatusManager::errorMessage, print);
    plugin->registerStatusManager(&relay);

    const QDir here; // The stitcher runs in another directory, so paths must be absolute.
    const QString image = here.absoluteFilePath(argv[2]);
    QFile::remove(image);
    IIngredientManager *manager = plugin->getIngredientManager();
    manager->generateConfigFromDirectory(here.absoluteFilePath(argv[1]));
    setImage(manager->getIngredients(), image);
    if (plugin->getExecutionManager()->verifyInputs()) {
        plugin->getExecutionManager()->beginExecution();
        // The plug-in does not report the end: the build has ended when no child is left.
        while (waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) == 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCoreApplication::processEvents(); // The last output.
    }
    plugin->registerStatusManager(nullptr);
    return QFile::exists(image) ? 0 : 1;
}
