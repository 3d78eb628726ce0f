// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "gpio/gpiobittoggle.h"
#include "gpio/gpiomodel.h"
#include "observers.h"
#include "qtcompat.h"
#include "row.h"

namespace {

/// The bits of a row from the first column to the last.
QString bitsOf(const QAbstractItemModel &model, int row)
{
    QString bits;
    for (int column = 0; column < model.columnCount(); ++column) {
        bits += QString::number(model.index(row, column).data().value<GpioBitToggle>().value);
    }
    return bits;
}

} // namespace

class TestGpio : public QObject
{
    Q_OBJECT

private slots:
    void setData_data()
    {
        const Table<int, int, QString, QString> row("before", "column", "value", "bits");
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
        Gpio pin;
        pin.settings = static_cast<unsigned char>(before);
        GpioModel model(QList<Gpio>() << pin);
        const QModelIndex cell = model.index(0, column);
        MessageLog log(&model);
        QVERIFY(!model.setData(cell, 1, Qt::DisplayRole));
        QVERIFY(!model.setData(QModelIndex(), 1));
        QVERIFY(!model.data(QModelIndex()).isValid());
        QVERIFY(model.setData(cell, value));
        QCOMPARE(log.take(), QStringList(QString("C  %1").arg(column)));
        QTEST(bitsOf(model, 0), "bits");
    }

    void fromXml_data()
    {
        const Table<QString, QStringList> row("xml", "pins");
        const QString failure = "Failed to initialize from XML, aon";
        row("pins at any depth", "<a><pin/><b><pin pinListName='n'/></b></a>",
            listOf("?????, aon", "n, aon"));
        row("bit without a name", "<pin gpioBit='x'/>", listOf("?????, aon"));
        row("always on", "<pin pinListName='n' gpioBit='1aon2'/>", listOf("n, aon 1aon2"));
        row("not always on", "<pin pinListName='n' gpioBit='AON'/>", listOf("n, AON"));
        row("too deep", QString("<a>").repeated(200000), listOf(failure));
    }
    void fromXml()
    {
        QFETCH(QString, xml);
        const GpioModel model(xml);
        QStringList pins;
        for (int row = 0; row < model.rowCount(); ++row) {
            const Gpio &pin = model.pins.at(row);
            const QString name = model.headerData(row, Qt::Vertical).toString();
            pins << QString(name + "," + (pin.aon ? " aon " : " ") + pin.gpioBit).trimmed();
            QCOMPARE(bitsOf(model, row), QString("0000000"));
        }
        QTEST(pins, "pins");
    }
};

QTEST_GUILESS_MAIN(TestGpio)
#include "tst_gpio.moc"
