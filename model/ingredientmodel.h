// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/checkresult.h"
#include "model/choice.h"
#include "model/filepath.h"
#include "model/ingredientindex.h"
#include "model/modelcolumns.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QStringList>

class IngredientItem;
class QDomDocument;
class QDomElement;
class QDomNode;

/// The store of all ingredient values: a tree of root, groups and ingredients, built once from a
/// definition document. Rows are never added or removed.
///
/// Lookups by name report unknown names through errorMessage().
class IngredientModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// Builds the tree from @p definition, the XML text of a definition document. If it cannot be
    /// parsed, the tree shows the parser's message instead; nothing else is reported.
    explicit IngredientModel(const QString &definition, QObject *parent = nullptr);
    ~IngredientModel() override;

    /// @name QAbstractItemModel
    /// @{

    /// See QAbstractItemModel.
    QModelIndex index(int row, int column,
                      const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /// Qt::DisplayRole gives the cell, ::VisibilityRole the row's visibility as "visible" or
    /// "hidden"; every other role, Qt::EditRole included, gives an invalid value.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Qt::EditRole replaces an editable cell, ::VisibilityRole sets the row's visibility from a
    /// boolean.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// @}

    /// Whether a view should show @p column; false for a column that the definition does not name.
    bool shouldColumnBeVisible(int column) const;
    /// Always true; ::VisibilityRole gives the flag.
    bool getGroupVisible(const QString &groupName) const;
    /// Sets the visibility flag of a group; an unknown name is reported.
    void setGroupVisible(const QString &groupName, bool visible);
    /// True for every ingredient, hidden ones too; ::VisibilityRole gives the flag. False, with an
    /// error message, for an unknown name.
    bool getIngredientVisible(const QString &ingredientName);
    /// Sets the visibility flag of an ingredient; an unknown name is reported.
    void setIngredientVisible(const QString &ingredientName, bool visible);
    /// Rebuilds the indexes of groups and ingredients by name; of several equal names the first
    /// wins.
    void generateIndexes();

    /// The name cells of all ingredients, in tree order.
    QModelIndexList ingredientCells() const;

    /// The text of the cell: a path, the selected entry or the string; empty for any other kind.
    QString dataAsString(const QModelIndex &index) const;
    /// Writes @p text into the editable cell at @p index, keeping everything else of a FilePath or
    /// Choice. Returns false, with no change, for any other cell and for an entry that a Choice
    /// does not have.
    bool setDataFromString(const QModelIndex &index, const QString &text);
    /// The text of an ingredient's cell, by display name and header text ("Host FW", "Value").
    /// Empty, with an error message for each, when a name is unknown.
    QString getIngredient(const QString &ingredientName, const QString &columnName);
    /// Writes @p text into an ingredient's cell. A cell that does not accept it is left unchanged
    /// without a message; an unknown name is reported.
    void setIngredient(const QString &ingredientName, const QString &columnName,
                       const QString &text);
    /// The paths of all files of the visible ingredients of a group, in row order, empty ones too.
    QStringList getAllVisibleFileNames(QString groupName);

    /// Checks every file of every visible ingredient, in tree order, and keeps the results until
    /// the next call.
    QList<CheckResult> checkAllFiles();

signals:
    /// Declared for the host; never emitted. The model reports changes through dataChanged() only.
    void changeOccured(QString broadcastName, QString value);
    /// Declared for the host; never emitted.
    void statusMessage(QString message);
    /// A name that was looked up and not found.
    void errorMessage(QString message);

private:
    friend class TestModel; // Positions are never invalid, but have a message if they were.

    void setupModelData(const QDomDocument &document);
    void setupParseErrorData(const QString &parserMessage, int line);
    void processColumnHeaders(const QDomNode &columnsNode, QVector<QVariant> *headers);
    void addIngredientGroup(const QDomNode &groupNode, QList<IngredientItem *> *groups,
                            int columnCount);
    static void addIngredients(const QDomNode &groupNode, IngredientItem *group, int columnCount);
    static void addIngredientColumns(const QDomNode &ingredientNode, QVector<QVariant> *values);
    static FilePath processFileField(const QDomElement &element);
    static Choice processChoiceField(const QDomElement &element);
    static QString processTextField(const QDomElement &element);
    static void fillEmptyColumns(QVector<QVariant> *values, int columnCount);

    IngredientItem *itemFor(const QModelIndex &index) const;
    bool isOwnIndex(const QModelIndex &index) const;
    void clearIndexes();
    void generateColumnIndexes();
    const IngredientIndex *findGroup(const QString &groupName);
    const IngredientIndex *findIngredient(const QString &ingredientName);
    int findColumn(const QString &columnName);
    QModelIndex groupCell(const QString &groupName);
    QModelIndex ingredientCell(const QString &ingredientName);
    QModelIndex ingredientCell(const QString &ingredientName, const QString &columnName);
    QModelIndex cellAt(const IngredientIndex &position, int column);
    QModelIndex checkedCell(int row, int column, IngredientItem *item);
    static QList<FilePath> filesOf(const IngredientItem &ingredient);
    static QList<CheckResult> checkFile(const QString &ingredientName, const FilePath &file);

    QStringList visibleFileNames;
    QHash<int, bool> columnEditable;
    QHash<int, bool> columnVisible;
    QHash<QString, IngredientIndex *> ingredientIndexes;
    QHash<QString, IngredientIndex *> groupIndexes;
    QHash<QString, int> columnIndexes;
    IngredientItem *rootItem = nullptr;
    QList<CheckResult> checkResults;
};
