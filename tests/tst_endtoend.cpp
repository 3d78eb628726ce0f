// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "observers.h"
#include "plugin/statusmanager.h"
#include "plugin/vendorprefix.h"
#include "qtcompat.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QPluginLoader>
#include <QtTest>

#include <initializer_list>

// Another host's declarations. It shares none with the plug-in: what must agree is the order of the
// operations, the fields of the values, and the names of the classes, by which both dynamic_cast
// and Qt's meta-types recognise them.

struct FilePath {
    QString fileName;
    QString fileFilter;
    bool broadcastChanges;
    QString broadcastName;
    bool isRequired;
    int exactSize;
    int expectedSize;
    bool isInput;
};
Q_DECLARE_METATYPE(FilePath)

struct Choice {
    int selectedIndex;
    QStringList choices;
};
Q_DECLARE_METATYPE(Choice)

struct GpioBitToggle {
    unsigned char bitPosition;
    unsigned char value;
    bool enabled;
};
Q_DECLARE_METATYPE(GpioBitToggle)

struct CheckResultSummary {
    int checks;
    int passed;
    int failed;
};

struct IDataView {
    virtual ~IDataView() { }
    virtual QVector<unsigned char> exported() = 0;
    virtual QAbstractItemModel *model() = 0;
    virtual QString displayName() = 0;
    virtual QHash<QString, QVariant> parameters() = 0;
    virtual QString targetName() = 0;
    virtual bool load(const QVector<unsigned char> &data) = 0;
};

struct IIngredientManager {
    virtual ~IIngredientManager() { }
    virtual bool isDataLoaded() = 0;
    virtual bool fillFromDirectory(const QString &directory) = 0;
    virtual QAbstractItemModel *model() = 0;
    virtual QList<IDataView *> views() = 0;
    virtual bool isColumnVisible(int column) = 0;
    virtual bool loadConfig(QString file) = 0;
    virtual bool loadData(const QString &file) = 0;
    virtual bool loadFile(QString file) = 0;
    virtual bool saveConfig(QString file) = 0;
    virtual bool saveData(const QString &file) = 0;
    virtual bool validate(const QString &file) = 0;
};

struct IExecutionManager {
    virtual ~IExecutionManager() { }
    virtual void begin() = 0;
    virtual void cancel() = 0;
    virtual QAbstractItemModel *checks() = 0;
    virtual CheckResultSummary summary() = 0;
    virtual QString workingDirectory() = 0;
    virtual void setWorkingDirectory(const QString &directory) = 0;
    virtual bool verify() = 0;
};

struct ILoomwrightPlugin {
    virtual ~ILoomwrightPlugin() { }
    virtual QString author() = 0;
    virtual IIngredientManager *ingredients() = 0;
    virtual IExecutionManager *execution() = 0;
    virtual QStringList versions() = 0;
    virtual QWidget *details() = 0;
    virtual QString targetName() = 0;
    virtual QString version() = 0;
    virtual void registerRelay(StatusManager *relay) = 0;
};

namespace {

/// The argument with which this program is another host.
const char lateHost[] = "--late-host";
const char greeting[] = "S    Status bridge registered for Veldmark D1 Phone - Unsigned Zorv!";
const Qt::ItemFlags readOnly = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
const Qt::ItemFlags editable = readOnly | Qt::ItemIsEditable;

QByteArray identifierOf(const QByteArray &interfaceName)
{
    return LOOMWRIGHT_VENDOR_PREFIX ".plugin.tamblin." + interfaceName + "/1.0";
}

/// The class has these own signals and slots, in meta-object order and written as
/// "signal name(type) parameter".
void verifyMetaObject(const QObject *object, const char *className, const QStringList &methods)
{
    const QMetaObject *metaObject = object->metaObject();
    QCOMPARE(metaObject->className(), className);
    QCOMPARE(metaObject->propertyCount(), metaObject->superClass()->propertyCount());
    QStringList found;
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        QByteArray text = method.methodType() == QMetaMethod::Signal ? "signal "
            : method.access() == QMetaMethod::Public                 ? "slot "
                                                                     : "hidden ";
        text += signatureOf(method);
        const QList<QByteArray> names = method.parameterNames();
        for (const QByteArray &name : names) {
            text += ' ' + name;
        }
        found << text;
    }
    QCOMPARE(found, methods);
}

