// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "model/filepath.h"

#include <QWidget>

class QLineEdit;
class QToolButton;

/// Edits a FilePath in place: a line for the path and a button that opens a file dialog. A file
/// that is dropped on it is taken.
class FilePathEditor : public QWidget
{
    Q_OBJECT

public:
    explicit FilePathEditor(QWidget *parent = nullptr);
    ~FilePathEditor() override;

    void setFilePath(const FilePath &newFilePath);
    /// What was set, with the path as edited and all else as it was.
    FilePath filePath() const;

    /// Lets the user choose a file, to open or to save as the value asks for, from where the current
    /// one is.
    void browse();

signals:
    /// The user is done with this editor, by choosing or dropping a file or by leaving it.
    void finished();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void choose(const QString &file);
    void followFocus(const QWidget *old, const QWidget *now);

    FilePath value;
    QLineEdit *pathLine;
    QToolButton *browseButton;
};
