// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/window/settings.h"

#include <QDialog>

class QFormLayout;
class QLineEdit;
class QSpinBox;

/// Edits the settings; the caller applies and stores them.
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
    QLineEdit *addFileField(QFormLayout *form, const QString &label, const QString &file,
                            const QString &fileFilter);

    QLineEdit *plugin;
    QLineEdit *stitcher;
    QSpinBox *timeLimit;
};
