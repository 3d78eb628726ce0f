// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/filepath.h"

#include <QWidget>

class QLineEdit;
class QToolButton;

/// Edits a FilePath in place: a line for the path and a button that opens a file dialog.
class FilePathEditor : public QWidget
{
    Q_OBJECT
    /// What a delegate stores.
    Q_PROPERTY(QString path READ path USER true)

public:
    /// Edits the path of @p current. Offers @p candidates in a list that is searched for what the
    /// user types.
    FilePathEditor(const FilePath &current, const QStringList &candidates,
                   QWidget *parent = nullptr);
    ~FilePathEditor() override;

    /// The edited path.
    QString path() const;
    /// Whether the user has chosen it from a list or in a dialog, which may be the path that was
    /// there.
    bool isChosen() const;

    /// Opens a dialog to choose a file, for opening or saving as the value requires, in the folder
    /// of the current one.
    void browse();

signals:
    /// The user has finished editing, by choosing a file or by leaving the editor.
    void finished();

private:
    void offer(const QStringList &candidates);
    void choose(const QString &file);
    void followFocus(const QWidget *old, const QWidget *now);

    FilePath value;
    QLineEdit *pathLine;
    QToolButton *browseButton;
    bool hasChosen = false;
};
