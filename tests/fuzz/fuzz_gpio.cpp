// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "fuzzing.h"
#include "gpio/gpiobittoggle.h"
#include "gpio/gpiomodel.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    GpioModel model(textOf(data, size));
    const int rows = model.rowCount();
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < model.columnCount(); ++column) {
            const QModelIndex cell = model.index(row, column);
            require(cell.data().value<GpioBitToggle>().value == 0, "pins start with no bit set");
            require(model.setData(cell, 1), "every bit can be set");
            require(cell.data().value<GpioBitToggle>().value == 1, "a bit that was set is set");
        }
    }
    require(model.rowCount() == rows, "edits change no rows");
    return 0;
}