template <typename Interface> void verifyCasts(Interface *interface, const QByteArray &name)
{
    QObject *object = dynamic_cast<QObject *>(interface);
    QVERIFY2(object, name);
    QCOMPARE(object->qt_metacast(object->metaObject()->className()), static_cast<void *>(object));
    QCOMPARE(object->qt_metacast(name), static_cast<void *>(interface));
    QCOMPARE(object->qt_metacast(identifierOf(name)), static_cast<void *>(interface));
    QVERIFY(!object->qt_metacast("another.vendor.plugin.tamblin." + name + "/1.0"));
    QVERIFY(!object->qt_metacast(identifierOf("IAnother")));
    QVERIFY(!object->qt_metacast(identifierOf(name).replace("/1.0", "/1.1")));
}

void verifyFile(const QVariant &value, const FilePath &expected)
{
    QCOMPARE(value.typeName(), "FilePath");
    const FilePath file = value.value<FilePath>();
    QCOMPARE(file.fileName, expected.fileName);
    QCOMPARE(file.fileFilter, expected.fileFilter);
    QCOMPARE(file.broadcastChanges, expected.broadcastChanges);
    QCOMPARE(file.broadcastName, expected.broadcastName);
    QCOMPARE(file.isRequired, expected.isRequired);
    QCOMPARE(file.exactSize, expected.exactSize);
    QCOMPARE(file.expectedSize, expected.expectedSize);
    QCOMPARE(file.isInput, expected.isInput);
}

/// The messages about the sample's data file. Each load also verifies the sections of the loads
/// before it.
QStringList loadReport(const QString &file, int load)
{
    QStringList report = listOf(
        "S Validating Legacy XML Data File " + file, "S \nLegacy XML PLENKITVersion is 0.1.0",
        "S Found the following Header Sections:", "S  - Boot", "S  - Vectors", "S  - Trust",
        "S \nVerifying integrity of header sections");
    for (int earlier = 0; earlier < load; ++earlier) {
        report
            += sectionReport("Boot", 3) + sectionReport("Vectors", 2) + sectionReport("Trust", 2);
    }
    return report += listOf("S Legacy XML Data file passed validation checks ", "D");
}

QStringList columnOf(const QAbstractItemModel *model, int column,
                     const QModelIndex &parent = QModelIndex())
{
    QStringList texts;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        texts << model->index(row, column, parent).data().toString();
    }
    return texts;
}

QStringList titlesOf(const QAbstractItemModel *model, Qt::Orientation orientation)
{
    QStringList titles;
    while (model->headerData(titles.count(), orientation).isValid()) {
        titles << model->headerData(titles.count(), orientation).toString();
    }
    return titles;
}

} // namespace

class TestEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Without the user's own choice of folders, documents are in "Documents".
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(QDir::tempPath() + "/none"));
        qRegisterMetaType<QModelIndex>("QModelIndex");
        loader.setFileName(PLUGIN_LIBRARY);
        QVERIFY2(loader.load(), qPrintable(loader.errorString()));
    }
    void init()
    {
        folder.reset(new QTemporaryDir);
        missing = folder->filePath("none/file");
        rootObject = loader.instance();
        QVERIFY(rootObject);
        root = dynamic_cast<ILoomwrightPlugin *>(rootObject.data());
        QVERIFY(root);
        relay.reset(new StatusManager);
        log.reset(new MessageLog(relay.data()));
        root->registerRelay(relay.data());
        QCOMPARE(log->take(), QStringList(greeting));
        ingredients = root->ingredients();
        model = ingredients->model();
        execution = root->execution();
    }
    void cleanup()
    {
        delete rootObject;
    }

    void identityAndDetailsPage()
    {
        QCOMPARE(root->author(), QString("Loomwright plug-in team <zorv@loomwright.invalid>"));
        QCOMPARE(root->versions(), QStringList("1.0"));
        QCOMPARE(root->targetName(), QString("Veldmark D1 Phone - Unsigned Zorv"));
        QCOMPARE(root->version(), QString("1.0.0"));

        QWidget *page = root->details();
        QCOMPARE(page->objectName(), QString("ExternalUnsignedZorvTargetDetails"));
        QCOMPARE(page->windowTitle(), QString("Form"));
        QVERIFY(!page->parent());
        QCOMPARE(page->size(), QSize(640, 480));
        QCOMPARE(page->layout()->objectName(), QString("gridLayout"));
        const QLabel *label = page->findChild<QLabel *>("label");
        QVERIFY(label);
        QCOMPARE(label->text(),
                 QString("No additional details needed, \ncontinue to load ingredients tab"));
        QCOMPARE(label->alignment(), Qt::Alignment(Qt::AlignCenter));
        QCOMPARE(label->font().pointSize(), 12);
        QVERIFY(label->font().bold());
        for (const QSize &size : {QSize(1000, 300), QSize(500, 900)}) {
            page->resize(size);
            page->layout()->setGeometry(page->rect());
            QVERIFY((label->geometry().center() - page->rect().center()).manhattanLength() <= 4);
        }
    }

    void pageMayBeDestroyedByTheHost()
    {
        {
            QWidget window;
            root->details()->setParent(&window);
        }
        QVERIFY(!root->details());
    }

    void pageOutlivesTheApplication()
    {
        QProcess host;
        host.start(QCoreApplication::applicationFilePath(), QStringList(lateHost));
        QVERIFY(host.waitForFinished());
        QCOMPARE(host.exitStatus(), QProcess::NormalExit);
        QCOMPARE(host.exitCode(), 0);
    }

    void classes()
    {
        ingredients->loadData(missing);
        IDataView *view = ingredients->views().first();
        verifyCasts(root, "ILoomwrightPlugin");
        verifyCasts(ingredients, "IIngredientManager");
        verifyCasts(execution, "IExecutionManager");
        verifyCasts(view, "IDataView");

        const QString status = "signal statusMessage(QString) message";
        const QString error = "signal errorMessage(QString) message";
        verifyMetaObject(
            relay.data(), "StatusManager",
            listOf(error, status, "signal targetDetailsChanged()", "signal dataFileChanged()"));
        verifyMetaObject(rootObject, "ExternalUnsignedZorv",
                         listOf("slot statusMessage(QString) message",
                                "slot errorMessage(QString) message", "slot dataFileChanged()"));
        verifyMetaObject(root->details(), "ExternalUnsignedZorvTargetDetails", QStringList());
        verifyMetaObject(
            dynamic_cast<QObject *>(ingredients), "ExternalUnsignedZorvIngredientManager",
            listOf(status, error, "signal dataFileLoaded()",
                   "slot processDataChange(QModelIndex,QModelIndex) topLeft bottomRight"));
        verifyMetaObject(dynamic_cast<QObject *>(execution), "ExternalUnsignedZorvExecutionManager",
                         listOf(status, error, "signal executionFinished()",
                                "slot processStandardOut()", "slot processStandardError()",
                                "slot processCommandLineError(QProcess::ProcessError) error"));
        verifyMetaObject(
            model, "IngredientModel",
            listOf("signal changeOccured(QString,QString) broadcastName value", status, error));
        verifyMetaObject(execution->checks(), "IngredientCheckModel", QStringList());
        verifyMetaObject(dynamic_cast<QObject *>(view), "ExternalUnsignedZorvGpioView",
                         QStringList());
        verifyMetaObject(view->model(), "GpioModel", QStringList());
    }

    void ingredientTree()
    {
        QCOMPARE(titlesOf(model, Qt::Horizontal), listOf("Ingredient", "Value", "Key"));
        QCOMPARE(titlesOf(model, Qt::Vertical), QStringList());
        QVERIFY(ingredients->isColumnVisible(0));
        QVERIFY(ingredients->isColumnVisible(1));
        QVERIFY(!ingredients->isColumnVisible(2));
        QCOMPARE(columnOf(model, 0), listOf("Ingredient Options", "Data Files", "Binary Files"));

        const QModelIndex group = model->index(2, 0);
        QCOMPARE(columnOf(model, 0, group),
                 listOf("Probe Set", "Host FW", "Host FW Supplemental", "Presigned Controller FW",
                        "Presigned Secure Annex", "Presigned Secure Lookaside",
                        "Presigned Secure Anchor", "Presigned Codec FW"));
        QCOMPARE(columnOf(model, 2, group),
                 listOf("Probe Block", "Host FW Boot", "Flash-Layer", "Vendor Signed FW",
                        "Secure_Annex_FW", "Secure_Lookaside_Blob", "Secure_Anchor_Blob",
                        "SIGNED_CODEC_FW"));
        const QModelIndex name = model->index(1, 0, group);
        QCOMPARE(model->flags(model->index(2, 1)), readOnly);
        QCOMPARE(model->flags(name), readOnly);
        QCOMPARE(model->flags(valueCell(2, 1)), editable);
        QCOMPARE(model->flags(model->index(1, 2, group)), readOnly);
        QVERIFY(!name.data(Qt::EditRole).isValid());
        QSignalSpy changes(model, SIGNAL(dataChanged(QModelIndex, QModelIndex)));
        QCOMPARE(name.data(Qt::UserRole).toString(), QString("visible"));
        QVERIFY(model->setData(name, false, Qt::UserRole));
        QCOMPARE(name.data(Qt::UserRole).toString(), QString("hidden"));
        QCOMPARE(changes.count(), 1);
    }

    void files()
    {
        const QString documents = QDir::homePath() + "/Documents";
        const QString binary = "Binary File (*.bin);;All Files (*.*)";
        const QString xml = "Legacy XML Data File (*.xml);;All Files (*.*)";
        verifyFile(valueCell(0, 0).data(),
                   {documents + "/unsigned-zorv.bin", binary, false, "", true, 0, 0, false});
        verifyFile(valueCell(1, 0).data(), {"", xml, true, "xmlFileName", true, 0, 0, true});
        const int sizes[] = {31120, 102400, 32768, 95232, 0, 0, 0, 0};
        for (int i = 0; i < 8; ++i) {
            verifyFile(valueCell(2, i).data(),
                       {"", binary, false, "", true, sizes[i], sizes[i], true});
        }

        FilePath own = {"image", "any", false, "my xmlFileName", false, 3, 4, false};
        QVERIFY(model->setData(valueCell(0, 0), QVariant::fromValue(own)));
        own.broadcastChanges = true;
        own.broadcastName = "my XMLFileName";
        QVERIFY(model->setData(valueCell(0, 0), QVariant::fromValue(own)));
        QCOMPARE(log->take(), QStringList());
        own.broadcastName = "my xmlFileName";
        QVERIFY(model->setData(valueCell(0, 0), QVariant::fromValue(own)));
        verifyFile(valueCell(0, 0).data(), own);
        QCOMPARE(log->take().value(0), QString("S Validating Legacy XML Data File image"));
        QVERIFY(ingredients->loadFile("a/HostFW_2.bin"));
        verifyFile(valueCell(2, 1).data(),
                   {"a/HostFW_2.bin", binary, false, "", true, 102400, 102400, true});
    }

    void choices()
    {
        const QString file = folder->filePath("config");
        const Choice choice = {1, listOf("slow", "fast")};
        QVERIFY(model->setData(valueCell(2, 1), QVariant::fromValue(choice)));
        QVERIFY(ingredients->saveConfig(file));
        QVERIFY(configurationIn(file).contains("Host FW Boot = fast"));
        QVERIFY(ingredients->loadConfig(writeFile(file, "Host FW Boot = slow")));
        QCOMPARE(valueCell(2, 1).data().typeName(), "Choice");
        QCOMPARE(valueCell(2, 1).data().value<Choice>().selectedIndex, 0);
        QCOMPARE(valueCell(2, 1).data().value<Choice>().choices, choice.choices);
    }

    void failures()
    {
        QVERIFY(!ingredients->isDataLoaded());
        QCOMPARE(ingredients->views().count(), 0);
        QVERIFY(!ingredients->fillFromDirectory(missing));
        QVERIFY(!ingredients->loadConfig(missing));
        QVERIFY(!ingredients->loadFile(missing));
        QVERIFY(!ingredients->saveConfig(missing));
        QVERIFY(!ingredients->saveData(folder->filePath("data")));
        QVERIFY(!QFile::exists(folder->filePath("data")));
        QCOMPARE(log->take(),
                 listOf("E No ingredients were found",
                        "E Failed to open " + missing + " for reading",
                        "E " + missing + " did not map to any ingredients!",
                        "E Failed to open " + missing + " for writing"));

        const QStringList validation = listOf("S Validating Legacy XML Data File " + missing,
                                              "E ERROR: Failed to open Legacy XML Data file!");
        QVERIFY(!ingredients->validate(missing));
        QCOMPARE(log->take(), validation);
        QVERIFY(!ingredients->isDataLoaded());
        // A load writes the path into the tree, which loads it once more.
        QVERIFY(ingredients->loadData(missing));
        const QString failed = "E Legacy XML Data file failed validation checks";
        const QStringList changed
            = listOf(failed, "D", "S XML file changed and data was loaded into memory.");
        QCOMPARE(log->take(),
                 validation + QStringList(failed) + validation + changed + QStringList("D"));
        QVERIFY(ingredients->isDataLoaded());
        // An equal path is loaded again, and another one takes its place.
        setFile(valueCell(1, 0), missing);
        QCOMPARE(log->take(), validation + changed);
        QVERIFY(ingredients->loadData("/dev/null"));
        QCOMPARE(valueCell(1, 0).data().value<FilePath>().fileName, QString("/dev/null"));
        QCOMPARE(ingredients->views().count(), 1);
    }

    void session()
    {
        const QString sample = folder->filePath("sample");
        QVERIFY(makeSample(sample));
        const QString dataFile = sample + "/platform/veldmark-d1.xml";
        const QStringList entries = listOf(
            "Host FW Boot = " + sample + "/firmware/host/HostFW_1.4.2.bin",
            "Flash-Layer = " + sample + "/firmware/host/HostFWSupp_1.4.2.bin",
            "Probe Block = " + sample + "/firmware/probe/D1_ProbeSet.bin",
            "Vendor Signed FW = " + sample + "/presigned/Controller_Signed.bin",
            "SIGNED_CODEC_FW = " + sample + "/presigned/codec/Signed_D1_CDX_PACK.bin",
            "Secure_Annex_FW = " + sample + "/presigned/secure/Signed_annex_07.bin",
            "Secure_Lookaside_Blob = " + sample + "/presigned/secure/Signed_lookaside_07.bin",
            "Secure_Anchor_Blob = " + sample + "/presigned/secure/Signed_anchor_07.bin");
        const QString found = "S  - Ingredient found: ";

        // The walk finds the files in the order of the file system.
        QVERIFY(ingredients->fillFromDirectory(sample));
        const QStringList messages = log->take();
        QStringList mapped = messages.mid(0, 9);
        mapped.sort();
        QStringList expected = QStringList(entries) << "XML Data File = " + dataFile;
        expected.replaceInStrings(QRegExp("^"), found).sort();
        QCOMPARE(mapped, expected);
        QCOMPARE(QStringList(messages.mid(9)),
                 loadReport(dataFile, 1)
                     + listOf("S XML file changed and data was loaded into memory.",
                              "S All ingredients found have been updated!"));
        QVERIFY(ingredients->loadData(dataFile));
        QCOMPARE(log->take(), loadReport(dataFile, 2));

        const QString image = setFile(valueCell(0, 0), folder->filePath("image.bin"));
        const QString saved = folder->filePath("saved");
        QVERIFY(execution->verify());
        QVERIFY(ingredients->saveConfig(saved));
        QVERIFY(ingredients->loadConfig(saved));
        QVERIFY(ingredients->loadFile(sample + "/firmware/host/HostFW_1.4.2.bin"));
        QCOMPARE(log->take(),
                 listOf("S Config file loaded!", found + entries.first(),
                        "S File successfully mapped to ingredient"));
        QCOMPARE(configurationIn(saved),
                 listOf("'This file was generated by the Veldmark Unsigned Zorv plugin for Tamblin "
                        "Workbench",
                        "'Date: today", "'Time: now", "", "'----- Output Settings -----",
                        "PlatformType = VKMD1", "ImageType = FWUSB", "ImageName = " + image, "",
                        "'----- Unsigned Ingredients -----")
                     << entries.mid(0, 3) << ""
                     << "'----- Presigned Ingredients -----" << entries.mid(3) << "");
    }

    void checks()
    {
        QAbstractItemModel *table = execution->checks();
        // A host reads the summary whenever the table is new.
        QList<int> checkCounts;
        const SignalHook reset(table, SIGNAL(modelReset()),
                               [&] { checkCounts << execution->summary().checks; });
        QSignalSpy announced(table, SIGNAL(modelAboutToBeReset()));
        QCOMPARE(columnOf(table, 0), listOf("false"));
        QCOMPARE(execution->summary().checks, 0);
        const QString sized = writeFile(folder->filePath("sized"), QByteArray(32768, ' '));
        setFile(valueCell(0, 0), sized);
        setFile(valueCell(2, 1), sized);
        setFile(valueCell(2, 2), sized);
        QVERIFY(!execution->verify());
        QCOMPARE(table->rowCount(), 14);
        QCOMPARE(execution->summary().passed, 4);
        QCOMPARE(execution->summary().failed, 10);
        QCOMPARE(titlesOf(table, Qt::Horizontal), listOf("", "Ingredient", "Details"));
        QCOMPARE(titlesOf(table, Qt::Vertical), QStringList());
        QCOMPARE(table->flags(table->index(0, 0)), readOnly);
        QVERIFY(!table->index(0, 0).data(Qt::DecorationRole).isValid());
        QCOMPARE(QStringList(columnOf(table, 1).mid(0, 4)),
                 listOf("Output file name", "Legacy XML Data File", "Probe Set", "Probe Set"));
        QCOMPARE(QStringList(columnOf(table, 0).mid(4, 5)),
                 listOf("true", "false", "true", "true", "false"));
        QCOMPARE(table->index(5, 2).data().toString(), QString("File size is incorrect"));

        // A file that is not shown is not checked, and no check at all is no failure.
        for (int group = 0; group < model->rowCount(); ++group) {
            for (int row = 0; row < model->rowCount(model->index(group, 0)); ++row) {
                model->setData(valueCell(group, row), false, Qt::UserRole);
            }
        }
        QVERIFY(execution->verify());
        QCOMPARE(checkCounts, QList<int>() << 14 << 0);
        QCOMPARE(announced.count(), checkCounts.count());
        QCOMPARE(execution->summary().passed, 0);
        QCOMPARE(table->rowCount(), 0);
    }

    void stitcherRun()
    {
        const QString config = QDir::tempPath() + "/config.txt";
        QSignalSpy finished(dynamic_cast<QObject *>(execution), SIGNAL(executionFinished()));
        setFile(valueCell(2, 0), "probe");
        execution->setWorkingDirectory("/");
        QCOMPARE(execution->workingDirectory(), QString("/"));
        setFile(valueCell(1, 0), "data %1");
        log->take();
        beginWithPath(folder->path());
        QCOMPARE(execution->workingDirectory(), QDir::tempPath());
        QVERIFY(QTest::qWaitFor(
            [&] { return !log->take().filter("E The process failed to start.").isEmpty(); }));

        writeStitcher(folder->path(), "printf '%s\\n' \"$PWD\" \"$@\"; echo done >&2");
        beginWithPath(folder->path());
        execution->cancel();
        const QStringList arguments = listOf("-k", "data %1", "-c", config, "-A");
        QCOMPARE(log->take(),
                 listOf("S Platform XML file returned from getIngredient is data %1",
                        "S Saved Config file to " + config, "S Running command line stitcher next.",
                        "S Command Line: " + QDir::currentPath() + "/tamblin-stitcher "
                            + arguments.join(" "),
                        "S Inside ExternalUnsignedZorvExecutionManager::cancelExecution()"));
        QStringList output;
        QVERIFY(QTest::qWaitFor([&] { return (output += log->take()).count() == 2; }));
        output.sort(); // Standard output and standard error arrive in any order.
        QCOMPARE(output,
                 listOf("E done\n", "S " + QDir::tempPath() + "\n" + arguments.join("\n") + "\n"));
        QVERIFY(configurationIn(config).contains("Probe Block = probe"));
        QVERIFY(configurationIn(config).contains("'Flash-Layer = ?"));
        QCOMPARE(finished.count(), 0);
    }

    void dataView()
    {
        ingredients->loadData(missing);
        IDataView *view = ingredients->views().first();
        QCOMPARE(view->exported(), QVector<unsigned char>());
        QCOMPARE(view->displayName(), QString("GPIO Settings"));
        QVERIFY(view->parameters().isEmpty());
        QCOMPARE(view->targetName(), QString("GPIO"));
        QVERIFY(!view->load(QVector<unsigned char>(2, 1)));

        QAbstractItemModel *table = view->model();
        QCOMPARE(titlesOf(table, Qt::Horizontal),
                 listOf("No Connect\nIndication", "Open Drain\nEnable", "Direction",
                        "Stand-by Level", "Wake Mask or\nHold Output State", "Pull Direction",
                        "Pull Strength"));
        QCOMPARE(titlesOf(table, Qt::Vertical), listOf("i2s_2_clk", "i2s_2_fs"));
        QVERIFY(!table->headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
        QCOMPARE(table->columnCount(), 7);
        for (int pin = 0; pin < 2; ++pin) {
            for (int column = 0; column < table->columnCount(); ++column) {
                const QModelIndex cell = table->index(pin, column);
                QCOMPARE(cell.data().typeName(), "GpioBitToggle");
                const GpioBitToggle bit = cell.data().value<GpioBitToggle>();
                QCOMPARE(int(bit.bitPosition), 7 - column);
                QCOMPARE(int(bit.value), pin);
                QVERIFY(bit.enabled);
                QCOMPARE(table->flags(cell), editable);
                QVERIFY(!cell.data(Qt::EditRole).isValid());
            }
        }
    }

    void relays()
    {
        const QString cancelled
            = "S Inside ExternalUnsignedZorvExecutionManager::cancelExecution()";
        StatusManager another;
        MessageLog anotherLog(&another);
        root->registerRelay(&another);
        execution->cancel();
        QCOMPARE(anotherLog.take(), listOf(greeting, cancelled));
        QCOMPARE(log->take(), QStringList());
        root->registerRelay(nullptr);
        ingredients->loadData(missing);
        QCOMPARE(anotherLog.take(), QStringList());

        // A host may delete its relay without unregistering it.
        root->registerRelay(relay.data());
        relay.reset();
        execution->cancel();
        ingredients->loadFile(missing);
        ingredients->loadData(missing);
    }

    void deletion()
    {
        QCOMPARE(loader.instance(), rootObject.data());
        ingredients->loadData(missing);
        QStringList destroyed;
        const SignalHook first(dynamic_cast<QObject *>(ingredients), SIGNAL(destroyed()),
                               [&] { destroyed << "ingredients"; });
        const SignalHook second(dynamic_cast<QObject *>(execution), SIGNAL(destroyed()),
                                [&] { destroyed << "execution"; });
        const SignalHook third(root->details(), SIGNAL(destroyed()), [&] { destroyed << "page"; });
        delete rootObject;
        QCOMPARE(destroyed, listOf("ingredients", "execution", "page"));

        rootObject = loader.instance();
        root = dynamic_cast<ILoomwrightPlugin *>(rootObject.data());
        QVERIFY(root && !root->ingredients()->isDataLoaded());
    }

private:
    QModelIndex valueCell(int group, int ingredient) const
    {
        return model->index(ingredient, 1, model->index(group, 0));
    }
    /// Writes a path into a file cell, as an editor of a host does.
    QString setFile(const QModelIndex &cell, const QString &path)
    {
        FilePath file = cell.data().value<FilePath>();
        file.fileName = path;
        model->setData(cell, QVariant::fromValue(file));
        return path;
    }
    /// Begins the execution with a stitcher that is looked for in @p directory alone.
    void beginWithPath(const QString &directory)
    {
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(directory));
        execution->begin();
        qputenv("PATH", path);
    }
    /// The lines of a configuration file, without its date and time.
    static QStringList configurationIn(const QString &file)
    {
        QString text = QString::fromUtf8(readFile(file));
        text.replace(QRegExp("'Date: \\S+ \\S+ \\d+ \\d\\d\\d\\d\n"), "'Date: today\n");
        text.replace(QRegExp("'Time: \\d\\d:\\d\\d:\\d\\d\n"), "'Time: now\n");
        return text.split('\n');
    }

    QScopedPointer<QTemporaryDir> folder;
    QString missing; ///< A path that nothing can be read from or written to.
    QPluginLoader loader;
    QScopedPointer<StatusManager> relay;
    QScopedPointer<MessageLog> log;
    QPointer<QObject> rootObject;
    ILoomwrightPlugin *root = nullptr;
    IIngredientManager *ingredients = nullptr;
    IExecutionManager *execution = nullptr;
    QAbstractItemModel *model = nullptr;
};

/// A host that shows the details page as a window and deletes the root object after its
/// application.
static int runLateHost(int argc, char **argv)
{
    QObject *root = nullptr;
    {
        const QApplication application(argc, argv);
        root = QPluginLoader(PLUGIN_LIBRARY).instance();
        dynamic_cast<ILoomwrightPlugin *>(root)->details()->show();
        QCoreApplication::processEvents();
    }
    delete root;
    return 0;
}

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], lateHost) == 0) {
        return runLateHost(argc, argv);
    }
    const QApplication application(argc, argv);
    TestEndToEnd test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_endtoend.moc"
