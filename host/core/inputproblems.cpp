// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/inputproblems.h"

#include "host/core/findings.h"
#include "host/core/plugintexts.h"

#include <QFileInfo>
#include <QLocale>

#include <algorithm>

namespace {

/// A data file may cause hundreds of thousands of errors. All of them are in the plug-in's messages.
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

Problems InputProblems::of(const IngredientId &id) const
{
    Problems found;
    std::copy_if(problems.begin(), problems.end(), std::back_inserter(found),
                 [&id](const Problem &problem) { return problem.ingredient == id; });
    return found;
}

void InputProblems::add(const Problem &problem)
{
    problems.append(problem);
}

void InputProblems::addMessages(const QStringList &messages, const Ingredient &ingredient)
{
    const QStringList texts = completed(messages, ingredient.text());
    Problem problem;
    problem.kind = ProblemKind::Message;
    problem.ingredient = ingredient.id;
    if (!ingredient.text().isEmpty()) {
        problem.files.append(ingredient.text());
    }
    if (texts.count() > maxMessages) {
        problem.text = QStringLiteral("%1 errors, of which the first %2 are listed")
                           .arg(QLocale().toString(texts.count()), QString::number(maxMessages));
        problems.append(problem);
    }
    for (const QString &text : texts.mid(0, maxMessages)) {
        problem.text = text;
        problems.append(problem);
    }
}

void InputProblems::addCandidates(const QStringList &files, const Ingredient &ingredient)
{
    Problem problem;
    problem.kind = ProblemKind::Candidates;
    problem.ingredient = ingredient.id;
    problem.files = files;
    problem.files.sort();
    problem.files.prepend(ingredient.text());
    problem.files.removeDuplicates();
    problems.append(problem);
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
    for (const Problem &problem : earlier) {
        problems.append(problem);
    }
}
