// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/vendorprefix.h"

#include <QList>
#include <QObject>
#include <QString>

class IDataView;
class QAbstractItemModel;

/// The plug-in's side of everything that goes into an image: the ingredients, the stitcher's
/// configuration and the legacy data file.
///
/// Operations that fail report the reason through StatusManager::errorMessage(). The host calls
/// through the virtual table: the order of the operations must not change.
class IIngredientManager
{
public:
    /// The plug-in deletes its managers; hosts do not.
    virtual ~IIngredientManager() { }

    /// Whether a legacy data file has been loaded, valid or not.
    virtual bool dataLoaded() = 0;
    /// Fills ingredients from the files below @p directory, by file name; true when at least one
    /// was filled.
    virtual bool generateConfigFromDirectory(const QString &directory) = 0;
    /// The ingredient tree; owned by the plug-in.
    virtual QAbstractItemModel *getIngredients() = 0;
    /// The data views; owned by the plug-in, which replaces them whenever it loads a legacy data
    /// file: call again after StatusManager::dataFileChanged().
    virtual QList<IDataView *> getSupportedViews() = 0;
    /// Whether a view of the ingredient tree should show @p column.
    virtual bool ingredientColumnIsVisible(int column) = 0;
    /// Fills ingredients from a stitcher configuration; true when at least one was filled.
    virtual bool loadConfigFromFile(QString fileName) = 0;
    /// Validates and loads a legacy data file; true when it was loaded, even if it is not valid.
    virtual bool loadDataFromXmlFile(const QString &fileName) = 0;
    /// Fills the ingredients that the name of @p fileName matches; true when at least one was
    /// filled.
    virtual bool loadIngredientFile(QString fileName) = 0;
    /// Writes the stitcher configuration; true when the whole file was written. Only a file that
    /// cannot be opened is reported.
    virtual bool saveConfigToFile(QString fileName) = 0;
    /// Writes the legacy data file; false when that fails or the target does not support it.
    virtual bool saveDataToXmlFile(const QString &fileName) = 0;
    /// Validates a legacy data file and reports the result line by line, as status and error
    /// messages; true when the file is valid.
    virtual bool validateXmlFile(const QString &fileName) = 0;
};

/// The identifier that qobject_cast compares; see vendorprefix.h.
#define IIngredientManager_iid LOOMWRIGHT_VENDOR_PREFIX ".plugin.tamblin.IIngredientManager/1.0"
Q_DECLARE_INTERFACE(IIngredientManager, IIngredientManager_iid)
