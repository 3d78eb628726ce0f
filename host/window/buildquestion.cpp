// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/buildquestion.h"

#include "host/window/problemtext.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace {

const int maxListed = 12;

QString tr(const char *text)
{
    return QCoreApplication::translate("BuildQuestion", text);
}

QString listed(const Problems &problems)
{
    QStringList lines;
    for (const Problem &problem : problems.mid(0, maxListed)) {
        QString line = problem.ingredient.isEmpty()
            ? problemLine(problem)
            : problem.ingredient.name + QLatin1String(": ") + problemLine(problem);
        for (const QString &file : problem.files) {
            line += QLatin1String("\n    ") + QDir::toNativeSeparators(file);
        }
        lines << line;
    }
    const int hidden = problems.count() - maxListed;
    if (hidden > 0) {
        lines << tr("… and %1 more").arg(QLocale().toString(hidden));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

bool askToBuild(QWidget *parent, const Problems &problems)
{
    Problems errors;
    std::copy_if(problems.begin(), problems.end(), std::back_inserter(errors),
                 [](const Problem &problem) { return problem.severity != Severity::Warning; });
    if (errors.isEmpty()) {
        return true;
    }
    const bool blocked = std::any_of(errors.begin(), errors.end(), [](const Problem &problem) {
        return problem.severity == Severity::Fatal;
    });
    QMessageBox question(QMessageBox::Warning, tr("Build"),
                         blocked ? tr("The image cannot be built with these problems:")
                                 : tr("The image has these problems:"),
                         QMessageBox::NoButton, parent);
    question.setTextFormat(Qt::PlainText);
    question.setInformativeText(listed(errors));
    QPushButton *cancel = question.addButton(QMessageBox::Cancel);
    const QAbstractButton *anyway
        = blocked ? nullptr : question.addButton(tr("Build &anyway"), QMessageBox::AcceptRole);
    question.setDefaultButton(cancel);
    question.exec();
    return anyway && question.clickedButton() == anyway;
}

bool askToStop(QWidget *parent)
{
    QMessageBox question(QMessageBox::Question, tr("Close"), tr("The image is still being built."),
                         QMessageBox::NoButton, parent);
    question.setTextFormat(Qt::PlainText);
    const QAbstractButton *stop
        = question.addButton(tr("&Stop and close"), QMessageBox::AcceptRole);
    question.setDefaultButton(question.addButton(tr("&Keep building"), QMessageBox::RejectRole));
    question.exec();
    return question.clickedButton() == stop;
}
