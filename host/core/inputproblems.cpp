// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/inputproblems.h"

#include "host/core/findings.h"
#include "host/core/plugintexts.h"

#include <QFileInfo>
#include <QLocale>

#include <algorithm>

namespace {

/// A data file may cause hundreds of thousands of errors. The plug-in's messages have all of them.
const int maxMessages = 50;

bool isAmbiguity(const Problem &problem)
{
    return problem.kind == ProblemKind::Candidates;
}

/// @p ambiguity with the files that exist now, and a text about them.
Problem present(const Problem &ambiguity)
{
    Problem problem = ambiguity;
    const QString used = problem.files.first();
    problem.files.erase(
        std::remove_if(problem.files.begin(), problem.files.end(),
                       [](const QString &file) { return !QFileInfo::exists(file); }),
        problem.files.end());
    QString usedName = QFileInfo(used).fileName();
    const auto named
        = std::count_if(problem.files.begin(), problem.files.end(), [&](const QString &file) {
              return QFileInfo(file).fileName() == usedName;
          });
    if (!problem.files.contains(used)) {
        usedName = QStringLiteral("none of them");
    } else if (named > 1) {
        usedName = used;
    }
    problem.text = QStringLiteral("%1 candidates found; %2 is used")
                       .arg(QString::number(problem.files.count()), usedName);
    return problem;
}

/// The messages about a data file without the conclusion that follows from the others, and with the
/// position of an error that the plug-in does not give.
QStringList completed(QStringList messages, const QString &file)
{
    if (messages.count() > 1) {
        messages.removeAll(QLatin1String(PluginText::failedValidation));
    }
    const int invalid = messages.indexOf(QLatin1String(PluginText::invalidXml));
    const QString position = invalid >= 0 ? xmlProblem(file) : QString();
    if (!position.isEmpty()) {
        messages[invalid] += QStringLiteral(" (%1)").arg(position);
    }
    return messages;
}

} // namespace

Problems InputProblems::current() const
{
    Problems found;
    for (const Problem &problem : problems) {
        const Problem shown = isAmbiguity(problem) ? present(problem) : problem;
        if (!isAmbiguity(shown) || shown.files.count() > 1) {
            found.append(shown);
        }
    }
    return found;
}

void InputProblems::add(const Problem &problem)
{
    problems.append(problem);
}

void InputProblems::addMessages(const QStringList &messages, const Ingredient &ingredient)
{
    const QStringList texts = completed(messages, ingredient.text());
    const auto append = [&](const QString &text) {
        problems.append(
            {ProblemKind::Message, Severity::Error, text, ingredient.id, filesOf(ingredient)});
    };
    if (texts.count() > maxMessages) {
        append(QStringLiteral("%1 errors, of which the first %2 are listed")
                   .arg(QLocale().toString(texts.count()), QString::number(maxMessages)));
    }
    for (const QString &text : texts.mid(0, maxMessages)) {
        append(text);
    }
}

void InputProblems::addCandidates(QStringList files, const Ingredient &ingredient)
{
    files.sort();
    files.prepend(ingredient.text());
    files.removeDuplicates();
    problems.append({ProblemKind::Candidates, Severity::Error, {}, ingredient.id, files});
}

void InputProblems::forget(const IngredientId &id)
{
    problems.erase(
        std::remove_if(problems.begin(), problems.end(),
                       [&id](const Problem &problem) { return problem.ingredient == id; }),
        problems.end());
}

Problems InputProblems::ambiguities() const
{
    Problems found;
    std::copy_if(problems.begin(), problems.end(), std::back_inserter(found), isAmbiguity);
    return found;
}

void InputProblems::setAmbiguities(const Problems &earlier)
{
    problems.erase(std::remove_if(problems.begin(), problems.end(), isAmbiguity), problems.end());
    std::copy(earlier.begin(), earlier.end(), std::back_inserter(problems));
}
