// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/idataview.h"

#include <QObject>
#include <QString>

class GpioModel;

/// The GPIO settings table, offered to the host as an additional data view.
///
/// It shows two fixed pins. Edits change only the table: they are not exported, and are lost when
/// the next data file replaces the view.
class ExternalUnsignedZorvGpioView : public QObject, public IDataView
{
    Q_OBJECT
    Q_INTERFACES(IDataView)

public:
    /// Creates the table with its two pins.
    explicit ExternalUnsignedZorvGpioView(QObject *parent = nullptr);
    ~ExternalUnsignedZorvGpioView() override;

    /// Always empty.
    QVector<unsigned char> exportData() override;
    QAbstractItemModel *getDataModel() override;
    /// "GPIO Settings".
    QString getDisplayName() override;
    /// Always empty.
    QHash<QString, QVariant> getParameters() override;
    /// "GPIO".
    QString getTargetName() override;
    /// Always false: the view does not accept data.
    bool loadData(const QVector<unsigned char> &data) override;

private:
    GpioModel *model;
    QVector<unsigned char> exportedData;
    QHash<QString, QVariant> parameters;
    QString displayName;
    QString targetName;
};
