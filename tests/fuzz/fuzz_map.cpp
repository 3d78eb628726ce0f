// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "fuzzing.h"
#include "manager/simpleingredientmapper.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString text = textOf(data, size);
    // QRegExp writes counted repetitions out, nested ones without limit. The map is compiled into
    // the plug-in, so no user can hand in another.
    if (text.contains(QLatin1Char('{'))) {
        return 0;
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
    return 0;
}
