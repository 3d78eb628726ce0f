// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/ingredientdelegate.h"

#include "host/core/ingredients.h"
#include "host/window/filepatheditor.h"
#include "host/window/ingredientproxymodel.h"
#include "model/choice.h"

#include <QComboBox>
#include <QTimer>

#include <functional>

namespace {

/// A list that opens at once and is left with a choice: the arrow keys only move in it.
class ChoiceEditor : public QComboBox
{
public:
    ChoiceEditor(const Choice &choice, QWidget *parent, std::function<void()> onFinished)
        : QComboBox(parent)
        , finish(std::move(onFinished))
    {
        addItems(choice.choices);
        setCurrentIndex(choice.selectedIndex < choice.choices.count() ? choice.selectedIndex : -1);
        setAccessibleName(IngredientDelegate::tr("Choice"));
        QTimer::singleShot(0, this, &QComboBox::showPopup);
    }

    /// The choice is only known afterwards.
    void hidePopup() override
    {
        QComboBox::hidePopup();
        QTimer::singleShot(0, this, finish);
    }

private:
    std::function<void()> finish;
};

} // namespace

IngredientDelegate::IngredientDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

void IngredientDelegate::commit()
{
    if (openEditor) {
        emit commitData(openEditor);
        emit closeEditor(openEditor);
    }
}

QWidget *IngredientDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                          const QModelIndex &index) const
{
    openEditor = makeEditor(parent, option, index);
    if (openEditor) {
        // Signals are not const, but this function is.
        auto self = const_cast<IngredientDelegate *>(this);
        emit self->editingChanged(true);
        connect(openEditor, &QObject::destroyed, self,
                [self] { emit self->editingChanged(false); });
    }
    return openEditor;
}

QWidget *IngredientDelegate::makeEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    auto self = const_cast<IngredientDelegate *>(this);
    const QVariant value = index.data(Qt::EditRole);
    switch (kindOf(value)) {
    case ValueKind::File: {
        auto editor = new FilePathEditor(
            value.value<FilePath>(),
            index.data(IngredientProxyModel::CandidatesRole).toStringList(), parent);
        connect(editor, &FilePathEditor::finished, self, &IngredientDelegate::commit);
        return editor;
    }
    case ValueKind::Choice:
        return new ChoiceEditor(value.value<Choice>(), parent, [self] { self->commit(); });
    case ValueKind::Text:
    case ValueKind::Other:
        break;
    }
    QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
    QStyledItemDelegate::setEditorData(editor, index);
    return editor;
}

void IngredientDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    Q_UNUSED(editor)
    Q_UNUSED(index)
}

void IngredientDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                      const QModelIndex &index) const
{
    auto pathEditor = qobject_cast<FilePathEditor *>(editor);
    if (pathEditor && pathEditor->isChosen()) {
        model->setData(index, pathEditor->path(), IngredientProxyModel::ChosenRole);
    } else {
        QStyledItemDelegate::setModelData(editor, model, index);
    }
}

void IngredientDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                              const QModelIndex &index) const
{
    Q_UNUSED(index)
    QRect rest = option.rect;
    rest.setRight(editor->parentWidget()->rect().right());
    editor->setGeometry(rest);
}

QSize IngredientDelegate::sizeHint(const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    // Leaves room for an editor, so that rows do not jump and buttons are not clipped.
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(size.height(), option.fontMetrics.height() * 3 / 2));
    return size;
}
