// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/ingredientmodel.h"
#include "plugin/iingredientmanager.h"

#include <QDomNode>
#include <QHash>
#include <QStringList>

class SimpleIngredientMapper;

/// Owns the ingredient model, fills it from files, writes it as a stitcher configuration, and loads
/// the legacy data file whenever the ingredient of that name changes.
///
/// The stitcher configuration is implemented in `_config.cpp`, the validation of the legacy data
/// file in `_legacy.cpp`.
class ExternalUnsignedZorvIngredientManager : public QObject, public IIngredientManager
{
    Q_OBJECT
    Q_INTERFACES(IIngredientManager)

public:
    ExternalUnsignedZorvIngredientManager();
    ~ExternalUnsignedZorvIngredientManager() override;

    bool dataLoaded() override;
    bool generateConfigFromDirectory(const QString &directory) override;
    IngredientModel *getIngredients() override;
    QList<IDataView *> getSupportedViews() override;
    bool ingredientColumnIsVisible(int column) override;
    bool loadConfigFromFile(QString fileName) override;
    /// Always true: a file that fails validation is reported and loaded anyway. Replaces the data
    /// views and writes the path into the model, which loads the file a second time if the path is
    /// new.
    bool loadDataFromXmlFile(const QString &fileName) override;
    bool loadIngredientFile(QString fileName) override;
    bool saveConfigToFile(QString fileName) override;
    /// Always false: this target does not write the legacy data file.
    bool saveDataToXmlFile(const QString &fileName) override;
    /// Also verifies the sections of all files validated before again.
    bool validateXmlFile(const QString &fileName) override;

    /// Writes each value of @p config into the ingredients with its key; true when at least one was
    /// written. Unknown keys and values that an ingredient does not accept are ignored.
    bool updateModelFromConfig(const QHash<QString, QString> &config);

    /// Writes @p config, ingredient keys with their values, as a configuration file; false when
    /// that fails. Only a file that cannot be opened is reported.
    bool writeConfigToFile(const QString &fileName, const QHash<QString, QString> &config);
    /// @name Sections of a configuration file
    /// @{

    /// Appends the section with its values from @p config to @p lines.
    void writeConfigForOutputSettings(QStringList &lines, const QHash<QString, QString> &config);
    void writeConfigForUnsignedIngredients(QStringList &lines,
                                           const QHash<QString, QString> &config);
    void writeConfigForPresignedIngredients(QStringList &lines,
                                            const QHash<QString, QString> &config);

    /// @}

    /// Appends an entry for each of @p keys to @p lines, or a placeholder comment for a key without
    /// a value in @p config.
    void writeConfigEntries(QStringList &lines, const QStringList &keys,
                            const QHash<QString, QString> &config);

    /// Checks the offsets and sizes of the nodes of one header section and reports each error; true
    /// when there is none.
    bool verifyHeader(QDomNode header);

signals:
    /// Progress or a report, for the user; also those of the model and the mapper.
    void statusMessage(QString message);
    /// An error, for the user; also those of the model and the mapper.
    void errorMessage(QString message);
    /// A legacy data file has been loaded, valid or not; the data views have been replaced.
    void dataFileLoaded();

public slots:
    /// Loads the legacy data file when @p topLeft is the cell that names it. The model changes one
    /// cell at a time, so @p bottomRight is ignored.
    void processDataChange(QModelIndex topLeft, QModelIndex bottomRight);

private:
    QHash<QString, QString> modelAsConfig();
    bool writeLines(const QString &fileName, const QStringList &lines);
    QHash<QString, QString> readConfig(const QString &text);
    bool verifyVersion(const QDomElement &root);
    void deleteSupportedViews();

    bool isDataLoaded = false;
    QString legacyDataFile;
    QList<QDomNode> headerSections;
    IngredientModel *ingredientModel = nullptr;
    SimpleIngredientMapper *ingredientMapper = nullptr;
    QList<IDataView *> supportedViews;
};
