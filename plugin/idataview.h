// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "plugin/vendorprefix.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

class QAbstractItemModel;

/// An additional view of the platform's data that the plug-in offers to the host.
///
/// The host calls through the virtual table: the order of the operations must not change.
class IDataView
{
public:
    virtual ~IDataView() { }

    /// The view's data in binary form; empty when there is nothing to export.
    virtual QVector<unsigned char> exportData() = 0;
    /// What the view shows; owned by the view.
    virtual QAbstractItemModel *getDataModel() = 0;
    virtual QString getDisplayName() = 0;
    virtual QHash<QString, QVariant> getParameters() = 0;
    virtual QString getTargetName() = 0;
    /// Replaces the view's data; false when the view does not take it.
    virtual bool loadData(const QVector<unsigned char> &data) = 0;
};

#define IDataView_iid LOOMWRIGHT_VENDOR_PREFIX ".plugin.tamblin.IDataView/1.0"
Q_DECLARE_INTERFACE(IDataView, IDataView_iid)
