// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/questions.h"

#include "host/window/problemtext.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>

#include <KMessageBox>
#include <algorithm>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Questions", text);
}

/// The lines of a list that can be scrolled; each file is named once.
QStringList listed(const Problems &problems)
{
    QStringList lines;
    for (const Problem &problem : problems) {
        lines << (problem.ingredient.isEmpty()
                      ? problemLine(problem)
                      : problem.ingredient.name + QLatin1String(": ") + problemLine(problem));
        for (const QString &file : problem.files) {
            const QString line = QLatin1String("    ") + QDir::toNativeSeparators(file);
            if (!lines.contains(line)) {
                lines << line;
            }
        }
    }
    return lines;
}

Problems ofSeverity(Severity severity, const Problems &problems)
{
    Problems found;
    std::copy_if(problems.begin(), problems.end(), std::back_inserter(found),
                 [severity](const Problem &problem) { return problem.severity == severity; });
    return found;
}

/// Shows @p problems; true if the user chooses @p yes, without which there is no choice.
bool ask(QWidget *parent, const QString &text, const Problems &problems, const QString &yes)
{
    auto dialog = new QDialog(parent); // Deleted by KMessageBox.
    dialog->setWindowTitle(tr("Build"));
    auto buttons = new QDialogButtonBox(
        yes.isEmpty() ? QDialogButtonBox::Close : QDialogButtonBox::Cancel, dialog);
    const auto yesButton = QDialogButtonBox::Yes;
    if (!yes.isEmpty()) {
        buttons->addButton(yesButton)->setText(yes);
        buttons->button(QDialogButtonBox::Cancel)->setDefault(true);
    }
    return KMessageBox::createKMessageBox(dialog, buttons, QMessageBox::Warning, text,
                                          listed(problems), QString(), nullptr,
                                          KMessageBox::Dangerous)
        == yesButton;
}

} // namespace

bool confirm(QWidget *parent, const QString &title, const QString &text, const QString &yes,
             const QString &no)
{
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton *yesButton = box.addButton(yes, QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(no, QMessageBox::RejectRole));
    box.exec();
    return box.clickedButton() == yesButton;
}

bool askToBuild(QWidget *parent, const Problems &problems)
{
    const Problems blocking = ofSeverity(Severity::Fatal, problems);
    if (!blocking.isEmpty()) {
        return ask(parent, tr("The image cannot be built with these problems:"), blocking, {});
    }
    const Problems errors = ofSeverity(Severity::Error, problems);
    return errors.isEmpty()
        || ask(parent, tr("The image has these problems:"), errors, tr("Build &anyway"));
}
