// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/problemtext.h"

#include "host/core/problem.h"
#include "host/window/marks.h"

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

bool isMissingFile(const Problem &problem)
{
    return problem.kind == ProblemKind::Check && problem.files.isEmpty();
}

RowState stateOf(const Problem &problem)
{
    return problem.severity == Severity::Warning ? RowState::Warning : RowState::Problem;
}

QString textOf(const Problem &problem)
{
    const QLatin1String prefix("ERROR: ");
    const QString text = isMissingFile(problem) ? tr("No file chosen") : problem.text;
    return text.startsWith(prefix) ? text.mid(prefix.size()) : text;
}

QString requiredText(const Problem &problem)
{
    return problem.requiredSize >= 0 ? bytesText(problem.requiredSize) : problem.required;
}

QString actualText(const Problem &problem)
{
    if (problem.actualSize >= 0) {
        return bytesText(problem.actualSize);
    }
    return problem.actual == QLatin1String("a directory") ? tr("a folder") : problem.actual;
}

QString problemLine(const Problem &problem)
{
    const QString required = requiredText(problem);
    const QString actual = actualText(problem);
    if (required.isEmpty() || actual.isEmpty()) {
        return textOf(problem);
    }
    return tr("%1: %2 required, found %3").arg(textOf(problem), required, actual);
}
