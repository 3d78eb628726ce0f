// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/ingredientdelegate.h"

#include "host/core/ingredients.h"
#include "host/window/filepatheditor.h"
#include "model/choice.h"

#include <QComboBox>

IngredientDelegate::IngredientDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

void IngredientDelegate::finish(QWidget *editor)
{
    emit commitData(editor);
    emit closeEditor(editor);
}

QWidget *IngredientDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                          const QModelIndex &index) const
{
    // The signals of a delegate are not const, while this operation is.
    auto self = const_cast<IngredientDelegate *>(this);
    switch (kindOf(index.data(Qt::EditRole))) {
    case ValueKind::File: {
        auto editor = new FilePathEditor(parent);
        connect(editor, &FilePathEditor::finished, self, [self, editor] { self->finish(editor); });
        return editor;
    }
    case ValueKind::Choice: {
        auto editor = new QComboBox(parent);
        editor->setAccessibleName(tr("Choice"));
        connect(editor, QOverload<int>::of(&QComboBox::activated), self,
                [self, editor] { self->finish(editor); });
        return editor;
    }
    case ValueKind::Text:
    case ValueKind::Other:
        break;
    }
    return QStyledItemDelegate::createEditor(parent, option, index);
}

void IngredientDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const QVariant value = index.data(Qt::EditRole);
    if (auto pathEditor = qobject_cast<FilePathEditor *>(editor)) {
        pathEditor->setFilePath(value.value<FilePath>());
    } else if (auto list = qobject_cast<QComboBox *>(editor)) {
        const auto choice = value.value<Choice>();
        list->clear();
        list->addItems(choice.choices);
        list->setCurrentIndex(choice.selectedIndex < choice.choices.count() ? choice.selectedIndex
                                                                            : -1);
    } else {
        QStyledItemDelegate::setEditorData(editor, index);
    }
}

void IngredientDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                      const QModelIndex &index) const
{
    if (auto pathEditor = qobject_cast<FilePathEditor *>(editor)) {
        // An unchanged path is not written: to the plug-in every write is a change to act upon.
        const FilePath edited = pathEditor->filePath();
        if (edited.fileName != textOf(index.data(Qt::EditRole))) {
            model->setData(index, QVariant::fromValue(edited), Qt::EditRole);
        }
    } else if (auto list = qobject_cast<QComboBox *>(editor)) {
        auto choice = index.data(Qt::EditRole).value<Choice>();
        choice.selectedIndex = list->currentIndex();
        model->setData(index, QVariant::fromValue(choice), Qt::EditRole);
    } else {
        QStyledItemDelegate::setModelData(editor, model, index);
    }
}

QSize IngredientDelegate::sizeHint(const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    // High enough for an editor, so that rows do not jump and buttons are not cut.
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(size.height(), option.fontMetrics.height() * 3 / 2));
    return size;
}
