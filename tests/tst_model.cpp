// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "model/ingredientitem.h"
#include "model/ingredientmodel.h"
#include "observers.h"
#include "qtcompat.h"
#include "row.h"

namespace {

const Qt::ItemFlags readOnly = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
const Qt::ItemFlags editable = readOnly | Qt::ItemIsEditable;

const QString binaryFilter = "Binary File (*.bin);;All Files (*.*)";
const QString usualColumns
    = "<ingredient_column><column name='Value' visible='true' isEditable='true'/>"
      "<column name='Key' visible='false' isEditable='false'/>"
      "</ingredient_column>";

/// A definition with the usual columns and one ingredient "I" in the group "G".
QString definitionOf(const QString &fields)
{
    return "<ingredients>" + usualColumns + "<group name='G'><ingredient name='I'>" + fields
        + "</ingredient></group></ingredients>";
}

/// A cell of the first ingredient.
QModelIndex cell(const QAbstractItemModel &model, int column)
{
    return model.index(0, column, model.index(0, 0));
}

QStringList headersOf(const QAbstractItemModel &model)
{
    QStringList headers;
    for (int column = 0; column < model.columnCount(); ++column) {
        headers << model.headerData(column, Qt::Horizontal).toString();
    }
    return headers;
}

/// The fields of a file, except for its name and filter.
QString rulesOf(const FilePath &file)
{
    return QString("%1 %2 %3/%4%5%6")
        .arg(file.isRequired ? "required" : "optional", file.isInput ? "input" : "output")
        .arg(file.exactSize)
        .arg(file.expectedSize)
        .arg(file.broadcastName.isEmpty() ? "" : " named " + file.broadcastName)
        .arg(file.broadcastChanges ? " broadcasts" : "");
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

    void cellsOutsideAnItem()
    {
        IngredientItem item(QVector<QVariant>(1));
        QVERIFY(item.setData(0, "x"));
        QVERIFY(!item.setData(1, "x"));
        QVERIFY(!item.setData(-1, "x"));
    }

    void fileField_data()
    {
        const Table<QString, QString, QString> row("attributes", "filter", "rules");
        const QString bin = "template='bin' ";
        const QString usual = "required input 0/0";
        row("no template: all else ignored",
            "exactSize='5 bytes' required='false' browseAs='output' broadcastName='n' "
            "broadcastChanges='true'",
            "", usual);
        row("unknown template", "template='Bin'", "", usual);
        row("public key", "template='publickey'", "Public Key File (*public.key);;All Files (*.*)",
            usual);
        row("private key", "template='privatekey'",
            "Private Key File (*private.key);;All Files (*.*)", usual);
        row("size without unit", bin + "exactSize='31120'", binaryFilter, usual);
        row("unit in capitals", bin + "exactSize='31120 Bytes'", binaryFilter, usual);
        row("three words", bin + "exactSize='31120 bytes long'", binaryFilter, usual);
        row("size past int", bin + "exactSize='2147483648 bytes'", binaryFilter, usual);
        row("broadcast by substring", bin + "broadcastChanges='untrue' broadcastName='n'",
            binaryFilter, usual + " named n broadcasts");
        row("broadcast without a name", bin + "broadcastChanges='true'", binaryFilter, usual);
        row("broadcast name alone", bin + "broadcastName='n'", binaryFilter, usual);
        row("required is no substring", bin + "required='untrue'", binaryFilter,
            "optional input 0/0");
        row("output in capitals", bin + "browseAs='Output'", binaryFilter, usual);
    }
    void fileField()
    {
        QFETCH(QString, attributes);
        const IngredientModel model(definitionOf("<file " + attributes + "/>"));
        const FilePath file = cell(model, 1).data().value<FilePath>();
        QCOMPARE(file.fileName, QString());
        QTEST(file.fileFilter, "filter");
        QTEST(rulesOf(file), "rules");
    }

    void choiceField_data()
    {
        const Table<QString, int, QStringList> row("field", "selectedIndex", "choices");
        row("selected", "<choice selectedIndex='1'><x value='A'/><y value='B'/></choice>", 1,
            listOf("A", "B"));
        row("no number", "<choice selectedIndex='abc'><x value='A'/></choice>", -1, listOf("A"));
        row("entries without a value", "<choice><x/><!-- c --><y value='B'/></choice>", 0,
            listOf("", "", "B"));
        row("undeclared entity in a value", "<choice><x value='A&nope;'/></choice>", 0,
            listOf("A"));
    }
    void choiceField()
    {
        QFETCH(QString, field);
        const IngredientModel model(definitionOf(field));
        const Choice choice = cell(model, 1).data().value<Choice>();
        QTEST(choice.selectedIndex, "selectedIndex");
        QTEST(choice.choices, "choices");
    }

    void cellsOfARow()
    {
        const IngredientModel longRow(
            definitionOf("<text value='1'/><!-- c --><odd/>text<text/><file/>"));
        QCOMPARE(cell(longRow, 1).data(), QVariant("1"));
        QCOMPARE(cell(longRow, 2).data(), QVariant("unknown"));
        QCOMPARE(longRow.columnCount(cell(longRow, 0)), 5);

        const IngredientModel shortRow(definitionOf("<text value='1'/>"));
        QCOMPARE(cell(shortRow, 2).data(), QVariant(" "));
        QCOMPARE(shortRow.index(0, 2).data(), QVariant(" "));
    }

    void columnFlags_data()
    {
        const Table<QString, bool, bool, bool> row("columnElements", "firstVisible",
                                                   "firstEditable", "secondEditable");
        const QString two = "<c name='A' visible='%1' isEditable='%1'/><c name='B'/>";
        row("by substring", two.arg("untrue"), true, true, false);
        row("case-sensitive", two.arg("True"), false, false, false);
        row("nameless column shifts the flags", "<c/>" + two.arg("true"), false, false, true);
        row("comment shifts the flags", "<!-- c -->" + two.arg("true"), false, false, true);
    }
    void columnFlags()
    {
        QFETCH(QString, columnElements);
        QFETCH(bool, firstEditable);
        QFETCH(bool, secondEditable);
        const IngredientModel model(
            "<a><ingredient_column>" + columnElements
            + "</ingredient_column><ingredient_column><c name='Z'/>"
              "</ingredient_column><group name='G'><i name='I'/></group></a>");
        QCOMPARE(headersOf(model), listOf("Ingredient", "A", "B"));
        QTEST(model.shouldColumnBeVisible(1), "firstVisible");
        QCOMPARE(cell(model, 1).flags(), firstEditable ? editable : readOnly);
        QCOMPARE(cell(model, 2).flags(), secondEditable ? editable : readOnly);
    }

    void groupsAndNames()
    {
        IngredientModel model(
            "<a><ingredient_column><c name='A' isEditable='true'/><c name='A' isEditable='true'/>"
            "</ingredient_column><group/><group name='G'><i name='N'><text value='1'/>"
            "<text value='2'/></i><i/><i name='N'/><group name='Inner'/></group>"
            "<group name='G'/></a>");
        // A group inside a group is a row of it and a group besides; one without a name is left
        // out.
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.rowCount(model.index(0, 0)), 3);
        QCOMPARE(model.index(1, 0).data(), QVariant("Inner"));

        // The first of equal names wins, for columns, ingredients and groups.
        model.generateIndexes();
        QCOMPARE(model.getIngredient("N", "A"), QString("1"));
        model.setGroupVisible("G", false);
        QCOMPARE(model.index(0, 0).data(VisibilityRole), QVariant("hidden"));
        QCOMPARE(model.index(2, 0).data(VisibilityRole), QVariant("visible"));
        const ModelTester tester(&model);
        QVERIFY(model.setData(cell(model, 2), "3"));
    }

