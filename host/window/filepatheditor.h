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

public:
    explicit FilePathEditor(QWidget *parent = nullptr);
    ~FilePathEditor() override;

    void setFilePath(const FilePath &newFilePath);
    /// Offers @p files in a list that is searched for what the user types.
    void setCandidates(const QStringList &files);
    /// The value that was set, with the edited path.
    FilePath filePath() const;

    /// Opens a dialog to choose a file, for opening or saving as the value requires, in the folder
    /// of the current one.
    void browse();

signals:
    /// The user has finished editing, by choosing a file or by leaving the editor.
    void finished();

private:
    void choose(const QString &file);
    void followFocus(const QWidget *old, const QWidget *now);

    FilePath value;
    QLineEdit *pathLine;
    QToolButton *browseButton;
};
