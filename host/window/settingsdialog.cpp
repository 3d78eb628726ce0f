// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/settingsdialog.h"

#include "host/core/paths.h"
#include "host/window/marks.h"
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

QString shownPath(const QString &file)
{
    return QDir::toNativeSeparators(file);
}

QString editedPath(const QLineEdit *line)
{
    return QDir::cleanPath(absolutePath(typedPath(line->text())));
}

} // namespace

SettingsDialog::SettingsDialog(const Settings &current, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Settings"));
    auto layout = new QVBoxLayout(this);
    auto form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    layout->addLayout(form);
    plugin = addFileField(form, tr("&Plug-in:"), QStringLiteral("settingsPlugin"),
                          tr("Plug-ins (*.so *.so.*);;All files (*)"));
    plugin.line->setPlaceholderText(tr("The installed one"));
    stitcher = addFileField(form, tr("&Stitcher:"), QStringLiteral("settingsStitcher"),
                            tr("All files (*)"));
    stitcher.line->setPlaceholderText(tr("tamblin-stitcher in PATH"));

    timeLimit = new QSpinBox(this);
    timeLimit->setObjectName(QStringLiteral("settingsTimeLimit"));
    timeLimit->setRange(0, maxTimeLimitSeconds);
    timeLimit->setSpecialValueText(tr("No limit"));
    timeLimit->setSuffix(tr(" s"));
    timeLimit->setToolTip(tr("How long the stitcher may run before it is stopped"));
    form->addRow(tr("&Time limit of a build:"), timeLimit);

    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    okButton = buttons->button(QDialogButtonBox::Ok);
    layout->addStretch();
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    plugin.line->setText(shownPath(current.pluginFile));
    stitcher.line->setText(shownPath(current.stitcherFile));
    timeLimit->setValue(current.timeLimitSeconds);
    plugin.line->setFocus();
    validate();
}

SettingsDialog::FileField SettingsDialog::addFileField(QFormLayout *form, const QString &label,
                                                       const QString &name,
                                                       const QString &fileFilter)
{
    const FileField field{new QLineEdit(this), new QLabel(this)};
    field.line->setObjectName(name);
    field.line->setMinimumWidth(fontMetrics().averageCharWidth() * pathWidthInCharacters);
    field.problem->setObjectName(name + QLatin1String("Problem"));
    field.problem->setTextFormat(Qt::PlainText);
    field.problem->setWordWrap(true);
    field.problem->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);

    auto browse = new QPushButton(tr("Browse…"), this);
    browse->setAutoDefault(false);
    // The label of the row only names the field.
    browse->setAccessibleDescription(QString(label).remove(QLatin1Char('&')));
    connect(browse, &QPushButton::clicked, this, [this, field, fileFilter] {
        const QString file = QFileDialog::getOpenFileName(this, tr("Choose a file"),
                                                          editedPath(field.line), fileFilter);
        if (!file.isEmpty()) {
            field.line->setText(shownPath(file));
        }
    });
    connect(field.line, &QLineEdit::textChanged, this, &SettingsDialog::validate);

    auto row = new QHBoxLayout;
    row->addWidget(field.line, 1);
    row->addWidget(browse);
    form->addRow(label, row);
    form->addRow(QString(), field.problem);
    // The form sets a buddy only for a row that is a single widget.
    qobject_cast<QLabel *>(form->labelForField(row))->setBuddy(field.line);
    return field;
}

Settings SettingsDialog::settings() const
{
    Settings edited;
    edited.pluginFile = editedPath(plugin.line);
    edited.stitcherFile = editedPath(stitcher.line);
    edited.timeLimitSeconds = timeLimit->value();
    return edited;
}

void SettingsDialog::focusStitcher()
{
    stitcher.line->setFocus();
}

void SettingsDialog::validate()
{
    const Settings edited = settings();
    const auto show = [this](const FileField &field, const QString &problem) {
        QPalette colors = palette();
        colors.setColor(QPalette::WindowText, failureColor(colors));
        field.problem->setPalette(colors);
        field.problem->setText(problem);
        field.problem->setVisible(!problem.isEmpty());
        return problem.isEmpty();
    };
    const bool pluginValid = show(plugin, pluginFileProblem(edited.pluginFile));
    const bool stitcherValid = show(stitcher, stitcherFileProblem(edited.stitcherFile));
    okButton->setEnabled(pluginValid && stitcherValid);
}
