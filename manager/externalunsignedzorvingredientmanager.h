// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/ingredientmodel.h"
#include "plugin/iingredientmanager.h"

#include <QDomNode>
#include <QHash>
#include <QStringList>

class SimpleIngredientMapper;

/// Owns the ingredient model, fills it from outside and writes it out, and loads the legacy data
/// file whenever the ingredient of that name changes.
///
/// In three chapters: the model and what fills it, the stitcher's configuration
/// (`_config.cpp`), the legacy data file (`_legacy.cpp`).
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
    /// Always true: a file that fails validation is reported and loaded all the same. Replaces the
    /// data views and writes the path into the model, which loads the file a second time.
    bool loadDataFromXmlFile(const QString &fileName) override;
    bool loadIngredientFile(QString fileName) override;
    bool saveConfigToFile(QString fileName) override;
    /// Always false: this target does not write the legacy data file.
    bool saveDataToXmlFile(const QString &fileName) override;
    /// Also verifies again the sections of every file that was validated before.
    bool validateXmlFile(const QString &fileName) override;

    /// Writes each value of @p config into the ingredients with its key; true when one was written.
    bool updateModelFromConfig(const QHash<QString, QString> &config);

    /// Writes @p config as a configuration file; false, with an error message, when that fails.
    bool writeConfigToFile(const QString &fileName, const QHash<QString, QString> &config);
    /// @name Sections of a configuration file: each appends its lines to @p lines.
    /// @{

    /// Appends the section of that name from @p config.
    void writeConfigForOutputSettings(QStringList &lines, const QHash<QString, QString> &config);
    void writeConfigForUnsignedIngredients(QStringList &lines,
                                           const QHash<QString, QString> &config);
    void writeConfigForPresignedIngredients(QStringList &lines,
                                            const QHash<QString, QString> &config);

    /// @}

    /// Appends an entry for each of @p keys, or a placeholder comment for one without a value.
    void writeConfigEntries(QStringList &lines, const QStringList &keys,
                            const QHash<QString, QString> &config);

    /// Checks the offsets and sizes of the nodes of one header section, with a report.
    bool verifyHeader(QDomNode header);

signals:
    /// Progress and reports, for the user.
    void statusMessage(QString message);
    /// What went wrong, for the user; of the model and the mapper as well.
    void errorMessage(QString message);
    /// A legacy data file has been loaded, valid or not: the data views are new ones.
    void dataFileLoaded();

public slots:
    /// Loads the legacy data file when the cell at @p topLeft names another one. The model changes one
    /// cell at a time, so @p bottomRight is not looked at.
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
