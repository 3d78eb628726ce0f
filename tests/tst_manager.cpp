// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "manager/simpleingredientmapper.h"
#include "messagelog.h"
#include "model/ingredientnames.h"
#include "qtcompat.h"
#include "row.h"

#include <sys/fsuid.h>

namespace {

using Config = QHash<QString, QString>;

Config configOf(const QString &key, const QString &value)
{
    Config config;
    config.insert(key, value);
    return config;
}

QStringList sectionReport(const QString &title, const QStringList &errors, int nodes)
{
    return QStringList()
        << "S \nVerify header \"" + title + '"' << "S Checking the following rules: "
        << "S  - Each offset equals the sum of all previous node sizes"
        << "S  - Each stated size matches the actual data size" << errors
        << QString("S Analyzed %1 nodes and found %2 errors").arg(nodes).arg(errors.count());
}

QByteArray legacyXml(const QByteArray &headers)
{
    return "<p PLENKITVersion='0.1.0'>" + headers + "</p>";
}

QByteArray node(const QByteArray &name, const QByteArray &offset, const QByteArray &size,
                const QByteArray &data)
{
    return "<n name='" + name + "' offset='" + offset + "' byte_cnt='" + size + "'><data>" + data
        + "</data></n>";
}

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

} // namespace

/// Deletes a file as soon as the manager reports something.
class FileRemover : public QObject
{
    Q_OBJECT

public:
    FileRemover(QObject *manager, const QString &path)
        : file(path)
    {
        connect(manager, SIGNAL(statusMessage(QString)), SLOT(remove()));
    }

public slots:
    void remove()
    {
        QFile::remove(file);
    }

private:
    QString file;
};

/// Calls the manager from within its own signals, some times.
class ReentrantHost : public QObject
{
    Q_OBJECT

public:
    ReentrantHost(ExternalUnsignedZorvIngredientManager *ingredientManager, const QString &path)
        : manager(ingredientManager)
        , dataFile(path)
    {
        connect(manager, SIGNAL(dataFileLoaded()), SLOT(call()));
        connect(manager, SIGNAL(errorMessage(QString)), SLOT(call()));
    }

public slots:
    void call()
    {
        if (rounds-- > 0) {
            manager->loadDataFromXmlFile(dataFile);
            manager->validateXmlFile(dataFile);
            manager->loadConfigFromFile("/nope");
        }
    }

private:
    ExternalUnsignedZorvIngredientManager *manager;
    QString dataFile;
    int rounds = 3;
};

