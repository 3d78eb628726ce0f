// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "fuzzing.h"
#include "manager/externalunsignedzorvingredientmanager.h"

namespace {

QStringList valuesOf(const IngredientModel &model)
{
    QStringList values;
    for (const QModelIndex &cell : model.ingredientCells()) {
        values << model.dataAsString(cell.sibling(cell.row(), IngredientColumn::Value));
    }
    return values;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const MemoryFile file(data, size);
    ExternalUnsignedZorvIngredientManager manager;
    const IngredientModel &model = *manager.getIngredients();
    const QStringList before = valuesOf(model);
    const bool isLoaded = manager.loadConfigFromFile(file.path());
    const QStringList after = valuesOf(model);
    require(isLoaded || after == before, "a refused configuration leaves the model as it was");

    // What was written reads back, except values that the format cannot hold.
    const MemoryFile saved(nullptr, 0);
    require(manager.saveConfigToFile(saved.path()), "a configuration can be written");
    ExternalUnsignedZorvIngredientManager reader;
    reader.loadConfigFromFile(saved.path());
    const QStringList read = valuesOf(*reader.getIngredients());
    for (int i = 2; i < after.count(); ++i) {
        const bool canBeWritten = !after.at(i).contains(QLatin1Char('='))
            && !after.at(i).contains(QChar::ReplacementCharacter)
            && QString::fromLocal8Bit(after.at(i).toLocal8Bit()) == after.at(i);
        require(!canBeWritten || read.at(i) == after.at(i), "what was written reads back");
    }
    return 0;
}
