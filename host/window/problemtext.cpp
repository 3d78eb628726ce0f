// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/problemtext.h"

#include "host/core/problem.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("ProblemText", text);
}

} // namespace

QString bytesText(qint64 size)
{
    return size == 1 ? tr("1 byte") : tr("%1 bytes").arg(QLocale().toString(size));
}

QString requiredText(const Problem &problem)
{
    return problem.requiredSize >= 0 ? bytesText(problem.requiredSize) : problem.required;
}

QString actualText(const Problem &problem)
{
    return problem.actualSize >= 0 ? bytesText(problem.actualSize) : problem.actual;
}

QString problemLine(const Problem &problem)
{
    const QString required = requiredText(problem);
    const QString actual = actualText(problem);
    if (required.isEmpty() || actual.isEmpty()) {
        return problem.text;
    }
    return tr("%1: %2 required, found %3").arg(problem.text, required, actual);
}
