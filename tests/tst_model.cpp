// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "flatproxy.h"
#include "messagelog.h"
#include "model/ingredientcheckmodel.h"
#include "model/ingredientmodel.h"
#include "row.h"

#include <QAbstractItemModelTester>
#include <QtTest>

namespace {

const QString columns = "<ingredient_column><column name='Value' visible='true' isEditable='true'/>"
                        "<column name='Key' visible='false' isEditable='false'/>"
                        "</ingredient_column>";

/// A definition with the usual columns and one ingredient "I" in the group "G".
QString definitionOf(const QString &fields)
{
    return "<ingredients>" + columns + "<group name='G'><ingredient name='I'>" + fields
        + "</ingredient></group></ingredients>";
}

QString textOf(const FilePath &file)
{
    return QString("%1|%2|%3|%4|%5|%6|%7")
        .arg(file.fileFilter.section(' ', 0, 0))
        .arg(file.broadcastChanges)
        .arg(file.broadcastName)
        .arg(file.isRequired)
        .arg(file.exactSize)
        .arg(file.expectedSize)
        .arg(file.isInput);
}

QModelIndex cell(const QAbstractItemModel &model, int group, int row, int column)
{
    return model.index(row, column, model.index(group, 0));
}

QStringList headersOf(const QAbstractItemModel &model)
{
    QStringList headers;
    for (int column = 0; column < model.columnCount(); ++column) {
        headers << model.headerData(column, Qt::Horizontal).toString();
    }
    return headers;
}

} // namespace

class TestModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.reset(new QTemporaryDir);
    }

    void fileField_data()
    {
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<QString>("expected");
        const QString t = "template='bin' ";
        row("no template: nothing else counts",
            "exactSize='5 bytes' required='false' browseAs='output'", "|0||1|0|0|1");
        row("unknown template", "template='Bin'", "|0||1|0|0|1");
        row("public key", "template='publickey'", "Public|0||1|0|0|1");
        row("private key", "template='privatekey'", "Private|0||1|0|0|1");
        row("xml", "template='xml'", "Legacy|0||1|0|0|1");
        row("size", t + "exactSize='31120 bytes'", "Binary|0||1|31120|31120|1");
        row("no unit", t + "exactSize='31120'", "Binary|0||1|0|0|1");
        row("unit in capitals", t + "exactSize='31120 Bytes'", "Binary|0||1|0|0|1");
        row("two blanks", t + "exactSize='31120  bytes'", "Binary|0||1|0|0|1");
        row("size past int", t + "exactSize='2147483648 bytes'", "Binary|0||1|0|0|1");
        row("broadcast", t + "broadcastChanges='untrue' broadcastName='n'", "Binary|1|n|1|0|0|1");
        row("broadcast without a name", t + "broadcastChanges='true'", "Binary|0||1|0|0|1");
        row("name alone", t + "broadcastName='n'", "Binary|0||1|0|0|1");
        row("required in capitals", t + "required='True'", "Binary|0||0|0|0|1");
        row("output", t + "browseAs='output'", "Binary|0||1|0|0|0");
        row("output in capitals", t + "browseAs='Output'", "Binary|0||1|0|0|1");
    }
    void fileField()
    {
        QFETCH(QString, attributes);
        const IngredientModel model(definitionOf("<file " + attributes + "/>"));
        QTEST(textOf(cell(model, 0, 0, 1).data().value<FilePath>()), "expected");
    }

    void otherFields()
    {
        const IngredientModel model(definitionOf(
            "<choice selectedIndex='abc'><x value='A'/><x/></choice><!-- c --><odd/><text/>"));
        const Choice choice = cell(model, 0, 0, 1).data().value<Choice>();
        QCOMPARE(choice.selectedIndex, -1);
        QCOMPARE(choice.choices, QStringList({"A", ""}));
        QCOMPARE(cell(model, 0, 0, 2).data(), QVariant("unknown"));

        const IngredientModel shortRow(definitionOf("<choice/>"));
        QCOMPARE(cell(shortRow, 0, 0, 1).data().value<Choice>().selectedIndex, 0);
        QCOMPARE(cell(shortRow, 0, 0, 2).data(), QVariant(" "));
        QCOMPARE(shortRow.index(0, 2).data(), QVariant(" "));
    }

    void structure()
    {
        IngredientModel model(
            "<a><ingredient_column><c/><c name='A' isEditable='true'/><c name='A'/>"
            "</ingredient_column><group/><group name='G'><i name='N'><text value='1'/>"
            "<text value='2'/></i><i/><i name='N'/><group name='Inner'/></group></a>");
        // A child without a name shifts the flags of the columns after it.
        QCOMPARE(headersOf(model), QStringList({"Ingredient", "A", "A"}));
        QVERIFY(!(cell(model, 0, 0, 1).flags() & Qt::ItemIsEditable));
        QVERIFY(cell(model, 0, 0, 2).flags() & Qt::ItemIsEditable);
        // A group inside a group is a row of it and a group besides; one without a name is left out.
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.rowCount(model.index(0, 0)), 3);
        // The first of equal names counts.
        QCOMPARE(model.getIngredient("N", "A"), QString("1"));
        const QAbstractItemModelTester tester(&model);
        QVERIFY(model.setData(cell(model, 0, 0, 2), "3"));
    }

    void unusableDefinitions()
    {
        const QString deep = QString("<g>").repeated(200000);
        for (const QString &text : {QString("<a>\n<b>"), QString(), deep}) {
            IngredientModel model(text);
            QCOMPARE(headersOf(model), QStringList({"Error", "Details"}));
            QCOMPARE(model.rowCount(), 1);
            QVERIFY(!model.index(0, 0).data().toString().isEmpty());
            QVERIFY(model.index(0, 1).data().toString().startsWith("Line: "));
            QVERIFY(!model.shouldColumnBeVisible(0));
            MessageLog log(&model);
            model.getIngredient("Error", "Details");
            QCOMPARE(log.take(),
                     QStringList({"E Could not find ingredient named: Error",
                                  "E Could not find column named: Details"}));
        }
        const IngredientModel bare("<a><group name='G'/></a>");
        QCOMPARE(headersOf(bare), QStringList({"Epic", "Fail"}));
        QCOMPARE(bare.rowCount(), 0);
    }

    void rolesAndFlags()
    {
        IngredientModel model(definitionOf("<file template='bin'/><text value='K'/>"));
        const QModelIndex group = model.index(0, 1);
        const QModelIndex value = cell(model, 0, 0, 1);
        const QModelIndex key = cell(model, 0, 0, 2);
        QCOMPARE(int(group.flags()), 33);
        QCOMPARE(int(value.flags()), 35);
        QCOMPARE(int(key.flags()), 33);
        QCOMPARE(int(cell(model, 0, 0, 0).flags()), 33);
        QCOMPARE(model.rowCount(group), 0);
        QVERIFY(!value.data(Qt::EditRole).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical).isValid());
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());

        QSignalSpy changes(&model, SIGNAL(dataChanged(QModelIndex, QModelIndex)));
        QVERIFY(!model.setData(key, "x"));
        QVERIFY(!model.setData(value, "x", Qt::DisplayRole));
        QCOMPARE(changes.count(), 0);
        QVERIFY(model.setData(key, false, Qt::UserRole));
        QCOMPARE(value.data(Qt::UserRole), QVariant("hidden"));
        QVERIFY(model.getIngredientVisible("I")); // Kept: true for whatever is known.
        QVERIFY(model.getGroupVisible("nope"));
        model.setIngredientVisible("I", true);
        model.setGroupVisible("G", false);
        QCOMPARE(value.data(Qt::UserRole), QVariant("visible"));
        QCOMPARE(group.data(Qt::UserRole), QVariant("hidden"));
        QCOMPARE(changes.count(), 3);
    }

    void indexesOfAnotherModel()
    {
        IngredientModel model(definitionOf("<file template='bin'/>"));
        const IngredientModel other(definitionOf("<file template='bin'/>"));
        const QModelIndex foreign = cell(other, 0, 0, 1);
        QVERIFY(!model.index(0, 0, other.index(0, 0)).isValid());
        QVERIFY(!model.parent(foreign).isValid());
        QVERIFY(!model.data(foreign).isValid());
        QVERIFY(!model.setData(foreign, "x"));
        QVERIFY(!model.setDataFromString(foreign, "x"));
        QCOMPARE(model.rowCount(other.index(0, 0)) + model.columnCount(foreign), 0);
        QCOMPARE(int(model.flags(foreign)), 0);
    }

    void accessByName()
    {
        IngredientModel model(definitionOf("<file template='bin' exactSize='7 bytes'/>"
                                           "<text value='K'/>"));
        MessageLog log(&model);
        QCOMPARE(model.getIngredient("I", "Key"), QString("K"));
        QCOMPARE(model.getIngredient("I", "Ingredient"), QString("I"));
        model.setIngredient("I", "Key", "x");
        QCOMPARE(model.getIngredient("I", "Key"), QString("K"));
        model.setIngredient("I", "Value", "/a/%1.bin");
        QCOMPARE(model.getIngredient("I", "Value"), QString("/a/%1.bin"));
        QCOMPARE(textOf(cell(model, 0, 0, 1).data().value<FilePath>()),
                 QString("Binary|0||1|7|7|1"));
        QCOMPARE(log.take(), QStringList());

        QVERIFY(model.getIngredient("no%1", "na%2").isNull());
        model.setIngredient("I", "nada", "x");
        model.setGroupVisible("I", true);
        model.setIngredientVisible("G", true);
        QVERIFY(!model.getIngredientVisible("G"));
        QCOMPARE(
            log.take(),
            QStringList(
                {"E Could not find ingredient named: no%1", "E Could not find column named: na%2",
                 "E Could not find column named: nada", "E Could not find group named: I",
                 "E Could not find ingredient named: G", "E Could not find ingredient named: G"}));
    }

    void textForms()
    {
        IngredientModel model(definitionOf(
            "<choice selectedIndex='-1'><x value='A'/><x value='B'/><x value='A'/></choice>"));
        const QModelIndex value = cell(model, 0, 0, 1);
        QCOMPARE(model.dataAsString(value), QString());
        QVERIFY(model.setDataFromString(value, "A"));
        QCOMPARE(value.data().value<Choice>().selectedIndex, 2);
        QVERIFY(!model.setDataFromString(value, "Z"));
        QCOMPARE(model.dataAsString(value), QString("A"));
        QVERIFY(!model.setDataFromString(model.index(0, 1), "G"));
        QVERIFY(!model.setDataFromString(QModelIndex(), "x"));
        // The editor may store what it likes; what is of no known kind reads as empty and is lost
        // with the next text.
        QVERIFY(model.setData(value, 5.5));
        QCOMPARE(model.dataAsString(value), QString());
        QVERIFY(model.setDataFromString(value, "x"));
        QVERIFY(!value.data().isValid());
    }

    void visibleFileNames()
    {
        const QString group
            = "<group name='%1'><i name='%1a'><file/></i><i name='%1b'><file/><file/></i></group>";
        IngredientModel model("<a>" + columns + group.arg("G") + group.arg("H") + group.arg("G")
                              + "</a>");
        model.setIngredient("Ga", "Value", "x");
        QCOMPARE(model.getAllVisibleFileNames("G"), QStringList({"x", "", "", "", "", ""}));
        model.setIngredientVisible("Gb", false);
        QCOMPARE(model.getAllVisibleFileNames("G"), QStringList({"x", "", "", ""}));
        QCOMPARE(model.getAllVisibleFileNames("nope"), QStringList());
    }

    void checks_data()
    {
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("expected");
        const QStringList none;
        const QStringList sized = {"+File path exists", "+Exact file size is correct"};
        row("exists", "", "five", QStringList("+File path exists"));
        row("missing", "", "nope", QStringList("-File path does not exist!"));
        row("folder", "", ".", QStringList("+File path exists"));
        row("blank", "exactSize='5 bytes'", " \t",
            QStringList({"-File path is empty", "-File path is empty, can't check file size"}));
        row("blanks around count", "", " five ", QStringList("-File path does not exist!"));
        row("size", "exactSize='5 bytes'", "five", sized);
        row("too small", "exactSize='6 bytes'", "five",
            QStringList({"+File path exists", "-File size is incorrect"}));
        row("size of missing", "exactSize='5 bytes'", "nope",
            QStringList({"-File path does not exist!",
                         "-File path does not exist, can't check file size"}));
        row("negative size", "exactSize='-5 bytes'", "five", QStringList("+File path exists"));
        row("optional, blank", "required='no'", " ", none);
        row("optional, given", "required='no' exactSize='5 bytes'", "five", sized);
        row("output", "browseAs='output' exactSize='5 bytes'", "new.bin",
            QStringList("+Directory for file exists"));
        row("output nowhere", "browseAs='output'", "no/new.bin",
            QStringList("-Directory for file does not exist!"));
        row("output blank", "browseAs='output'", "", QStringList("-Directory and file is missing"));
    }
    void checks()
    {
        QFETCH(QString, attributes);
        QFETCH(QString, path);
        QFETCH(QStringList, expected);
        const QString current = QDir::currentPath();
        QDir::setCurrent(folder->path());
        writeFile("five", "12345");
        IngredientModel model(definitionOf("<file template='bin' " + attributes + "/>"));
        model.setIngredient("I", "Value", path);
        QStringList results;
        for (const CheckResult &result : model.checkAllFiles()) {
            QCOMPARE(result.ingredientName, QString("I"));
            results << (result.passed ? '+' : '-') + result.details;
        }
        QCOMPARE(results, expected);
        model.setIngredientVisible("I", false);
        QVERIFY(model.checkAllFiles().isEmpty());
        QDir::setCurrent(current);
    }

    void checkTable()
    {
        IngredientCheckModel table;
        FlatProxy proxy(&table);
        const QAbstractItemModelTester tester(&proxy);
        // Kept: a row to show, and nothing counted.
        QCOMPARE(table.rowCount(), 1);
        QCOMPARE(table.checkResultSummary().checkCount, 0);
        QCOMPARE(headersOf(table), QStringList({"", "Ingredient", "Details"}));

        QSignalSpy resets(&table, SIGNAL(modelReset()));
        CheckResult passed;
        passed.passed = true;
        passed.ingredientName = "I";
        passed.details = "fine";
        table.setData({passed, CheckResult(), passed});
        QCOMPARE(resets.count(), 1);
        QCOMPARE(table.index(0, 0).data(), QVariant(true));
        QCOMPARE(table.index(0, 1).data(), QVariant("I"));
        QCOMPARE(table.index(0, 2).data(), QVariant("fine"));
        QVERIFY(!table.index(0, 0).data(Qt::DecorationRole).isValid());
        QCOMPARE(int(table.index(0, 0).flags()), 33);
        const CheckResultSummary summary = table.checkResultSummary();
        QCOMPARE(summary.checkCount, 3);
        QCOMPARE(summary.passCount, 2);
        QCOMPARE(summary.failCount, 1);
        table.setData(QList<CheckResult>());
        QCOMPARE(table.rowCount() + table.checkResultSummary().checkCount, 0);
    }

private:
    QScopedPointer<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(TestModel)
#include "tst_model.moc"
