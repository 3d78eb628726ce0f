// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/window/settings.h"

#include <QDialog>

class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// Edits the settings. It can be accepted only if all of them are valid; the caller stores and
/// applies them.
class SettingsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SettingsDialog(const Settings &current, QWidget *parent = nullptr);

    /// The edited settings.
    Settings settings() const;
    /// Moves the focus to the stitcher.
    void focusStitcher();

private:
    /// A line for a path, a browse button, and a label for what is wrong with the path.
    struct FileField {
        QLineEdit *line;
        QLabel *problem;
    };

    FileField addFileField(QFormLayout *form, const QString &label, const QString &name,
                           const QString &fileFilter);
    void validate();

    FileField plugin;
    FileField stitcher;
    QSpinBox *timeLimit;
    QPushButton *okButton;
};
