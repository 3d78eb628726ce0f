// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/buildquestion.h"

#include "host/window/messages.h"
#include "host/window/problemtext.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>

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
    if (blocked) {
        showWarning(parent, tr("Build"),
                    tr("The image cannot be built with these problems:\n\n%1").arg(listed(errors)));
        return false;
    }
    return confirm(parent, tr("Build"),
                   tr("The image has these problems:\n\n%1").arg(listed(errors)),
                   tr("Build &anyway"), tr("Cancel"));
}
