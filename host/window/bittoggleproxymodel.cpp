// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/bittoggleproxymodel.h"

#include "gpio/gpiobittoggle.h"

namespace {

bool isBit(const QVariant &value)
{
    return value.canConvert<GpioBitToggle>();
}

} // namespace

BitToggleProxyModel::BitToggleProxyModel(QObject *parent)
    : QIdentityProxyModel(parent)
{
}

QVariant BitToggleProxyModel::data(const QModelIndex &index, int role) const
{
    const QVariant value = QIdentityProxyModel::data(index, Qt::DisplayRole);
    if (!isBit(value)) {
        return QIdentityProxyModel::data(index, role);
    }
    const bool isSet = value.value<GpioBitToggle>().value != 0;
    switch (role) {
    case Qt::CheckStateRole:
        return isSet ? Qt::Checked : Qt::Unchecked;
    case Qt::DisplayRole:
        return isSet ? tr("on") : tr("off");
    default:
        return {};
    }
}

bool BitToggleProxyModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole) {
        return QIdentityProxyModel::setData(index, value, role);
    }
    const int bit = value.toInt() == Qt::Checked ? 1 : 0;
    return QIdentityProxyModel::setData(index, bit, Qt::EditRole);
}

Qt::ItemFlags BitToggleProxyModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags sourceFlags = QIdentityProxyModel::flags(index);
    const QVariant value = QIdentityProxyModel::data(index, Qt::DisplayRole);
    if (!isBit(value) || !(sourceFlags & Qt::ItemIsEditable)
        || !value.value<GpioBitToggle>().enabled) {
        return sourceFlags;
    }
    return (sourceFlags & ~Qt::ItemIsEditable) | Qt::ItemIsUserCheckable;
}
