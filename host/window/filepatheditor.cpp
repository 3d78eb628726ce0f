// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/filepatheditor.h"

#include "host/window/typedpath.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>

FilePathEditor::FilePathEditor(const FilePath &current, const QStringList &candidates,
                               QWidget *parent)
    : QWidget(parent)
    , value(current)
    , pathLine(new QLineEdit(this))
    , browseButton(new QToolButton(this))
{
    auto layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(pathLine);
    layout->addWidget(browseButton);

    pathLine->setText(QDir::toNativeSeparators(value.fileName));
    pathLine->selectAll();
    pathLine->setAccessibleName(tr("Path"));
    pathLine->setFrame(false);
    // The window handles drops: the line would insert a URL instead of a path.
    pathLine->setAcceptDrops(false);
    browseButton->setText(tr("Browse…"));
    browseButton->setAccessibleName(tr("Browse for a file"));
    browseButton->setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(pathLine);
    setAutoFillBackground(true);

    if (!candidates.isEmpty()) {
        offer(candidates);
    }
    connect(browseButton, &QToolButton::clicked, this, &FilePathEditor::browse);
    connect(qApp, &QApplication::focusChanged, this, &FilePathEditor::followFocus);
}

FilePathEditor::~FilePathEditor()
{
    // The base class takes the focus away, which would call followFocus() on what is left of this.
    disconnect(qApp, nullptr, this, nullptr);
}

void FilePathEditor::offer(const QStringList &candidates)
{
    auto completer = new QCompleter(candidates, this);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->popup()->setTextElideMode(Qt::ElideLeft);
    pathLine->setCompleter(completer);
    connect(completer, QOverload<const QString &>::of(&QCompleter::activated), this,
            &FilePathEditor::choose, Qt::QueuedConnection);
    // All of them until the user types something.
    QTimer::singleShot(0, completer, [this, completer] {
        QAbstractItemView *list = completer->popup();
        const int wanted
            = list->sizeHintForColumn(0) + list->verticalScrollBar()->sizeHint().width();
        const int available = screen()->availableGeometry().right() - mapToGlobal({}).x();
        list->setMinimumWidth(qMin(wanted, available));
        completer->complete();
    });
}

QString FilePathEditor::path() const
{
    return typedPath(pathLine->text());
}

bool FilePathEditor::isChosen() const
{
    return hasChosen;
}

void FilePathEditor::browse()
{
    // This editor must be the parent: the view closes an editor when any other widget gets the
    // focus.
    choose(value.isInput
               ? QFileDialog::getOpenFileName(this, tr("Choose a file"), path(), value.fileFilter)
               : QFileDialog::getSaveFileName(this, tr("Choose the file to write"), path(),
                                              value.fileFilter));
}

void FilePathEditor::choose(const QString &file)
{
    if (!file.isEmpty()) {
        pathLine->setText(QDir::toNativeSeparators(file));
        hasChosen = true;
        emit finished();
    }
}

void FilePathEditor::followFocus(const QWidget *old, const QWidget *now)
{
    // Without a focus widget, another program is active, and the user will return.
    if (old && isAncestorOf(old) && now && !isAncestorOf(now) && now->window() == window()) {
        emit finished();
    }
}
