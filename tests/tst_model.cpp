// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "changelog.h"
#include "files.h"
#include "flatproxy.h"
#include "messagelog.h"
#include "model/ingredientcheckmodel.h"
#include "model/ingredientmodel.h"
#include "qtcompat.h"
#include "row.h"

namespace {

const Qt::ItemFlags readOnly = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
const Qt::ItemFlags editable = readOnly | Qt::ItemIsEditable;

const QString columns = "<ingredient_column><column name='Value' visible='true' isEditable='true'/>"
                        "<column name='Key' visible='false' isEditable='false'/>"
                        "</ingredient_column>";

/// A definition with the usual columns and one ingredient "I" in the group "G".
QString definitionOf(const QString &fields)
{
    return "<ingredients>" + columns + "<group name='G'><ingredient name='I'>" + fields
        + "</ingredient></group></ingredients>";
}

FilePath fileWithFilter(const QString &filter)
{
    FilePath file;
    file.fileFilter = filter;
    return file;
}

FilePath binaryFile()
{
    return fileWithFilter("Binary File (*.bin);;All Files (*.*)");
}

FilePath fileOfSize(int size)
{
    FilePath file = binaryFile();
    file.exactSize = size;
    file.expectedSize = size;
    return file;
}

FilePath broadcastingFile(const QString &name, bool broadcasts)
{
    FilePath file = binaryFile();
    file.broadcastName = name;
    file.broadcastChanges = broadcasts;
    return file;
}

FilePath optionalFile()
{
    FilePath file = binaryFile();
    file.isRequired = false;
    return file;
}

FilePath outputFile()
{
    FilePath file = binaryFile();
    file.isInput = false;
    return file;
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

CheckResult resultOf(bool passed)
{
    CheckResult result;
    result.passed = passed;
    result.ingredientName = "I";
    result.details = "details";
    return result;
}

} // namespace

/// Reads the summary of a check table at every reset, as a host's view does.
class SummaryReader : public QObject
{
    Q_OBJECT

public:
    explicit SummaryReader(IngredientCheckModel *checkTable)
        : table(checkTable)
    {
        connect(table, SIGNAL(modelReset()), SLOT(read()));
    }

