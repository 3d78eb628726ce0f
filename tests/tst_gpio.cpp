// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "changelog.h"
#include "flatproxy.h"
#include "gpio/externalunsignedzorvgpioview.h"
#include "gpio/gpiobittoggle.h"
#include "gpio/gpiomodel.h"
#include "qtcompat.h"
#include "row.h"

namespace {

/// The bits of a row from the first column to the last, "?" for a cell that is no such bit.
QString bitsOf(const QAbstractItemModel &model, int row)
{
    QString bits;
    for (int column = 0; column < model.columnCount(); ++column) {
        const GpioBitToggle toggle = model.index(row, column).data().value<GpioBitToggle>();
        const bool valid = toggle.bitPosition == 7 - column && toggle.enabled;
        bits += valid ? QString::number(toggle.value) : "?";
    }
    return bits;
}

Gpio pinWithSettings(int settings)
{
    Gpio pin;
    pin.settings = static_cast<unsigned char>(settings);
    return pin;
}

} // namespace

class TestGpio : public QObject
{
    Q_OBJECT

private slots:
    void view()
    {
        ExternalUnsignedZorvGpioView view;
        QAbstractItemModel *model = view.getDataModel();
        FlatProxy proxy(model);
        const ModelTester tester(&proxy);
        QCOMPARE(view.getDisplayName(), QString("GPIO Settings"));
        QCOMPARE(view.getTargetName(), QString("GPIO"));
        QCOMPARE(model->headerData(0, Qt::Vertical).toString(), QString("i2s_2_clk"));
        QCOMPARE(model->headerData(1, Qt::Vertical).toString(), QString("i2s_2_fs"));
        QVERIFY(!model->headerData(2, Qt::Vertical).isValid());
        QCOMPARE(bitsOf(*model, 0), QString("0000000"));
        QCOMPARE(bitsOf(*model, 1), QString("1111111"));

        QVERIFY(model->setData(model->index(0, 0), 1));
        QVERIFY(view.exportData().isEmpty());
        QVERIFY(view.getParameters().isEmpty());
        QVERIFY(!view.loadData(QVector<unsigned char>(2)));
        QCOMPARE(bitsOf(*model, 0), QString("1000000"));
    }

    void titles()
    {
        const GpioModel model((QList<Gpio>()));
        QStringList titles;
        for (int column = 0; column < model.columnCount(); ++column) {
            titles << model.headerData(column, Qt::Horizontal).toString();
        }
        QCOMPARE(titles,
                 QStringList() << "No Connect\nIndication"
                               << "Open Drain\nEnable"
                               << "Direction"
                               << "Stand-by Level"
                               << "Wake Mask or\nHold Output State"
                               << "Pull Direction"
                               << "Pull Strength");
        QVERIFY(!model.headerData(7, Qt::Horizontal).isValid());
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical).isValid());
    }

    void cellsGiveTheDisplayRoleAlone()
    {
        const GpioModel model(QList<Gpio>() << pinWithSettings(0xFF));
        const QModelIndex cell = model.index(0, 0);
        QVERIFY(cell.data(Qt::DisplayRole).isValid());
        QVERIFY(!cell.data(Qt::EditRole).isValid());
        QVERIFY(!cell.data(Qt::CheckStateRole).isValid());
        QCOMPARE(cell.flags(), Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled);
    }

    void setData_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("bits");
        row("set the last", 0x00, 6, "1", "0000001");
        row("clear the first", 0xFF, 0, "0", "0111111");
        row("256 clears", 0xFF, 3, "256", "1110111");
        row("-1 sets", 0x00, 3, "-1", "0001000");
        row("text clears", 0xFF, 3, "x", "1110111");
        row("bit 0 is not shown", 0x01, 6, "0", "0000000");
    }
    void setData()
    {
        QFETCH(int, before);
        QFETCH(int, column);
        QFETCH(QString, value);
        GpioModel model(QList<Gpio>() << pinWithSettings(before));
        const QModelIndex cell = model.index(0, column);
        ChangeLog changes(&model);
        QVERIFY(!model.setData(cell, 1, Qt::DisplayRole));
        QVERIFY(!model.setData(QModelIndex(), 1));
        QCOMPARE(changes.take(), QModelIndexList());
        QVERIFY(model.setData(cell, value));
        QCOMPARE(changes.take(), QModelIndexList() << cell);
        QTEST(bitsOf(model, 0), "bits");
    }

    void fromXml_data()
    {
        QTest::addColumn<QString>("xml");
        QTest::addColumn<QStringList>("names");
        row("pins at any depth", "<a><pin/><b><pin pinListName='n' gpioBit='AON'/></b></a>",
            QStringList() << "?????"
                          << "n");
        row("broken", "<a><pin/>", QStringList("Failed to initialize from XML"));
        row("too deep", QString("<a>").repeated(200000),
            QStringList("Failed to initialize from XML"));
    }
    void fromXml()
    {
        QFETCH(QString, xml);
        const GpioModel model(xml);
        QStringList names;
        for (int row = 0; row < model.rowCount(); ++row) {
            names << model.headerData(row, Qt::Vertical).toString();
            QCOMPARE(bitsOf(model, row), QString("0000000"));
        }
        QTEST(names, "names");
    }
};

QTEST_GUILESS_MAIN(TestGpio)
#include "tst_gpio.moc"
