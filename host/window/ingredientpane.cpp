// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/ingredientpane.h"

#include "host/window/ingredientdelegate.h"
#include "host/window/ingredientproxymodel.h"
#include "host/window/session.h"
#include "model/modelcolumns.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QHeaderView>
#include <QMenu>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

/// The pane width from which an additional column is shown.
const struct {
    IngredientProxyModel::ExtraColumn column;
    int minCharacters;
} extraColumns[] = {{IngredientProxyModel::SizeColumn, 110},
                    {IngredientProxyModel::ModifiedColumn, 140},
                    {IngredientProxyModel::FolderColumn, 80}};

} // namespace

IngredientPane::IngredientPane(Session *imageSession, QWidget *parent)
    : QWidget(parent)
    , session(imageSession)
    , model(new IngredientProxyModel(imageSession, this))
    , tree(new QTreeView(this))
    , delegate(new IngredientDelegate(this))
    , editAction(new QAction(tr("&Edit value"), this))
    , clearAction(new QAction(tr("Clear &value"), this))
    , copyAction(new QAction(tr("Copy &path"), this))
{
    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tree);

    tree->setObjectName(QStringLiteral("ingredientTree"));
    tree->setAccessibleName(tr("Ingredients"));
    tree->setModel(model);
    tree->setItemDelegate(delegate);
    tree->setAlternatingRowColors(true);
    tree->setUniformRowHeights(true);
    tree->setAllColumnsShowFocus(true);
    tree->setTextElideMode(Qt::ElideMiddle);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    // Only edit() opens an editor: a group has no value, but its cells may be editable.
    tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &IngredientPane::updateActions);
    setFocusProxy(tree);

    editAction->setShortcut(Qt::Key_F2);
    clearAction->setShortcut(QKeySequence::Delete);
    for (QAction *action : {editAction, clearAction}) {
        action->setShortcutContext(Qt::WidgetShortcut);
        tree->addAction(action);
    }
    connect(editAction, &QAction::triggered, this, [this] { edit(tree->currentIndex()); });
    connect(clearAction, &QAction::triggered, this, &IngredientPane::clearCurrent);
    connect(copyAction, &QAction::triggered, this, &IngredientPane::copyCurrent);

    connect(tree, &QTreeView::activated, this, &IngredientPane::edit);
    connect(tree, &QWidget::customContextMenuRequested, this, &IngredientPane::showMenu);
    connect(tree, &QTreeView::clicked, this, [this](const QModelIndex &index) {
        const bool hasCandidates
            = !index.data(IngredientProxyModel::CandidatesRole).toStringList().isEmpty();
        if (hasCandidates && model->buddy(index) == index) {
            edit(index);
        }
    });
    connect(delegate, &IngredientDelegate::editingChanged, session, &Session::setEditing);
    connect(session, &Session::pluginAboutToChange, this, &IngredientPane::detach);
    connect(session, &Session::pluginChanged, this, &IngredientPane::attach);
    connect(session, &Session::changed, this, &IngredientPane::update);
}

void IngredientPane::detach()
{
    const auto ingredient = model->ingredientAt(tree->currentIndex());
    current = ingredient ? ingredient->id : IngredientId();
    model->setSourceModel(nullptr);
}

void IngredientPane::attach()
{
    if (!session->isLoaded()) {
        return;
    }
    IIngredientManager *manager = session->root()->getIngredientManager();
    model->setSourceModel(manager->getIngredients());
    model->update();
    tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    hideColumns();
    tree->expandAll();
    hideRows();
    const QModelIndex cell = model->valueCell(current);
    // The keyboard starts with a row.
    tree->setCurrentIndex(cell.isValid() ? cell : model->index(0, 0, model->index(0, 0)));
}