    void invalidDefinitions_data()
    {
        const Table<QString, QStringList, int, QString> row("definition", "headers", "rowCount",
                                                            "line");
        const QStringList error = listOf("Error", "Details");
        row("not closed", "<a>\n<b>\n</a>", error, 1, "Line: 3");
        row("empty", "", error, 1, "Line: 1");
        row("too deep", QString("<g>").repeated(200000), error, 1, "Line: 1");
        row("no columns", "<a><group name='G'><i name='I'/></group></a>", listOf("Epic", "Fail"), 0,
            "");
    }
    void invalidDefinitions()
    {
        QFETCH(QString, definition);
        IngredientModel model(definition);
        QTEST(headersOf(model), "headers");
        QTEST(model.rowCount(), "rowCount");
        QCOMPARE(model.index(0, 0).data().toString().isEmpty(), model.rowCount() == 0);
        QTEST(model.index(0, 1).data().toString(), "line");
        QVERIFY(!model.shouldColumnBeVisible(0));
    }

    void rolesAndFlags()
    {
        IngredientModel model(definitionOf("<file template='bin'/><text value='K'/>"));
        const QModelIndex group = model.index(0, 1);
        const QModelIndex value = cell(model, 1);
        const QModelIndex key = cell(model, 2);
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());

        MessageLog log(&model);
        QVERIFY(!model.setData(value, "x", Qt::DisplayRole));
        QVERIFY(model.setData(key, false, VisibilityRole));
        QVERIFY(model.setData(value, false, VisibilityRole));
        QCOMPARE(log.take(), listOf("C I 2", "C I 1"));
        QVERIFY(model.getIngredientVisible("I")); // Compat: true for every known ingredient.
        model.setIngredientVisible("I", true);
        QCOMPARE(value.data(VisibilityRole), QVariant("visible"));
        model.setGroupVisible("G", false);
        QCOMPARE(group.data(VisibilityRole), QVariant("hidden"));
        QVERIFY(model.getGroupVisible("nope")); // Compat: true for every group, known or not.
    }

    void indexesOfAnotherModel()
    {
        IngredientModel model(definitionOf("<file template='bin'/>"));
        const IngredientModel other(definitionOf("<file template='bin'/>"));
        const QModelIndex foreign = cell(other, 1);
        QVERIFY(!model.index(0, 0, other.index(0, 0)).isValid());
        QVERIFY(!model.parent(foreign).isValid());
        QVERIFY(!model.data(foreign).isValid());
        QVERIFY(!model.setData(foreign, "x"));
        QVERIFY(!model.setDataFromString(foreign, "x"));
        QCOMPARE(model.rowCount(other.index(0, 0)), 0);
        QCOMPARE(model.columnCount(foreign), 0);
        QCOMPARE(model.flags(foreign), Qt::ItemFlags());
    }

    void accessByName()
    {
        IngredientModel model(definitionOf("<file template='bin' exactSize='7 bytes'/>"
                                           "<text value='K'/>"));
        MessageLog log(&model);
        QCOMPARE(model.getIngredient("I", "Ingredient"), QString("I"));
        model.setIngredient("I", "Key", "x");
        QCOMPARE(model.getIngredient("I", "Key"), QString("K"));
        QCOMPARE(log.take(), QStringList());

        // Only the name changes, and every write is announced, an equal one too.
        model.setIngredient("I", "Value", "/a/%1.bin");
        model.setIngredient("I", "Value", "/a/%1.bin");
        QCOMPARE(log.take(), listOf("C I 1", "C I 1"));
        const FilePath file = cell(model, 1).data().value<FilePath>();
        QCOMPARE(file.fileName, QString("/a/%1.bin"));
        QCOMPARE(rulesOf(file), QString("required input 7/7"));

        QVERIFY(model.getIngredient("no%1", "na%2").isNull());
        model.setIngredient("I", "nada", "x");
        model.setGroupVisible("I", true);
        model.setIngredientVisible("G", true);
        QVERIFY(!model.getIngredientVisible("G"));
        QCOMPARE(
            log.take(),
            listOf("E Could not find ingredient named: no%1", "E Could not find column named: na%2",
                   "E Could not find column named: nada", "E Could not find group named: I",
                   "E Could not find ingredient named: G", "E Could not find ingredient named: G"));
    }

    void invalidPositions()
    {
        IngredientModel model(definitionOf("<text value='t'/>"));
        model.clearIndexes();
        model.ingredientIndexes.insert("I", new IngredientIndex(0, -1));
        model.groupIndexes.insert("G", new IngredientIndex(-1));
        MessageLog log(&model);
        QVERIFY(!model.getIngredientVisible("I"));
        model.setGroupVisible("G", true);
        const QString message = "E Requested index is invalid";
        QCOMPARE(log.take(), listOf(message, message));
    }

    void choosingByText()
    {
        IngredientModel model(definitionOf("<choice selectedIndex='-1'><x value='0'/><x value='A'/>"
                                           "<x value='A'/></choice>"));
        const QModelIndex value = cell(model, 1);
        QVERIFY(!model.setDataFromString(value, "a")); // In another case.
        QCOMPARE(model.dataAsString(value), QString());
        QVERIFY(model.setDataFromString(value, "A")); // The last of equal entries.
        QCOMPARE(value.data().value<Choice>().selectedIndex, 2);
        QCOMPARE(model.dataAsString(value), QString("A"));
    }

    void textOfOtherCells()
    {
        IngredientModel model(definitionOf("<text value='t'/>"));
        const QModelIndex value = cell(model, 1);
        QVERIFY(model.setDataFromString(value, "u"));
        QCOMPARE(model.dataAsString(value), QString("u"));
        QVERIFY(!model.setDataFromString(model.index(0, 1), "G"));
        QVERIFY(!model.setDataFromString(QModelIndex(), "x"));
        // An editor may store any value; one of no known kind reads as empty, and the next text
        // replaces it with an invalid value.
        QVERIFY(model.setData(value, 5.5));
        QCOMPARE(model.dataAsString(value), QString());
        QVERIFY(model.setDataFromString(value, "x"));
        QVERIFY(!value.data().isValid());
    }

    void visibleFileNames()
    {
        const QString group
            = "<group name='%1'><i name='%1a'><file/></i><i name='%1b'><file/><file/></i></group>";
        IngredientModel model("<a>" + usualColumns + group.arg("G") + group.arg("H")
                              + group.arg("G") + "</a>");
        model.setIngredient("Ga", "Value", "x");
        QCOMPARE(model.getAllVisibleFileNames("G"), listOf("x", "", "", "", "", ""));
        model.setIngredientVisible("Gb", false);
        model.setGroupVisible("G", false); // The ingredients' own visibility decides.
        QCOMPARE(model.getAllVisibleFileNames("G"), listOf("x", "", "", ""));
    }

    void checks_data()
    {
        const Table<QString, QString, QStringList, QStringList> row("attributes", "path", "passed",
                                                                    "failed");
        const QStringList none;
        const QString exists = "File path exists";
        const QString missing = "File path does not exist!";
        row("directory", "", ".", listOf(exists), none);
        row("blank", "exactSize='5 bytes'", " \t", none,
            listOf("File path is empty", "File path is empty, can't check file size"));
        row("surrounding spaces count", "", " five ", none, listOf(missing));
        row("size", "exactSize='5 bytes'", "five", listOf(exists, "Exact file size is correct"),
            none);
        row("size modulo 2^32", "exactSize='5 bytes'", "huge", listOf(exists),
            listOf("File size is incorrect"));
        row("size of missing", "exactSize='5 bytes'", "nope", none,
            listOf(missing, "File path does not exist, can't check file size"));
        row("negative size", "exactSize='-5 bytes'", "five", listOf(exists), none);
        row("optional, blank", "required='no'", " ", none, none);
        row("optional, given", "required='no'", "nope", none, listOf(missing));
        row("output", "browseAs='output' exactSize='5 bytes'", "new.bin",
            listOf("Directory for file exists"), none);
        row("output below a file", "browseAs='output'", "five/new.bin", none,
            listOf("Directory for file does not exist!"));
        row("output blank", "browseAs='output'", "", none, listOf("Directory and file is missing"));
    }
    void checks()
    {
        QFETCH(QString, attributes);
        QFETCH(QString, path);
        const CurrentDirectory inside(folder->path());
        writeFile("five", "12345");
        QFile huge(writeFile("huge", ""));
        QVERIFY(huge.resize((Q_INT64_C(1) << 32) + 5));
        IngredientModel model(definitionOf("<file template='bin' " + attributes + "/>"));
        model.setIngredient("I", "Value", path);
        model.setGroupVisible("G", false); // The ingredients' own visibility decides.
        QStringList passed;
        QStringList failed;
        const QList<CheckResult> results = model.checkAllFiles();
        for (const CheckResult &result : results) {
            QCOMPARE(result.ingredientName, QString("I"));
            (result.passed ? passed : failed) << result.details;
        }
        QTEST(passed, "passed");
        QTEST(failed, "failed");
        model.setIngredientVisible("I", false);
        QVERIFY(model.checkAllFiles().isEmpty());
    }

    void sizesThatDiffer()
    {
        IngredientModel model(definitionOf("<file template='bin'/>"));
        FilePath file;
        file.fileName = folder->path();
        file.exactSize = 5;
        file.expectedSize = 6;
        QVERIFY(model.setData(cell(model, 1), QVariant::fromValue(file)));
        QCOMPARE(model.checkAllFiles().count(), 1); // No size is checked.
    }

private:
    QScopedPointer<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(TestModel)
#include "tst_model.moc"
