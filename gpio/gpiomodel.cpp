// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "gpio/gpiomodel.h"

#include "gpio/gpiobittoggle.h"
#include "xml/xmlparser.h"

#include <QDomDocument>

namespace {

const int shownBitCount = 7;

int bitPositionOf(int column)
{
    return shownBitCount - column;
}

/// The pin that a `pin` element describes; it is always-on unless its bit says otherwise.
Gpio pinFrom(const QDomElement &element)
{
    Gpio pin;
    pin.aon = true;
    if (!element.hasAttribute(QLatin1String("pinListName"))) {
        pin.name = QLatin1String("?????");
        return pin;
    }
    pin.name = element.attribute(QLatin1String("pinListName"));
    if (element.hasAttribute(QLatin1String("gpioBit"))) {
        pin.gpioBit = element.attribute(QLatin1String("gpioBit"));
        pin.aon = pin.gpioBit.contains(QLatin1String("aon"));
    }
    return pin;
}

} // namespace

GpioModel::GpioModel(const QList<Gpio> &initialPins, QObject *parent)
    : QAbstractTableModel(parent)
    , pins(initialPins)
{
    initializeHeaders();
}

GpioModel::GpioModel(const QString &xml, QObject *parent)
    : QAbstractTableModel(parent)
{
    initializeFromXml(xml);
    initializeHeaders();
}

int GpioModel::rowCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return pins.count();
}

int GpioModel::columnCount(const QModelIndex &parent) const
{
    Q_UNUSED(parent)
    return shownBitCount;
}

QVariant GpioModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || section < 0) {
        return QVariant();
    }
    if (orientation == Qt::Horizontal) {
        return section < headers.count() ? QVariant(headers.at(section)) : QVariant();
    }
    return section < pins.count() ? QVariant(pins.at(section).name) : QVariant();
}

QVariant GpioModel::data(const QModelIndex &index, int role) const
{
    if (!hasIndex(index.row(), index.column()) || role != Qt::DisplayRole) {
        return QVariant();
    }
    GpioBitToggle toggle;
    toggle.bitPosition = static_cast<unsigned char>(bitPositionOf(index.column()));
    toggle.value = extractBitValue(pins.at(index.row()).settings, toggle.bitPosition);
    return QVariant::fromValue(toggle);
}

bool GpioModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable)) {
        return false;
    }
    const QVariant current = data(index, Qt::DisplayRole);
    if (!current.canConvert<GpioBitToggle>()) {
        return false;
    }
    const int mask = 1 << current.value<GpioBitToggle>().bitPosition;
    const bool set = (value.toInt() & 0xFF) != 0;
    unsigned char &settings = pins[index.row()].settings;
    settings = static_cast<unsigned char>(set ? settings | mask : settings & ~mask);
    emit dataChanged(index, index);
    return true;
}

Qt::ItemFlags GpioModel::flags(const QModelIndex &index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
}

unsigned char GpioModel::extractBitValue(unsigned char value, unsigned char bit) const
{
    return static_cast<unsigned char>((value >> bit) & 1);
}

void GpioModel::initializeHeaders()
{
    headers.clear();
    headers << QLatin1String("No Connect\nIndication") << QLatin1String("Open Drain\nEnable")
            << QLatin1String("Direction") << QLatin1String("Stand-by Level")
            << QLatin1String("Wake Mask or\nHold Output State") << QLatin1String("Pull Direction")
            << QLatin1String("Pull Strength");
}

void GpioModel::initializeFromXml(const QString &xml)
{
    pins.clear();

    QDomDocument document;
    if (!parseXml(&document, xml)) {
        Gpio failure;
        failure.name = QLatin1String("Failed to initialize from XML");
        failure.aon = true;
        pins.append(failure);
        return;
    }

    const QDomNodeList pinNodes = document.elementsByTagName(QLatin1String("pin"));
    for (int i = 0; i < pinNodes.count(); ++i) {
        pins.append(pinFrom(pinNodes.at(i).toElement()));
    }
}
