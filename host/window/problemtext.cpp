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

/// What is wrong, without what its mark shows.
QString textOf(const Problem &problem)
{
    const QLatin1String prefix("ERROR: ");
    const QString text = isMissingFile(problem) ? tr("No file chosen") : problem.text;
    return text.startsWith(prefix) ? text.mid(prefix.size()) : text;
}

/// A required or actual value, which may be a size.
QString sizeOr(const QString &value, qint64 size)
{
    if (size >= 0) {
        return bytesText(size);
    }
    return value == QLatin1String("a directory") ? tr("a folder") : value;
}

} // namespace

QString bytesText(qint64 size)
{
    return size == 1 ? tr("1 byte") : tr("%1 bytes").arg(QLocale().toString(size));
}

QString literalText(const QString &text)
{
    return QLatin1String("<p style='white-space:pre-wrap'>") + text.toHtmlEscaped()
        + QLatin1String("</p>");
}

bool isMissingFile(const Problem &problem)
{
    return problem.kind == ProblemKind::Check && problem.files.isEmpty();
}

RowState stateOf(const Problem &problem)
{
    return problem.severity == Severity::Warning ? RowState::Warning : RowState::Problem;
}

QString problemLine(const Problem &problem)
{
    QString text = textOf(problem);
    const QString required = sizeOr(problem.required, problem.requiredSize);
    if (required.isEmpty()) {
        return text;
    }
    const QString actual = sizeOr(problem.actual, problem.actualSize);
    return actual.isEmpty() ? tr("%1: %2 required").arg(text, required)
                            : tr("%1: %2 instead of %3").arg(text, actual, required);
}
