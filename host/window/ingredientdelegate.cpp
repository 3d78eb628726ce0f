// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/ingredientdelegate.h"

#include "host/core/ingredients.h"
#include "host/window/filepatheditor.h"
#include "host/window/ingredientproxymodel.h"
#include "model/choice.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include <functional>

namespace {

/// The text at the end of the cell when there are several candidates; empty otherwise.
QString candidatesText(const QModelIndex &index)
{
    const int count = index.data(IngredientProxyModel::CandidatesRole).toStringList().count();
    return count == 0 || kindOf(index.data(Qt::EditRole)) != ValueKind::File
        ? QString()
        : IngredientDelegate::tr("%1 candidates ▾").arg(QLocale().toString(count));
}

/// The area in which that text can be clicked.
QRect candidatesRect(const QStyleOptionViewItem &cell, const QString &text)
{
    QRect rect = cell.rect;
    rect.setLeft(rect.right() - cell.fontMetrics.horizontalAdvance(text + QLatin1String("  ")));
    return rect;
}

/// A list that opens at once and is left with a choice: the arrow keys only move in it.
class ChoiceEditor : public QComboBox
{
public:
    ChoiceEditor(QWidget *parent, std::function<void()> onFinished)
        : QComboBox(parent)
        , finish(std::move(onFinished))
    {
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

QColor textColor(const QStyleOptionViewItem &cell, QPalette::ColorRole role)
{
    const bool selected = cell.state & QStyle::State_Selected;
    return cell.palette.color(selected ? QPalette::HighlightedText : role);
}

} // namespace

IngredientDelegate::IngredientDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

void IngredientDelegate::finish(QWidget *editor)
{
    emit commitData(editor);
    emit closeEditor(editor);
}

void IngredientDelegate::commit()
{
    if (openEditor) {
        finish(openEditor);
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
    switch (kindOf(index.data(Qt::EditRole))) {
    case ValueKind::File: {
        auto editor = new FilePathEditor(parent);
        connect(editor, &FilePathEditor::finished, self, [self, editor] { self->finish(editor); });
        return editor;
    }
    case ValueKind::Choice: {
        return new ChoiceEditor(parent, [self] { self->commit(); });
    }
    case ValueKind::Text:
    case ValueKind::Other:
        break;
    }
    return QStyledItemDelegate::createEditor(parent, option, index);
}

void IngredientDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (filledEditor == editor) {
        return;
    }
    filledEditor = editor;
    const QVariant value = index.data(Qt::EditRole);
    if (auto pathEditor = qobject_cast<FilePathEditor *>(editor)) {
        pathEditor->setFilePath(value.value<FilePath>());
        pathEditor->setCandidates(index.data(IngredientProxyModel::CandidatesRole).toStringList());
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
        // The plug-in acts on every write as a change, so an unchanged path is not written.
        const FilePath edited = pathEditor->filePath();
        if (edited.fileName != textOf(index.data(Qt::EditRole))) {
            model->setData(index, QVariant::fromValue(edited), Qt::EditRole);
        }
    } else if (auto list = qobject_cast<QComboBox *>(editor)) {
        auto choice = index.data(Qt::EditRole).value<Choice>();
        if (choice.selectedIndex != list->currentIndex()) {
            choice.selectedIndex = list->currentIndex();
            model->setData(index, QVariant::fromValue(choice), Qt::EditRole);
        }
    } else {
        QStyledItemDelegate::setModelData(editor, model, index);
    }
}

void IngredientDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                              const QModelIndex &index) const
{
    QStyledItemDelegate::updateEditorGeometry(editor, option, index);
    if (qobject_cast<FilePathEditor *>(editor)) {
        QRect rest = option.rect;
        rest.setRight(editor->parentWidget()->rect().right());
        editor->setGeometry(rest);
    }
}

QSize IngredientDelegate::sizeHint(const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    // Leaves room for an editor, so that rows do not jump and buttons are not clipped.
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(size.height(), option.fontMetrics.height() * 3 / 2));
    return size;
}

void IngredientDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    if (index.model()->buddy(index) != index
        || kindOf(index.data(Qt::EditRole)) != ValueKind::File) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.text.clear();
    const QStyle *style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    painter->save();
    paintPath(painter, cell, index);
    painter->restore();
}

/// Draws the file name first, since it matters most; the folder gets the rest of the cell.
void IngredientDelegate::paintPath(QPainter *painter, const QStyleOptionViewItem &cell,
                                   const QModelIndex &index) const
{
    const QFontMetrics &metrics = cell.fontMetrics;
    const int gap = metrics.averageCharWidth() * 2;
    const QStyle *style = cell.widget ? cell.widget->style() : QApplication::style();
    // The margin of other values.
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, cell.widget) + 1;
    QRect rest = cell.rect.adjusted(margin, 0, -margin, 0);
    const QString candidates = candidatesText(index);
    if (!candidates.isEmpty() && candidatesRect(cell, candidates).left() > cell.rect.left()) {
        const QRect place = candidatesRect(cell, candidates);
        painter->setPen(textColor(cell, QPalette::Link));
        painter->drawText(place, Qt::AlignCenter, candidates);
        rest.setRight(place.left() - gap / 2);
    }
    const auto draw = [&](const QString &text, QPalette::ColorRole role) {
        const QString shown = metrics.elidedText(text, Qt::ElideMiddle, rest.width());
        painter->setPen(textColor(cell, role));
        painter->drawText(rest, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
        rest.setLeft(rest.left() + metrics.horizontalAdvance(shown) + gap);
    };
    const QString path = textOf(index.data(Qt::EditRole));
    if (path.isEmpty()) {
        draw(tr("no file chosen"), QPalette::PlaceholderText);
        return;
    }
    const QFileInfo file(path);
    draw(file.fileName(), QPalette::Text);
    // A smaller space would show only the ellipsis.
    if (rest.width() > gap * 4) {
        draw(QDir::toNativeSeparators(file.path()), QPalette::PlaceholderText);
    }
}

bool IngredientDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                     const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const QString candidates = candidatesText(index);
    if (event->type() == QEvent::MouseButtonRelease && !candidates.isEmpty()
        && model->buddy(index) == index
        && candidatesRect(option, candidates).contains(static_cast<QMouseEvent *>(event)->pos())) {
        emit editRequested(index);
        return true;
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}