class TestManager : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.reset(new QTemporaryDir);
        manager.reset(new ExternalUnsignedZorvIngredientManager);
        log.reset(new MessageLog(manager.data()));
    }

    void shippedIngredients_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("exactSize");
        QTest::addColumn<bool>("isInput");
        QTest::addColumn<QString>("broadcastName");
        const QString binaries = "Binary Files";
        row("Output file name", 0, "Ingredient Options", "ImageName", 0, false, "");
        row("Legacy XML Data File", 1, "Data Files", "XML Data File", 0, true, "xmlFileName");
        row("Probe Set", 2, binaries, "Probe Block", 31120, true, "");
        row("Host FW", 3, binaries, "Host FW Boot", 102400, true, "");
        row("Host FW Supplemental", 4, binaries, "Flash-Layer", 32768, true, "");
        row("Presigned Controller FW", 5, binaries, "Vendor Signed FW", 95232, true, "");
        row("Presigned Secure Annex", 6, binaries, "Secure_Annex_FW", 0, true, "");
        row("Presigned Secure Lookaside", 7, binaries, "Secure_Lookaside_Blob", 0, true, "");
        row("Presigned Secure Anchor", 8, binaries, "Secure_Anchor_Blob", 0, true, "");
        row("Presigned Codec FW", 9, binaries, "SIGNED_CODEC_FW", 0, true, "");
    }
    void shippedIngredients()
    {
        QFETCH(int, position);
        const QModelIndexList cells = manager->getIngredients()->ingredientCells();
        QCOMPARE(cells.count(), 10);
        const QModelIndex cell = cells.at(position);
        QCOMPARE(cell.data().toString(), QString(QTest::currentDataTag()));
        QTEST(cell.parent().data().toString(), "group");
        QTEST(cell.sibling(cell.row(), IngredientColumn::Key).data().toString(), "key");
        const FilePath file
            = cell.sibling(cell.row(), IngredientColumn::Value).data().value<FilePath>();
        QTEST(file.exactSize, "exactSize");
        QTEST(file.isInput, "isInput");
        QTEST(file.broadcastName, "broadcastName");
        QVERIFY(file.isRequired);
    }

    void stateAfterConstruction()
    {
        QVERIFY(manager->ingredientColumnIsVisible(IngredientColumn::Value));
        QVERIFY(!manager->ingredientColumnIsVisible(IngredientColumn::Key));
        QVERIFY(!manager->ingredientColumnIsVisible(IngredientColumn::Count));
        QVERIFY(value(outputFileIngredient).endsWith("/unsigned-zorv.bin"));
        QVERIFY(!manager->dataLoaded());
        QVERIFY(!manager->saveDataToXmlFile(path("x")));
        QVERIFY(!QFile::exists(path("x")));
    }

    void savedConfig_data()
    {
        QTest::addColumn<QString>("imageName");
        row("image named", "/i.bin");
        row("image name empty", "");
    }
    void savedConfig()
    {
        QFETCH(QString, imageName);
        Config config = configOf("ImageName", imageName);
        config.insert("Flash-Layer", "/f=1.bin");
        config.insert("unknown", "x");
        QVERIFY(manager->updateModelFromConfig(config));
        QVERIFY(manager->saveConfigToFile(path("c")));
        QString text = readFile(path("c"));
        QRegExp date("'Date: \\S{3} \\S{3} \\d{1,2} \\d{4}\n'Time: \\d\\d:\\d\\d:\\d\\d\n");
        QVERIFY(text.contains(date));
        text.remove(date);
        QCOMPARE(
            text,
            QString("'This file was generated by the Veldmark Unsigned Zorv plugin for Tamblin "
                    "Workbench\n"
                    "\n'----- Output Settings -----\n"
                    "PlatformType = VKMD1\nImageType = FWUSB\nImageName = %1\n"
                    "\n'----- Unsigned Ingredients -----\n"
                    "'Host FW Boot = ?\nFlash-Layer = /f=1.bin\n'Probe Block = ?\n"
                    "\n'----- Presigned Ingredients -----\n"
                    "'Vendor Signed FW = ?\n'SIGNED_CODEC_FW = ?\n'Secure_Annex_FW = ?\n"
                    "'Secure_Lookaside_Blob = ?\n'Secure_Anchor_Blob = ?\n")
                .arg(imageName));
        QCOMPARE(log->take(), QStringList());
    }

    void configWithoutImageName()
    {
        QVERIFY(manager->writeConfigToFile(path("c"), Config()));
        QVERIFY(readFile(path("c")).contains(
            "ImageType = FWUSB\n\n'Image name not specified, using default\n"
            "ImageName = unsigned-zorv.bin\nImageName = unsigned-mip.bin\n\n'-"));
    }

    void unwritableConfig_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("message");
        row("no directory", "/nope/c", "E Failed to open /nope/c for writing");
        row("a directory", "/", "E Failed to open / for writing");
        row("FIFO with no reader", "", "E Failed to open %1 for writing");
        row("disk full", "/dev/full", "E Failed to write /dev/full");
    }
    void unwritableConfig()
    {
        QFETCH(QString, file);
        QFETCH(QString, message);
        if (file.isEmpty()) {
            file = path("fifo");
            QCOMPARE(mkfifo(qPrintable(file), 0600), 0);
            message = message.arg(file);
        }
        QVERIFY(!manager->saveConfigToFile(file));
        QCOMPARE(log->take(), QStringList(message));
    }

    void loadConfig_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("hostFirmware");
        QTest::addColumn<QStringList>("messages");
        const QStringList loaded("S Config file loaded!");
        const QStringList nothing("E Nothing to update from config file");
        const QString malformed = "E Malformed config entry found: ";
        const QString duplicate = "E Config file contains duplicate key value: ";
        row("entry", QByteArray("Host FW Boot = /h"), "/h", loaded);
        row("no spaces", QByteArray("Host FW Boot=/h"), "/h", loaded);
        row("padded", QByteArray("  Host FW Boot \t=  /h  \n\n"), "/h", loaded);
        row("cleared", QByteArray("Host FW Boot ="), "", loaded);
        row("comment", QByteArray("'Host FW Boot = ?\n"), "/old", nothing);
        row("indented comment", QByteArray(" \t'words\n"), "/old", nothing);
        row("unknown keys",
            QByteArray("PlatformType = VKMD1\nImageType = FWUSB\nhost fw boot = x\n"), "/old",
            nothing);
        row("two equals signs", QByteArray("Host FW Boot = /a=%1\nFlash-Layer = /f"), "/old",
            QStringList(malformed + "Host FW Boot = /a=%1") + loaded);
        row("no equals sign", QByteArray("words\n \nHost FW Boot = /h"), "/h",
            (QStringList() << malformed + "words" << malformed) + loaded);
        row("carriage returns", QByteArray("Host FW Boot = /h\r\n\r\n"), "/h",
            QStringList(malformed) + loaded);
        row("key twice", QByteArray("Host FW Boot = /h\nHost FW Boot = /i\n"), "/h",
            QStringList(duplicate + "Host FW Boot = /i") + loaded);
        row("unknown key twice", QByteArray("x = 1\nx = 2\nHost FW Boot = /h\n"), "/h",
            QStringList(duplicate + "x = 2") + loaded);
        row("empty file", QByteArray(), "/old", nothing);
        row("UTF-16", QTextCodec::codecForName("UTF-16")->fromUnicode(QString("Host FW Boot=/h")),
            "/h", loaded);
        row("not UTF-8", QByteArray("\xff\xc0=\xfe\nHost FW Boot=/h"), "/h", loaded);
        row("NUL bytes", QByteArray("a\0b\nHost FW Boot = /h", 21), "/h",
            QStringList(malformed + QString::fromLatin1("a\0b", 3)) + loaded);
    }
    void loadConfig()
    {
        QFETCH(QByteArray, text);
        manager->updateModelFromConfig(configOf("Host FW Boot", "/old"));
        const bool loaded = manager->loadConfigFromFile(writeFile(path("c"), text));
        const QStringList messages = log->take();
        QTEST(messages, "messages");
        QCOMPARE(loaded, messages.last() == "S Config file loaded!");
        QTEST(value("Host FW"), "hostFirmware");
    }

    void unreadableFiles_data()
    {
        QTest::addColumn<QString>("file");
        row("missing", "missing");
        row("directory", ".");
        row("FIFO with no writer", "fifo");
        row("symlink loop", "loop");
        row("very long name", QString(5000, 'x'));
        row("without permission", "locked");
    }
    void unreadableFiles()
    {
        QFETCH(QString, file);
        QCOMPARE(mkfifo(qPrintable(path("fifo")), 0600), 0);
        QFile::link(path("loop"), path("loop"));
        QFile::setPermissions(writeFile(path("locked"), "a=b"), QFile::Permissions());
        const int user = setfsuid(65534); // Root may read any file.
        const bool loaded = manager->loadConfigFromFile(path(file));
        const bool valid = manager->validateXmlFile(path(file));
        setfsuid(uid_t(user));
        QVERIFY(!loaded);
        QVERIFY(!valid);
        QCOMPARE(log->take(),
                 QStringList() << "E Failed to open " + path(file) + " for reading"
                               << "S Validating Legacy XML Data File " + path(file)
                               << "E ERROR: Failed to open Legacy XML Data file!");
    }

    void fileThatVanishes()
    {
        const QString file = writeFile(path("x"), "<p PLENKITVersion='0.1'/>");
        const FileRemover remover(manager.data(), file);
        QVERIFY(!manager->validateXmlFile(file));
        QCOMPARE(log->take(1), QStringList("E ERROR: Failed to open Legacy XML Data file!"));
    }

    void version_data()
    {
        QTest::addColumn<bool>("valid");
        for (const char *good : {"0.1", "0.1.0", "0.10", "0x1", "0.1%1"}) {
            row(good, true);
        }
        for (const char *bad : {"0.2.0", "1.0", " 0.1", "", "0.%1"}) {
            row(bad, false);
        }
    }
    void version()
    {
        QFETCH(bool, valid);
        const QString text = QTest::currentDataTag();
        const QString xml = "<p PLENKITVersion='" + text + "'/>";
        QCOMPARE(manager->validateXmlFile(writeFile(path("x"), xml.toUtf8())), valid);
        const QStringList accepted("S \nLegacy XML PLENKITVersion is " + text);
        const QStringList refused = QStringList()
            << "E \nLegacy XML PLENKITVersion is " + text
                + " but version 0.1.0 or greater is required."
            << "S \nPlease use a legacy XML with PLENKITVersion 0.1.0 or greater.";
        const QStringList sections = QStringList() << "S Found the following Header Sections:"
                                                   << "S \nVerifying integrity of header sections";
        QCOMPARE(log->take(1), (valid ? accepted : refused) + sections);
    }

    void nodes_data()
    {
        QTest::addColumn<QByteArray>("nodes");
        QTest::addColumn<int>("nodeCount");
        QTest::addColumn<QStringList>("errors");
        const QByteArray four(8, '0');
        const QStringList none;
        row("valid",
            node("a", "0", "4", four) + node("b", "4", "16", QByteArray(32, '0'))
                + node("c", "14", "8", QByteArray(16, '0')),
            3, none);
        row("comment counts", "<!-- c -->" + node("a", "0", "4", four), 2, none);
        row("undeclared entity in an attribute",
            QByteArray("<n name='a&nbsp;' offset='0' byte_cnt='0'/>"), 1, none);
        row("first data element", node("a", "0", "4", four + "</data><data>0"), 1, none);
        row("size", node("a", "0", "4", "0000000") + node("b", "4", "4", four), 2,
            QStringList("E ERROR: Size mismatch! Stated Size: 4 Bytes  Actual "
                        "Size: 3.5  Stated Offset: 0  Name: a"));
        row("both", node("a", "0", "4", four) + node("b%1", "10", "2", "00\n00"), 2,
            QStringList() << "E ERROR: Offset mismatch! Stated Offset: 10  Actual "
                             "offset: 4   Name: b%1  "
                          << "E ERROR: Size mismatch! Stated Size: 2 Bytes  Actual "
                             "Size: 2.5  Stated Offset: 10  Name: b%1");
        row("data is not trimmed", node("a", "0", "4", "\n" + four + " "), 1,
            QStringList("E ERROR: Size mismatch! Stated Size: 4 Bytes  Actual "
                        "Size: 5  Stated Offset: 0  Name: a"));
        row("signature", QByteArray("<n name='Signature x' offset='0' byte_cnt='4'/>"), 1, none);
        row("signature in another case",
            QByteArray("<n name='signature' offset='0' byte_cnt='4'/>"), 1,
            QStringList("E ERROR: Size mismatch! Stated Size: 4 Bytes  Actual "
                        "Size: 0  Stated Offset: 0  Name: signature"));
        const QStringList malformed("E ERROR: Malformed node!  ");
        row("malformed ends the section",
            node("a", "0", "4", four) + node("b", "4", "0x4", four) + "<n/>", 2, malformed);
        QByteArray attributes;
        for (int i = 0; i < 100000; ++i) {
            attributes += " a" + QByteArray::number(i) + "=''";
        }
        row("a hundred thousand attributes", "<n" + attributes + "/>", 1, malformed);
        row("size past int", node("a", "0", "2147483648", ""), 1, malformed);
        row("sizes past int in sum",
            node("a", "0", "2147483647", "") + node("b", "7fffffff", "2147483647", "")
                + node("c", "0", "0", ""),
            3,
            QStringList() << "E ERROR: Size mismatch! Stated Size: 2147483647 Bytes  Actual Size: "
                             "0  Stated Offset: 0  Name: a"
                          << "E ERROR: Size mismatch! Stated Size: 2147483647 Bytes  Actual Size: "
                             "0  Stated Offset: 7fffffff  Name: b"
                          << "E ERROR: Offset mismatch! Stated Offset: 0  Actual offset: "
                             "fffffffe   Name: c  ");
    }
    void nodes()
    {
        QFETCH(QByteArray, nodes);
        QFETCH(int, nodeCount);
        QFETCH(QStringList, errors);
        const QByteArray xml = legacyXml("<header_2 title='T%1'>" + nodes + "</header_2><Header/>");
        QCOMPARE(manager->validateXmlFile(writeFile(path("x"), xml)), errors.isEmpty());
        QCOMPARE(log->take(2),
                 (QStringList() << "S Found the following Header Sections:"
                                << "S  - T%1"
                                << "S \nVerifying integrity of header sections")
                     + sectionReport("T%1", errors, nodeCount));
    }

    void encodings_data()
    {
        QTest::addColumn<QString>("declaration");
        row("UTF-8", "");
        row("UTF-16", "");
        row("UTF-16LE", " encoding='UTF-16LE'");
        row("ISO-8859-1", " encoding='ISO-8859-1'");
    }
    void encodings()
    {
        QFETCH(QString, declaration);
        const QString title = QString::fromLatin1("\334bung");
        const QString text = "<?xml version='1.0'" + declaration
            + "?><p PLENKITVersion='0.1.0'><header title='" + title + "'/></p>";
        const QTextCodec *codec = QTextCodec::codecForName(QTest::currentDataTag());
        QVERIFY(manager->validateXmlFile(writeFile(path("x"), codec->fromUnicode(text))));
        QVERIFY(log->take().contains("S  - " + title));
    }

    void limitsOfXml_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<bool>("valid");
        const QByteArray start = "<!DOCTYPE p [<!ENTITY a '";
        const QByteArray body = "'>]><p PLENKITVersion='0.1'>";
        row("empty", QByteArray(), false);
        row("truncated", QByteArray("<p PLENKITVersion='0.1'><header>"), false);
        row("not XML", QByteArray("\0\xff\xfe<p/>", 8), false);
        row("deepest", legacyXml(nested(999)), true);
        row("too deep", legacyXml(nested(1000)), false);
        row("much too deep", nested(50000), false);
        row("much too deep, truncated", QByteArray("<a>").repeated(200000), false);
        row("longest entity", start + QByteArray(4096, 'x') + body + "&a;</p>", true);
        row("entity too long", start + QByteArray(4097, 'x') + body + "&a;</p>", false);
        row("entities expand too far",
            start + QByteArray(4000, 'x') + body + QByteArray("&a;").repeated(1000) + "</p>",
            false);
        row("entity declared after its use", start + "&b;'><!ENTITY b 'x" + body + "&a;</p>",
            false);
        QByteArray bomb = "<!DOCTYPE p [<!ENTITY a0 'aaaaaaaaaa'>";
        for (int i = 1; i < 20; ++i) {
            const QByteArray earlier = "&a" + QByteArray::number(i - 1) + ";";
            bomb += "<!ENTITY a" + QByteArray::number(i) + " '" + earlier.repeated(10) + "'>";
        }
        row("entity bomb", bomb + "]><p>&a19;</p>", false);
    }
    void limitsOfXml()
    {
        QFETCH(QByteArray, xml);
        QFETCH(bool, valid);
        QCOMPARE(manager->validateXmlFile(writeFile(path("x"), xml)), valid);
        const QStringList errors = log->take().filter("XML Document content could not be set!");
        QCOMPARE(errors.isEmpty(), valid);
    }

    void sectionsAccumulate()
    {
        const QString good = writeFile(
            path("good"),
            legacyXml("<header title='good'>" + node("a", "0", "1", "00") + "</header>"));
        const QString bad = writeFile(path("bad"), legacyXml("<header title='bad'><n/></header>"));
        QVERIFY(manager->validateXmlFile(good));
        QVERIFY(manager->validateXmlFile(good));
        QCOMPARE(log->take().filter("Verify header").count(), 3);
        QVERIFY(!manager->validateXmlFile(bad));
        QVERIFY(!manager->validateXmlFile(good)); // Compat: a section that failed once stays.
        QCOMPARE(log->take().filter("Verify header").count(), 3 + 4);
    }

    void missingVersionIsNotReported()
    {
        QVERIFY(!manager->validateXmlFile(writeFile(path("x"), "<p/>")));
        QCOMPARE(log->take().filter("PLENKITVersion"), QStringList());
    }

    void loadingTheDataFile()
    {
        const QString file = writeFile(path("x"), "<p PLENKITVersion='0.1'/>");
        const QStringList validated = QStringList()
            << "S Validating Legacy XML Data File " + file << "S \nLegacy XML PLENKITVersion is 0.1"
            << "S Found the following Header Sections:"
            << "S \nVerifying integrity of header sections"
            << "S Legacy XML Data file passed validation checks ";
        const QString changed = "S XML file changed and data was loaded into memory.";
        QVERIFY(manager->getSupportedViews().isEmpty());
        QVERIFY(manager->loadDataFromXmlFile(file));
        QCOMPARE(log->take(), validated + validated + (QStringList() << "D" << changed << "D"));
        QCOMPARE(value(legacyDataFileIngredient), file);
        QCOMPARE(manager->getSupportedViews().count(), 1);

        manager->getIngredients()->setIngredient(legacyDataFileIngredient, "Value", file);
        QCOMPARE(log->take(), validated + (QStringList() << "D" << changed));
        QCOMPARE(manager->getSupportedViews().count(), 1);

        manager->getIngredients()->setIngredient("Host FW", "Value", file);
        QCOMPARE(log->take(), QStringList());
    }

    void loadingAnotherDataFile()
    {
        manager->loadDataFromXmlFile(writeFile(path("x"), "<p PLENKITVersion='0.1'/>"));
        QVERIFY(manager->loadDataFromXmlFile("/nope"));
        QCOMPARE(value(legacyDataFileIngredient), QString("/nope"));
        QVERIFY(manager->dataLoaded());
        QVERIFY(log->take().contains("E Legacy XML Data file failed validation checks"));

        QVERIFY(manager->updateModelFromConfig(configOf("XML Data File", "/other")));
        QCOMPARE(log->take(1),
                 QStringList() << "E ERROR: Failed to open Legacy XML Data file!"
                               << "E Legacy XML Data file failed validation checks"
                               << "D"
                               << "S XML file changed and data was loaded into memory.");
    }

    void broadcasts_data()
    {
        QTest::addColumn<QString>("broadcastName");
        QTest::addColumn<bool>("broadcastChanges");
        QTest::addColumn<bool>("loads");
        row("the name", "xmlFileName", true, true);
        row("part of the name", "the xmlFileName too", true, true);
        row("another case", "XMLFileName", true, false);
        row("switched off", "xmlFileName", false, false);
    }
    void broadcasts()
    {
        FilePath file;
        QFETCH(QString, broadcastName);
        QFETCH(bool, broadcastChanges);
        file.broadcastName = broadcastName;
        file.broadcastChanges = broadcastChanges;
        IngredientModel *model = manager->getIngredients();
        const QModelIndex cell = model->index(0, IngredientColumn::Value, model->index(0, 0));
        QVERIFY(model->setData(cell, QVariant::fromValue(file)));
        QTEST(manager->dataLoaded(), "loads");
    }

    void callsFromWithinTheSignals()
    {
        const ReentrantHost host(manager.data(),
                                 writeFile(path("x"), legacyXml("<header title='h'/>")));
        QVERIFY(manager->loadDataFromXmlFile("/nope"));
        QCOMPARE(manager->getSupportedViews().count(), 1);
    }

    void mapping_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("keys");
        row("any case", "/nope/%1/HOSTFW_A.BIN", QStringList("Host FW Boot"));
        row("supplemental", "/nope/HostFWSupp_1.bin", QStringList("Flash-Layer"));
        row("dot for any", "/nope/Controller_SignedXbin", QStringList("Vendor Signed FW"));
        row("two rules", "/nope/Signed_annex_CDX_PACK.bin",
            QStringList() << "SIGNED_CODEC_FW"
                          << "Secure_Annex_FW");
        row("lookaside", "/nope/Signed_lookaside.bin", QStringList("Secure_Lookaside_Blob"));
        row("anchor", "/nope/Signed_anchor_1.bin", QStringList("Secure_Anchor_Blob"));
        row("probe anywhere", "/nope/xProbey.bin", QStringList("Probe Block"));
        row("xml", "/nope/data.xml", QStringList("XML Data File"));
        row("relative path stays relative", "a/../data.xml", QStringList("XML Data File"));
        row("not at the end", "/nope/notes.xml.bak", QStringList());
        row("directory name is ignored", "/nope/HostFW_.bin/readme", QStringList());
    }
    void mapping()
    {
        QFETCH(QString, file);
        QFETCH(QStringList, keys);
        QCOMPARE(manager->loadIngredientFile(file), !keys.isEmpty());
        QStringList expected;
        for (const QString &key : keys) {
            expected << "S  - Ingredient found: " + key + " = " + file;
        }
        const QStringList messages = log->take();
        QCOMPARE(QStringList(messages.mid(0, keys.count())), expected);
        QCOMPARE(messages.last(),
                 keys.isEmpty() ? "E " + file + " did not map to any ingredients!"
                                : QString("S File successfully mapped to ingredient"));
    }

    void directories()
    {
        QVERIFY(!manager->generateConfigFromDirectory(path("nope")));
        QCOMPARE(log->take(), QStringList("E No ingredients were found"));

        QDir(folder->path()).mkpath("a/b");
        writeFile(path("a/b/HostFW_1.bin"), "");
        writeFile(path("a/HostFW_2.bin"), "");
        writeFile(path("a/.hiddenProbe.bin"), "");
        QFile::link(path("a/HostFW_2.bin"), path("a/HostFWSupp_link.bin"));
        QFile::link(folder->path(), path("a/loop"));
        const CurrentDirectory inside(folder->path());
        QVERIFY(manager->generateConfigFromDirectory("a"));
        const QStringList messages = log->take();
        QCOMPARE(messages.count(), 3);
        QVERIFY(value("Host FW").startsWith("a/"));
        QCOMPARE(messages.at(0), "S  - Ingredient found: Host FW Boot = " + value("Host FW"));
        QVERIFY(messages.at(1).startsWith("E  - Duplicate Ingredient found! Host FW Boot = a/"));
        QVERIFY(!messages.at(1).endsWith(value("Host FW")));
        QCOMPARE(messages.at(2), QString("S All ingredients found have been updated!"));
    }

    void mapDocuments_data()
    {
        QTest::addColumn<QString>("xml");
        QTest::addColumn<bool>("isMapped");
        const QString rule = "<mapIngredient keyName='k' fileNameRegex='%1'/>";
        row("the last rule wins", "<m>" + rule.arg("b") + rule.arg("A") + "</m>", true);
        row("the first does not", "<m>" + rule.arg("a") + rule.arg("b") + "</m>", false);
        row("no key", "<m><mapIngredient fileNameRegex='a'/></m>", false);
        row("not XML", "a", false);
    }
    void mapDocuments()
    {
        QFETCH(QString, xml);
        SimpleIngredientMapper mapper(xml);
        QTEST(mapper.mapIngredient("/x/a").contains("k"), "isMapped");
    }

    void patterns_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<bool>("matches");
        row("whole name", "abc", "abc", true);
        row("not the start", "abc", "xabc", false);
        row("not the end", "abc", "abcx", false);
        row("not a part", "[ab]", "xax", false);
        row("invalid", "(abc", "abc", false);
        row("first of two", "abc|xyz", "abc", true);
        row("second of two", "^abc|xyz$", "xyz", true);
        row("optional last letter", "abc?.bin", "ab.bin", true);
        row("repeated last letter", "abc*", "abcc", true);
        row("counted last letter", "abc{0,1}", "ab", true);
        row("quantifier after the start", "^*a", "a", true);
        row("class at the end", "a\\d", "a5", true);
        row("escape at the start", "\\d.bin", "5.bin", true);
    }
    void patterns()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, fileName);
        SimpleIngredientMapper mapper("<m><mapIngredient keyName='k' fileNameRegex='" + pattern
                                      + "'/></m>");
        QTEST(mapper.mapIngredient(fileName).contains("k"), "matches");
    }

private:
    QString path(const QString &name) const
    {
        return QDir::cleanPath(folder->filePath(name));
    }
    QString value(const QString &ingredient)
    {
        return manager->getIngredients()->getIngredient(ingredient, "Value");
    }

    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<ExternalUnsignedZorvIngredientManager> manager;
    QScopedPointer<MessageLog> log;
};

QTEST_GUILESS_MAIN(TestManager)
#include "tst_manager.moc"