    CheckResultSummary summary;
    int resets = 0;

public slots:
    void read()
    {
        summary = table->checkResultSummary();
        ++resets;
    }

private:
    IngredientCheckModel *table;
};

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
        QTest::addColumn<FilePath>("expected");
        const QString bin = "template='bin' ";
        row("no template: all else ignored",
            "exactSize='5 bytes' required='false' browseAs='output' broadcastName='n' "
            "broadcastChanges='true'",
            FilePath());
        row("unknown template", "template='Bin'", FilePath());
        row("binary", bin, binaryFile());
        row("public key", "template='publickey'",
            fileWithFilter("Public Key File (*public.key);;All Files (*.*)"));
        row("private key", "template='privatekey'",
            fileWithFilter("Private Key File (*private.key);;All Files (*.*)"));
        row("xml", "template='xml'",
            fileWithFilter("Legacy XML Data File (*.xml);;All Files (*.*)"));
        row("size", bin + "exactSize='31120 bytes'", fileOfSize(31120));
        row("size without unit", bin + "exactSize='31120'", binaryFile());
        row("unit in capitals", bin + "exactSize='31120 Bytes'", binaryFile());
        row("two spaces", bin + "exactSize='31120  bytes'", binaryFile());
        row("three words", bin + "exactSize='31120 bytes long'", binaryFile());
        row("size past int", bin + "exactSize='2147483648 bytes'", binaryFile());
        row("broadcast by substring", bin + "broadcastChanges='untrue' broadcastName='n'",
            broadcastingFile("n", true));
        row("broadcast is case-sensitive", bin + "broadcastChanges='True' broadcastName='n'",
            broadcastingFile("n", false));
        row("broadcast without a name", bin + "broadcastChanges='true'", binaryFile());
        row("broadcast name alone", bin + "broadcastName='n'", binaryFile());
        row("required", bin + "required='true'", binaryFile());
        row("required in capitals", bin + "required='True'", optionalFile());
        row("required is no substring", bin + "required='untrue'", optionalFile());
        row("output", bin + "browseAs='output'", outputFile());
        row("output in capitals", bin + "browseAs='Output'", binaryFile());
    }
    void fileField()
    {
        QFETCH(QString, attributes);
        QFETCH(FilePath, expected);
        const IngredientModel model(definitionOf("<file " + attributes + "/>"));
        const FilePath file = cell(model, 0, 0, 1).data().value<FilePath>();
        QCOMPARE(file.fileName, QString());
        QCOMPARE(file.fileFilter, expected.fileFilter);
        QCOMPARE(file.broadcastChanges, expected.broadcastChanges);
        QCOMPARE(file.broadcastName, expected.broadcastName);
        QCOMPARE(file.isRequired, expected.isRequired);
        QCOMPARE(file.exactSize, expected.exactSize);
        QCOMPARE(file.expectedSize, expected.expectedSize);
        QCOMPARE(file.isInput, expected.isInput);
    }

    void choiceField_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("selectedIndex");
        QTest::addColumn<QStringList>("choices");
        row("empty", "<choice/>", 0, QStringList());
        row("selected", "<choice selectedIndex='1'><x value='A'/><y value='B'/></choice>", 1,
            QStringList() << "A"
                          << "B");
        row("no number", "<choice selectedIndex='abc'><x value='A'/></choice>", -1,
            QStringList("A"));
        row("entries without a value", "<choice><x/><!-- c --><y value='B'/></choice>", 0,
            QStringList() << ""
                          << ""
                          << "B");
        row("undeclared entity in a value", "<choice><x value='A&nope;'/></choice>", 0,
            QStringList("A"));
    }
    void choiceField()
    {
        QFETCH(QString, field);
        const IngredientModel model(definitionOf(field));
        const Choice choice = cell(model, 0, 0, 1).data().value<Choice>();
        QTEST(choice.selectedIndex, "selectedIndex");
        QTEST(choice.choices, "choices");
    }

    void cellsOfARow()
    {
        const IngredientModel longRow(
            definitionOf("<text value='1'/><!-- c --><odd/>text<text/><file/>"));
        QCOMPARE(cell(longRow, 0, 0, 1).data(), QVariant("1"));
        QCOMPARE(cell(longRow, 0, 0, 2).data(), QVariant("unknown"));
        QCOMPARE(longRow.columnCount(cell(longRow, 0, 0, 0)), 5);

        const IngredientModel shortRow(definitionOf("<text value='1'/>"));
        QCOMPARE(cell(shortRow, 0, 0, 2).data(), QVariant(" "));
        QCOMPARE(shortRow.index(0, 2).data(), QVariant(" "));
    }

    void columnFlags_data()
    {
        QTest::addColumn<QString>("columnElements");
        QTest::addColumn<QStringList>("headers");
        QTest::addColumn<bool>("firstVisible");
        QTest::addColumn<bool>("firstEditable");
        QTest::addColumn<bool>("secondEditable");
        row("by substring", "<c name='A' visible='untrue' isEditable='untrue'/><c name='B'/>",
            QStringList() << "Ingredient"
                          << "A"
                          << "B",
            true, true, false);
        row("case-sensitive", "<c name='A' visible='True' isEditable='True'/><c name='B'/>",
            QStringList() << "Ingredient"
                          << "A"
                          << "B",
            false, false, false);
        row("nameless column shifts the flags",
            "<c/><c name='A' visible='true' isEditable='true'/><c name='B'/>",
            QStringList() << "Ingredient"
                          << "A"
                          << "B",
            false, false, true);
        row("comment shifts the flags",
            "<!-- c --><c name='A' visible='true' isEditable='true'/><c name='B'/>",
            QStringList() << "Ingredient"
                          << "A"
                          << "B",
            false, false, true);
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
        QTEST(headersOf(model), "headers");
        QVERIFY(model.shouldColumnBeVisible(0));
        QTEST(model.shouldColumnBeVisible(1), "firstVisible");
        QCOMPARE(cell(model, 0, 0, 1).flags(), firstEditable ? editable : readOnly);
        QCOMPARE(cell(model, 0, 0, 2).flags(), secondEditable ? editable : readOnly);
    }

    void groupsAndNames()
    {
        IngredientModel model(
            "<a><ingredient_column><c name='A' isEditable='true'/><c name='A' isEditable='true'/>"
            "</ingredient_column><group/><group name='G'><i name='N'><text value='1'/>"
            "<text value='2'/></i><i/><i name='N'/><group name='Inner'/></group>"
            "<group name='G'/></a>");
        // A group inside a group is a row of it and a group besides; one without a name is left out.
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
        QVERIFY(model.setData(cell(model, 0, 0, 2), "3"));
    }

    void invalidDefinitions_data()
    {
        QTest::addColumn<QString>("definition");
        QTest::addColumn<QString>("line");
        row("not closed", "<a>\n<b>\n</a>", "Line: 3");
        row("empty", "", "Line: 1");
        row("too deep", QString("<g>").repeated(200000), "Line: 1");
    }
    void invalidDefinitions()
    {
        QFETCH(QString, definition);
        IngredientModel model(definition);
        QCOMPARE(headersOf(model),
                 QStringList() << "Error"
                               << "Details");
        QCOMPARE(model.rowCount(), 1);
        QVERIFY(!model.index(0, 0).data().toString().isEmpty());
        QTEST(model.index(0, 1).data().toString(), "line");
        QVERIFY(!model.shouldColumnBeVisible(0));
        MessageLog log(&model);
        model.getIngredient("Error", "Details");
        QCOMPARE(log.take(),
                 QStringList() << "E Could not find ingredient named: Error"
                               << "E Could not find column named: Details");
    }

    void definitionWithoutColumns()
    {
        IngredientModel model("<a><group name='G'><i name='I'/></group></a>");
        QCOMPARE(headersOf(model),
                 QStringList() << "Epic"
                               << "Fail");
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(!model.shouldColumnBeVisible(0));
        MessageLog log(&model);
        model.getIngredient("I", "Fail");
        QCOMPARE(log.take(), QStringList("E Could not find ingredient named: I"));
    }

    void rolesAndFlags()
    {
        IngredientModel model(definitionOf("<file template='bin'/><text value='K'/>"));
        const QModelIndex group = model.index(0, 1);
        const QModelIndex value = cell(model, 0, 0, 1);
        const QModelIndex key = cell(model, 0, 0, 2);
        QCOMPARE(group.flags(), readOnly);
        QCOMPARE(cell(model, 0, 0, 0).flags(), readOnly);
        QCOMPARE(value.flags(), editable);
        QCOMPARE(key.flags(), readOnly);
        QCOMPARE(model.rowCount(group), 0);
        QVERIFY(!value.data(Qt::EditRole).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical).isValid());
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());

        ChangeLog changes(&model);
        QVERIFY(!model.setData(key, "x"));
        QVERIFY(!model.setData(value, "x", Qt::DisplayRole));
        QCOMPARE(changes.take(), QModelIndexList());
        QVERIFY(model.setData(key, false, VisibilityRole));
        QVERIFY(model.setData(value, false, VisibilityRole));
        QCOMPARE(changes.take(), QModelIndexList() << key << value);
        QCOMPARE(value.data(VisibilityRole), QVariant("hidden"));
        QVERIFY(model.getIngredientVisible("I")); // Compat: true for every known ingredient.
        model.setIngredientVisible("I", true);
        QCOMPARE(value.data(VisibilityRole), QVariant("visible"));
        model.setGroupVisible("G", false);
        QCOMPARE(group.data(VisibilityRole), QVariant("hidden"));
        QVERIFY(model.getGroupVisible("G")); // Compat: true for every group, known or not.
        QVERIFY(model.getGroupVisible("nope"));
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
        QCOMPARE(model.rowCount(other.index(0, 0)), 0);
        QCOMPARE(model.columnCount(foreign), 0);
        QCOMPARE(model.flags(foreign), Qt::ItemFlags());
    }

    void accessByName()
    {
        IngredientModel model(definitionOf("<file template='bin' exactSize='7 bytes'/>"
                                           "<text value='K'/>"));
        const QModelIndex value = cell(model, 0, 0, 1);
        MessageLog log(&model);
        ChangeLog changes(&model);
        QCOMPARE(model.getIngredient("I", "Key"), QString("K"));
        QCOMPARE(model.getIngredient("I", "Ingredient"), QString("I"));
        model.setIngredient("I", "Key", "x");
        QCOMPARE(model.getIngredient("I", "Key"), QString("K"));
        QCOMPARE(changes.take(), QModelIndexList());

        // Only the name changes, and every write is announced, an equal one too.
        model.setIngredient("I", "Value", "/a/%1.bin");
        model.setIngredient("I", "Value", "/a/%1.bin");
        QCOMPARE(changes.take(), QModelIndexList() << value << value);
        const FilePath file = value.data().value<FilePath>();
        QCOMPARE(file.fileName, QString("/a/%1.bin"));
        QCOMPARE(file.fileFilter, binaryFile().fileFilter);
        QCOMPARE(file.exactSize, 7);
        QCOMPARE(log.take(), QStringList());

        QVERIFY(model.getIngredient("no%1", "na%2").isNull());
        model.setIngredient("I", "nada", "x");
        model.setGroupVisible("I", true);
        model.setIngredientVisible("G", true);
        QVERIFY(!model.getIngredientVisible("G"));
        QCOMPARE(log.take(),
                 QStringList() << "E Could not find ingredient named: no%1"
                               << "E Could not find column named: na%2"
                               << "E Could not find column named: nada"
                               << "E Could not find group named: I"
                               << "E Could not find ingredient named: G"
                               << "E Could not find ingredient named: G");
    }

    void choosingByText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<int>("selectedIndex");
        row("the last of equal entries", "A", true, 2);
        row("the first entry", "0", true, 0);
        row("in another case", "a", false, -1);
        row("no entry", "Z", false, -1);
    }
    void choosingByText()
    {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        QFETCH(int, selectedIndex);
        IngredientModel model(definitionOf("<choice selectedIndex='-1'><x value='0'/><x value='A'/>"
                                           "<x value='A'/></choice>"));
        const QModelIndex value = cell(model, 0, 0, 1);
        ChangeLog changes(&model);
        QCOMPARE(model.dataAsString(value), QString());
        QCOMPARE(model.setDataFromString(value, text), accepted);
        QCOMPARE(value.data().value<Choice>().selectedIndex, selectedIndex);
        QCOMPARE(model.dataAsString(value), accepted ? text : QString());
        QCOMPARE(changes.take(), accepted ? QModelIndexList() << value : QModelIndexList());
    }

    void textOfOtherCells()
    {
        IngredientModel model(definitionOf("<text value='t'/>"));
        const QModelIndex value = cell(model, 0, 0, 1);
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
        IngredientModel model("<a>" + columns + group.arg("G") + group.arg("H") + group.arg("G")
                              + "</a>");
        model.setIngredient("Ga", "Value", "x");
        QCOMPARE(model.getAllVisibleFileNames("G"),
                 QStringList() << "x"
                               << ""
                               << ""
                               << ""
                               << ""
                               << "");
        model.setIngredientVisible("Gb", false);
        model.setGroupVisible("G", false); // The ingredients' own visibility decides.
        QCOMPARE(model.getAllVisibleFileNames("G"),
                 QStringList() << "x"
                               << ""
                               << ""
                               << "");
        QCOMPARE(model.getAllVisibleFileNames("nope"), QStringList());
    }

    void checks_data()
    {
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("passed");
        QTest::addColumn<QStringList>("failed");
        const QStringList none;
        const QString exists = "File path exists";
        const QString missing = "File path does not exist!";
        const QString sizeIsCorrect = "Exact file size is correct";
        const QString sizeIsIncorrect = "File size is incorrect";
        row("exists", "", "five", QStringList(exists), none);
        row("missing", "", "nope", none, QStringList(missing));
        row("directory", "", ".", QStringList(exists), none);
        row("blank", "exactSize='5 bytes'", " \t", none,
            QStringList() << "File path is empty"
                          << "File path is empty, can't check file size");
        row("surrounding spaces count", "", " five ", none, QStringList(missing));
        row("size", "exactSize='5 bytes'", "five", QStringList() << exists << sizeIsCorrect, none);
        row("too small", "exactSize='6 bytes'", "five", QStringList(exists),
            QStringList(sizeIsIncorrect));
        row("size modulo 2^32", "exactSize='5 bytes'", "huge", QStringList(exists),
            QStringList(sizeIsIncorrect));
        row("size of missing", "exactSize='5 bytes'", "nope", none,
            QStringList() << missing << "File path does not exist, can't check file size");
        row("negative size", "exactSize='-5 bytes'", "five", QStringList(exists), none);
        row("optional, blank", "required='no'", " ", none, none);
        row("optional, given", "required='no' exactSize='5 bytes'", "five",
            QStringList() << exists << sizeIsCorrect, none);
        row("output", "browseAs='output' exactSize='5 bytes'", "new.bin",
            QStringList("Directory for file exists"), none);
        row("output nowhere", "browseAs='output'", "no/new.bin", none,
            QStringList("Directory for file does not exist!"));
        row("output below a file", "browseAs='output'", "five/new.bin", none,
            QStringList("Directory for file does not exist!"));
        row("output blank", "browseAs='output'", "", none,
            QStringList("Directory and file is missing"));
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
        FilePath file = fileOfSize(5);
        file.fileName = folder->path();
        file.expectedSize = 6;
        QVERIFY(model.setData(cell(model, 0, 0, 1), QVariant::fromValue(file)));
        QCOMPARE(model.checkAllFiles().count(), 1); // No size is checked.
    }

    void checkTable()
    {
        IngredientCheckModel table;
        FlatProxy proxy(&table);
        const ModelTester tester(&proxy);
        SummaryReader reader(&table);
        // Compat: a placeholder row that the summary does not count.
        QCOMPARE(table.rowCount(), 1);
        QCOMPARE(table.index(0, 0).data(), QVariant(false));
        QCOMPARE(table.checkResultSummary().checkCount, 0);
        QCOMPARE(headersOf(table),
                 QStringList() << ""
                               << "Ingredient"
                               << "Details");
        QVERIFY(!table.headerData(0, Qt::Vertical).isValid());

        for (int run = 1; run <= 2; ++run) {
            table.setData(QList<CheckResult>()
                          << resultOf(true) << resultOf(false) << resultOf(true));
            QCOMPARE(reader.resets, run);
            QCOMPARE(reader.summary.checkCount, 3);
            QCOMPARE(reader.summary.passCount, 2);
            QCOMPARE(reader.summary.failCount, 1);
        }
        QCOMPARE(table.index(0, CheckColumn::Passed).data(), QVariant(true));
        QCOMPARE(table.index(1, CheckColumn::Passed).data(), QVariant(false));
        QCOMPARE(table.index(0, CheckColumn::Ingredient).data(), QVariant("I"));
        QCOMPARE(table.index(0, CheckColumn::Details).data(), QVariant("details"));
        QVERIFY(!table.index(0, 0).data(Qt::DecorationRole).isValid());
        QCOMPARE(table.index(0, 0).flags(), readOnly);

        table.setData(QList<CheckResult>());
        QCOMPARE(table.rowCount(), 0);
        QCOMPARE(table.checkResultSummary().checkCount, 0);
    }

private:
    QScopedPointer<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(TestModel)
#include "tst_model.moc"
