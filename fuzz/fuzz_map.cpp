// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/filenamepattern.h"
#include "manager/simpleingredientmapper.h"
#include "require.h"

#include <QRegExp>

namespace {

const int maxExpressionLength = 60;
const int maxNameLength = 60;

/// QRegExp writes counted repetitions out, nested ones without limit: only small ones are tried. The
/// map is compiled into the plug-in, so no user can hand in another.
bool isAffordable(const QString &expression)
{
    const QRegExp largeCount(QStringLiteral("\\{[^}]*\\d\\d"));
    return expression.length() <= maxExpressionLength && expression.count(QLatin1Char('{')) <= 2
        && largeCount.indexIn(expression) < 0;
}

/// The first line as an expression, for each of the other lines as a file name.
void comparePatterns(const QString &text)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    const QString &expression = lines.first();
    if (!isAffordable(expression)) {
        return;
    }
    const FileNamePattern pattern(expression);
    const QRegExp reference(expression, Qt::CaseInsensitive);
    for (const QString &name : lines.mid(1)) {
        require(name.length() > maxNameLength
                    || pattern.matches(name) == reference.exactMatch(name),
                "a pattern matches what its expression matches");
    }
}

/// The whole text as a map document.
void mapFiles(const QString &text)
{
    if (text.contains(QLatin1Char('{'))) {
        return;
    }
    SimpleIngredientMapper mapper(text);
    for (const char *name : {"HostFW_1.bin", "Signed_annex_CDX_PACK.bin", "a", ""}) {
        const QString path = QLatin1String("/x/%1/") + QLatin1String(name);
        const QHash<QString, QString> found = mapper.mapIngredient(path);
        require(mapper.mapIngredient(path) == found, "nothing is remembered between calls");
        for (const QString &file : found) {
            require(file == path, "what is mapped is the file that was given");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString text = textOf(data, size);
    comparePatterns(text);
    mapFiles(text);
    return 0;
}