/// Hides the columns that the plug-in wants hidden. In a narrow window also hides the additional
/// ones, which the tooltip shows too, to leave room for the value.
void IngredientPane::hideColumns()
{
    if (!session->isLoaded() || !model->sourceModel()) {
        return;
    }
    const int sourceColumns = model->sourceModel()->columnCount();
    for (int column = 0; column < sourceColumns; ++column) {
        tree->setColumnHidden(
            column, !session->root()->getIngredientManager()->ingredientColumnIsVisible(column));
    }
    const int characters = width() / fontMetrics().averageCharWidth();
    for (const auto &extra : extraColumns) {
        tree->setColumnHidden(model->proxyColumnForExtraColumn(extra.column),
                              characters < extra.minCharacters);
    }
    // Long names and other columns leave room for the values.
    tree->header()->setMaximumSectionSize(width() / 2);
}

void IngredientPane::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    hideColumns();
}

void IngredientPane::update()
{
    model->update();
    hideRows();
    updateActions();
}

/// Enables what can be done with the current row.
void IngredientPane::updateActions()
{
    const auto ingredient = model->ingredientAt(tree->currentIndex());
    const bool hasValue = ingredient && !ingredient->text().isEmpty();
    editAction->setEnabled(ingredient && !session->isBuilding());
    clearAction->setEnabled(hasValue && !session->isBuilding()
                            && kindOf(ingredient->value) != ValueKind::Choice);
    copyAction->setEnabled(hasValue);
}

void IngredientPane::showIngredient(const IngredientId &id)
{
    const QModelIndex cell = model->valueCell(id);
    if (cell.isValid()) {
        tree->setCurrentIndex(cell);
        tree->scrollTo(cell);
        tree->setFocus();
    }
}

std::optional<IngredientPane::FileRow> IngredientPane::fileRowAt(const QPoint &position) const
{
    QWidget *rows = tree->viewport();
    const QPoint inTree = rows->mapFrom(window(), position);
    const QModelIndex index = rows->rect().contains(inTree) ? tree->indexAt(inTree) : QModelIndex();
    const auto ingredient = model->ingredientAt(index);
    if (!ingredient || kindOf(ingredient->value) != ValueKind::File) {
        return std::nullopt;
    }
    const QRect cell = tree->visualRect(index);
    const QRect row(0, cell.top(), rows->width(), cell.height());
    return FileRow{ingredient->id, row.translated(rows->mapTo(window(), QPoint()))};
}

void IngredientPane::commitEditor()
{
    delegate->commit();
}

void IngredientPane::hideRows()
{
    for (int groupRow = 0; groupRow < model->rowCount(); ++groupRow) {
        const QModelIndex group = model->index(groupRow, 0);
        const auto isHidden = [](const QModelIndex &index) {
            return index.data(VisibilityRole).toString() == QLatin1String("hidden");
        };
        tree->setRowHidden(groupRow, {}, isHidden(group));
        for (int row = 0; row < model->rowCount(group); ++row) {
            tree->setRowHidden(row, group, isHidden(model->index(row, 0, group)));
        }
    }
}

QList<QAction *> IngredientPane::rowActions() const
{
    return {editAction, clearAction, copyAction};
}

void IngredientPane::showMenu(const QPoint &position)
{
    const QModelIndex index = tree->indexAt(position);
    if (!model->ingredientAt(index)) {
        return;
    }
    tree->setCurrentIndex(index);
    QMenu menu(this);
    menu.addActions(rowActions());
    menu.exec(tree->viewport()->mapToGlobal(position));
}

void IngredientPane::edit(const QModelIndex &index)
{
    if (model->ingredientAt(index) && !session->isBuilding()) {
        const QModelIndex cell = model->buddy(index);
        tree->setCurrentIndex(cell);
        tree->edit(cell);
    }
}

void IngredientPane::clearCurrent()
{
    const auto ingredient = model->ingredientAt(tree->currentIndex());
    if (ingredient) {
        session->setValue(ingredient->id, QString());
    }
}

void IngredientPane::copyCurrent()
{
    const auto ingredient = model->ingredientAt(tree->currentIndex());
    if (ingredient) {
        QApplication::clipboard()->setText(QDir::toNativeSeparators(ingredient->text()));
    }
}
