// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/externalunsignedzorvingredientmanager.h"

#include "gpio/externalunsignedzorvgpioview.h"
#include "manager/simpleingredientmapper.h"
#include "manager/standardlocations.h"
#include "model/ingredientnames.h"
#include "model/modelcolumns.h"
#include "model/payload.h"

#include <QFile>
#include <QTextStream>

namespace {

/// The text of an embedded resource; false when there is no such resource.
bool readResource(const char *path, QString *text)
{
    QFile file((QLatin1String(path)));
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    QTextStream stream(&file);
    // The default is the locale's codec, but the resources are always UTF-8.
    stream.setCodec("UTF-8");
    *text = stream.readAll();
    // Some Qt releases keep the byte-order mark, which no parser accepts.
    if (text->startsWith(QChar(QChar::ByteOrderMark))) {
        text->remove(0, 1);
    }
    return true;
}

} // namespace

ExternalUnsignedZorvIngredientManager::ExternalUnsignedZorvIngredientManager()
{
    QString text;
    if (readResource(":/files/externalunsignedzorvingredients.xml", &text)) {
        ingredientModel = new IngredientModel(text);
        connect(ingredientModel, SIGNAL(dataChanged(QModelIndex, QModelIndex)),
                SLOT(processDataChange(QModelIndex, QModelIndex)));
        connect(ingredientModel, SIGNAL(statusMessage(QString)), SIGNAL(statusMessage(QString)));
        connect(ingredientModel, SIGNAL(errorMessage(QString)), SIGNAL(errorMessage(QString)));
    }
    if (readResource(":/files/externalunsignedzorvingredientmap.xml", &text)) {
        ingredientMapper = new SimpleIngredientMapper(text);
        connect(ingredientMapper, SIGNAL(statusMessage(QString)), SIGNAL(statusMessage(QString)));
        connect(ingredientMapper, SIGNAL(errorMessage(QString)), SIGNAL(errorMessage(QString)));
    }
    if (ingredientModel) {
        ingredientModel->setIngredient(outputFileIngredient, valueColumnTitle,
                                       documentsLocation() + QLatin1String("/unsigned-zorv.bin"));
    }
}

ExternalUnsignedZorvIngredientManager::~ExternalUnsignedZorvIngredientManager()
{
    delete ingredientModel;
    delete ingredientMapper;
    deleteSupportedViews();
}

void ExternalUnsignedZorvIngredientManager::deleteSupportedViews()
{
    // Cleared first: a slot on destroyed() may call getSupportedViews().
    const QList<IDataView *> views = supportedViews;
    supportedViews.clear();
    qDeleteAll(views);
}

bool ExternalUnsignedZorvIngredientManager::dataLoaded()
{
    return isDataLoaded;
}

IngredientModel *ExternalUnsignedZorvIngredientManager::getIngredients()
{
    if (!ingredientModel) {
        emit errorMessage(QLatin1String("Ingredient model does not have a value!"));
        emit errorMessage(
            QLatin1String("Please contact the plug-in author to correct this error."));
    }
    return ingredientModel;
}

QList<IDataView *> ExternalUnsignedZorvIngredientManager::getSupportedViews()
{
    return supportedViews;
}

bool ExternalUnsignedZorvIngredientManager::ingredientColumnIsVisible(int column)
{
    return ingredientModel && ingredientModel->shouldColumnBeVisible(column);
}

bool ExternalUnsignedZorvIngredientManager::updateModelFromConfig(
    const QHash<QString, QString> &config)
{
    if (!ingredientModel) {
        return false;
    }
    bool changed = false;
    const QModelIndexList cells = ingredientModel->ingredientCells();
    for (const QModelIndex &cell : cells) {
        const QString key = cell.sibling(cell.row(), IngredientColumn::Key).data().toString();
        if (config.contains(key)) {
            const QModelIndex valueCell = cell.sibling(cell.row(), IngredientColumn::Value);
            changed = ingredientModel->setDataFromString(valueCell, config.value(key)) || changed;
        }
    }
    return changed;
}

bool ExternalUnsignedZorvIngredientManager::loadIngredientFile(QString fileName)
{
    QHash<QString, QString> config;
    if (ingredientMapper) {
        config = ingredientMapper->mapIngredient(fileName);
    }
    if (!updateModelFromConfig(config)) {
        emit errorMessage(QString::fromLatin1("%1 did not map to any ingredients!").arg(fileName));
        return false;
    }
    emit statusMessage(QLatin1String("File successfully mapped to ingredient"));
    return true;
}

bool ExternalUnsignedZorvIngredientManager::generateConfigFromDirectory(const QString &directory)
{
    QHash<QString, QString> config;
    if (ingredientMapper) {
        config = ingredientMapper->findAllIngredients(directory);
    }
    if (!updateModelFromConfig(config)) {
        emit errorMessage(QLatin1String("No ingredients were found"));
        return false;
    }
    emit statusMessage(QLatin1String("All ingredients found have been updated!"));
    return true;
}

bool ExternalUnsignedZorvIngredientManager::loadDataFromXmlFile(const QString &fileName)
{
    // A copy: slots connected to the messages below may change the string behind the reference.
    const QString path = fileName; // NOLINT(performance-unnecessary-copy-initialization)

    deleteSupportedViews();
    legacyDataFile = path;
    isDataLoaded = true;
    supportedViews.append(new ExternalUnsignedZorvGpioView);

    if (validateXmlFile(path)) {
        emit statusMessage(QLatin1String("Legacy XML Data file passed validation checks "));
    } else {
        emit errorMessage(QLatin1String("Legacy XML Data file failed validation checks"));
    }

    // Writing the path loads the file a second time, through processDataChange(); the comparison
    // ends that recursion.
    IngredientModel *model = getIngredients();
    if (model && model->getIngredient(legacyDataFileIngredient, valueColumnTitle) != path) {
        model->setIngredient(legacyDataFileIngredient, valueColumnTitle, path);
    }

    emit dataFileLoaded();
    return true;
}

bool ExternalUnsignedZorvIngredientManager::saveDataToXmlFile(const QString &fileName)
{
    Q_UNUSED(fileName)
    return false;
}

void ExternalUnsignedZorvIngredientManager::processDataChange(QModelIndex topLeft,
                                                              QModelIndex bottomRight)
{
    Q_UNUSED(bottomRight)
    const QVariant value = topLeft.data(Qt::DisplayRole);
    const FilePath *file = payloadIn<FilePath>(value);
    if (!file || !file->broadcastChanges
        || !file->broadcastName.contains(QLatin1String("xmlFileName"))) {
        return;
    }
    if (loadDataFromXmlFile(file->fileName)) {
        emit statusMessage(QLatin1String("XML file changed and data was loaded into memory."));
    } else {
        emit errorMessage(QLatin1String("XML file was changed but failed to load into memory."));
    }
}
