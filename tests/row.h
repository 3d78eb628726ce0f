// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QtTest>

/// A table of test data with named columns of these types. A call adds a row: its name, then a
/// value for each column.
template <typename... Types> class Table
{
public:
    template <typename... Names> explicit Table(const Names &...names)
    {
        const int inOrder[] = {(QTest::addColumn<Types>(names), 0)...};
        Q_UNUSED(inOrder)
    }

    void operator()(const char *name, const Types &...values) const
    {
        QTestData &data = QTest::newRow(name);
        const int inOrder[] = {(static_cast<void>(data << values), 0)...};
        Q_UNUSED(inOrder)
    }
};
