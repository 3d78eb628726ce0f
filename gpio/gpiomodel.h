// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "gpio/gpio.h"

#include <QAbstractTableModel>
#include <QStringList>

/// The GPIO settings as a grid of bits: one row per pin, with seven columns for the bits 7 to 1 of
/// its settings. Cells contain a GpioBitToggle in Qt::DisplayRole and are editable.
class GpioModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Shows @p initialPins in their order.
    explicit GpioModel(const QList<Gpio> &initialPins, QObject *parent = nullptr);
    /// Shows the pins of @p xml, see initializeFromXml().
    explicit GpioModel(const QString &xml, QObject *parent = nullptr);

    /// @name QAbstractTableModel
    /// @{

    /// See QAbstractTableModel.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Clears the cell's bit if the lowest 8 bits of @p value, as an integer, are 0; otherwise sets
    /// it.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// @}

    /// Bit number @p bit (0 to 7) of @p value, 0 or 1.
    unsigned char extractBitValue(unsigned char value, unsigned char bit) const;
    /// Fills the column titles.
    void initializeHeaders();
    /// Replaces the pins with those of the `pin` elements of @p xml (XML text, not a file name),
    /// with all bits clear. If @p xml cannot be parsed, there is one row that says so. Views are
    /// not notified.
    void initializeFromXml(const QString &xml);

private:
    friend class TestGpio; // A pin's always-on flag is kept, but not shown.

    QList<Gpio> pins;
    QStringList headers;
};
