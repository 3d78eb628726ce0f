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
    /// The plug-in deletes its views; hosts do not.
    virtual ~IDataView() { }

    /// The view's data in binary form; empty when there is nothing to export.
    virtual QVector<unsigned char> exportData() = 0;
    /// What the view shows; owned by the view.
    virtual QAbstractItemModel *getDataModel() = 0;
    /// The name under which the host offers the view to the user.
    virtual QString getDisplayName() = 0;
    /// Settings of the view by name; empty when it has none.
    virtual QHash<QString, QVariant> getParameters() = 0;
    /// The part of the target that the view shows.
    virtual QString getTargetName() = 0;
    /// Replaces the view's data; false when the view does not accept @p data.
    virtual bool loadData(const QVector<unsigned char> &data) = 0;
};

/// The identifier that qobject_cast compares; see vendorprefix.h.
#define IDataView_iid LOOMWRIGHT_VENDOR_PREFIX ".plugin.tamblin.IDataView/1.0"
Q_DECLARE_INTERFACE(IDataView, IDataView_iid)
