// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "gpio/externalunsignedzorvgpioview.h"

#include "gpio/gpiomodel.h"

namespace {

Gpio makePin(const char *name, unsigned char settings)
{
    Gpio pin;
    pin.name = QLatin1String(name);
    pin.settings = settings;
    return pin;
}

} // namespace

ExternalUnsignedZorvGpioView::ExternalUnsignedZorvGpioView(QObject *parent)
    : QObject(parent)
    , model(new GpioModel(QList<Gpio>() << makePin("i2s_2_clk", 0x00) << makePin("i2s_2_fs", 0xFF),
                          this))
    , displayName(QLatin1String("GPIO Settings"))
    , targetName(QLatin1String("GPIO"))
{
}

ExternalUnsignedZorvGpioView::~ExternalUnsignedZorvGpioView()
{
    // Deleted while the names still exist: a slot on the model's destroyed() may call the getters.
    delete model;
}

QVector<unsigned char> ExternalUnsignedZorvGpioView::exportData()
{
    return exportedData;
}

QAbstractItemModel *ExternalUnsignedZorvGpioView::getDataModel()
{
    return model;
}

QString ExternalUnsignedZorvGpioView::getDisplayName()
{
    return displayName;
}

QHash<QString, QVariant> ExternalUnsignedZorvGpioView::getParameters()
{
    return parameters;
}

QString ExternalUnsignedZorvGpioView::getTargetName()
{
    return targetName;
}

bool ExternalUnsignedZorvGpioView::loadData(const QVector<unsigned char> &data)
{
    Q_UNUSED(data)
    return false;
}
