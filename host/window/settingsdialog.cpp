// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/settingsdialog.h"

#include "host/core/paths.h"
#include "host/window/typedpath.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace {

const int maxTimeLimitSeconds = 24 * 60 * 60;
const int pathWidthInCharacters = 60;

QString editedPath(const QLineEdit *line)
{
    return absolutePath(typedPath(line->text()));
}

} // namespace

SettingsDialog::SettingsDialog(const Settings &current, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Settings"));
    auto form = new QFormLayout(this);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    plugin = addFileField(form, tr("&Plug-in:"), current.pluginFile,
                          tr("Plug-ins (*.so *.so.*);;All files (*)"));
    plugin->setObjectName(QStringLiteral("settingsPlugin"));
    plugin->setPlaceholderText(tr("The installed one"));
    stitcher = addFileField(form, tr("&Stitcher:"), current.stitcherFile, tr("All files (*)"));
    stitcher->setObjectName(QStringLiteral("settingsStitcher"));
    stitcher->setPlaceholderText(tr("tamblin-stitcher in PATH"));

    timeLimit = new QSpinBox(this);
    timeLimit->setObjectName(QStringLiteral("settingsTimeLimit"));
    timeLimit->setRange(0, maxTimeLimitSeconds);
    timeLimit->setSpecialValueText(tr("No limit"));
    timeLimit->setSuffix(tr(" s"));
    timeLimit->setToolTip(tr("How long the stitcher may run before it is stopped"));
    timeLimit->setValue(current.timeLimitSeconds);
    form->addRow(tr("&Time limit of a build:"), timeLimit);

    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    plugin->setFocus();
}

/// Adds a line for a path with a browse button.
QLineEdit *SettingsDialog::addFileField(QFormLayout *form, const QString &label,
                                        const QString &file, const QString &fileFilter)
{
    auto line = new QLineEdit(QDir::toNativeSeparators(file), this);
    line->setMinimumWidth(fontMetrics().averageCharWidth() * pathWidthInCharacters);
    auto browse = new QPushButton(tr("Browse…"), this);
    browse->setAutoDefault(false);
    // The label of the row only names the field.
    browse->setAccessibleDescription(QString(label).remove(QLatin1Char('&')));
    connect(browse, &QPushButton::clicked, this, [this, line, fileFilter] {
        const QString chosen
            = QFileDialog::getOpenFileName(this, tr("Choose a file"), editedPath(line), fileFilter);
        if (!chosen.isEmpty()) {
            line->setText(QDir::toNativeSeparators(chosen));
        }
    });

    auto row = new QHBoxLayout;
    row->addWidget(line, 1);
    row->addWidget(browse);
    form->addRow(label, row);
    // The form sets a buddy only for a row that is a single widget.
    qobject_cast<QLabel *>(form->labelForField(row))->setBuddy(line);
    return line;
}

Settings SettingsDialog::settings() const
{
    return {editedPath(plugin), editedPath(stitcher), timeLimit->value()};
}

void SettingsDialog::focusStitcher()
{
    stitcher->setFocus();
}
