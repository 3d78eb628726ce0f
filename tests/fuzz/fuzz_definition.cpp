// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "fuzzing.h"
#include "model/ingredientmodel.h"

#include <QAbstractItemModelTester>

namespace {

/// The names of all rows of the tree in one text.
QString shapeOf(const IngredientModel &model)
{
    QString shape;
    for (int groupRow = 0; groupRow < model.rowCount(); ++groupRow) {
        const QModelIndex group = model.index(groupRow, 0);
        shape += group.data().toString() + QLatin1Char('\n');
        for (int row = 0; row < model.rowCount(group); ++row) {
            shape += QLatin1Char(' ') + model.index(row, 0, group).data().toString()
                + QLatin1Char('\n');
        }
    }
    return shape;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    IngredientModel model(textOf(data, size));
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QString shape = shapeOf(model);
    for (int row = 0; row < model.rowCount(); ++row) {
        model.setGroupVisible(model.index(row, 0).data().toString(), false);
    }
    for (const QModelIndex &name : model.ingredientCells()) {
        for (int column = 0; column < model.columnCount(name.parent()); ++column) {
            const QModelIndex cell = name.sibling(name.row(), column);
            const bool isEditable = cell.flags() & Qt::ItemIsEditable;
            const QString before = model.dataAsString(cell);
            const bool isSet = model.setDataFromString(cell, QStringLiteral("x"));
            require(isEditable || !isSet, "only editable cells are written");
            require(isSet || model.dataAsString(cell) == before, "a refused text changes nothing");
        }
        model.setIngredientVisible(name.data().toString(), name.row() % 2 == 0);
    }
    model.checkAllFiles();
    require(shapeOf(model) == shape, "rows and names never change after construction");
    return 0;
}
