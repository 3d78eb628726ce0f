// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QtTest>

/// Adds a column of test data for each type, in order.
template <typename... Types, typename... Names> void columns(const Names &...names)
{
    const int inOrder[] = {(QTest::addColumn<Types>(names), 0)...};
    Q_UNUSED(inOrder)
}

/// Adds a row of test data: its name, then a value for each column.
template <typename... Values> void row(const char *name, const Values &...values)
{
    QTestData &data = QTest::newRow(name);
    const int inOrder[] = {(static_cast<void>(data << values), 0)...};
    Q_UNUSED(inOrder)
}
