// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "manager/simpleingredientmapper.h"
#include "observers.h"
#include "qtcompat.h"
#include "row.h"

#include <csignal>
#include <initializer_list>
#include <sys/fsuid.h>
#include <sys/resource.h>

namespace {

using Config = QHash<QString, QString>;

Config configOf(const QString &key, const QString &value)
{
    Config config;
    config.insert(key, value);
    return config;
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

QString sizeMismatch(const QString &stated, const QString &actual, const QString &offset,
                     const QString &name)
{
    return "E ERROR: Size mismatch! Stated Size: " + stated + " Bytes  Actual Size: " + actual
        + "  Stated Offset: " + offset + "  Name: " + name;
}

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

QByteArray entity(const QByteArray &name, const QByteArray &value)
{
    return "<!ENTITY " + name + " '" + value + "'>";
}

/// Whether a map gives the key "k" to a file.
bool maps(const QString &xml, const QString &fileName)
{
    return SimpleIngredientMapper(xml).mapIngredient(fileName).contains("k");
}

} // namespace

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

    void messagesOfTheModel()
    {
        manager->getIngredients()->getIngredient("none", "Value");
        QMetaObject::invokeMethod(manager->getIngredients(), "statusMessage",
                                  Q_ARG(QString, "text"));
        QCOMPARE(log->take(), listOf("E Could not find ingredient named: none", "S text"));
    }

    void missingResources()
    {
        Q_CLEANUP_RESOURCE(externalunsignedzorv);
        ExternalUnsignedZorvIngredientManager empty;
        Q_INIT_RESOURCE(externalunsignedzorv);
        MessageLog messages(&empty);
        QVERIFY(!empty.getIngredients());
        QCOMPARE(messages.take(),
                 listOf("E Ingredient model does not have a value!",
                        "E Please contact the plug-in author to correct this error."));
        QVERIFY(!empty.ingredientColumnIsVisible(0));
        QVERIFY(!empty.loadIngredientFile("HostFW_1.bin"));
        QVERIFY(!empty.generateConfigFromDirectory("."));
        QVERIFY(empty.saveConfigToFile(path("c")));
        QVERIFY(!empty.loadConfigFromFile(path("c")));
    }

    void imageNameInConfig()
    {
        QVERIFY(manager->writeConfigToFile(path("c"), configOf("ImageName", "")));
        QVERIFY(readFile(path("c")).contains("ImageType = FWUSB\nImageName = \n\n'-"));
        QVERIFY(manager->writeConfigToFile(path("c"), Config()));
        QVERIFY(readFile(path("c")).contains(
            "ImageType = FWUSB\n\n'Image name not specified, using default\n"
            "ImageName = unsigned-zorv.bin\nImageName = unsigned-mip.bin\n\n'-"));
    }

    void incompleteConfig()
    {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit before = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        rlimit small = before;
        small.rlim_cur = 100;
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const bool saved = manager->saveConfigToFile(path("c"));
        setrlimit(RLIMIT_FSIZE, &before);
        QVERIFY(!saved);
        QCOMPARE(readFile(path("c")).size(), 100);
        QCOMPARE(log->take(), QStringList()); // The execution manager reports it.
    }

    void loadConfig_data()
    {
        const Table<QByteArray, QString, QStringList> row("text", "hostFirmware", "messages");
        const QString loaded = "S Config file loaded!";
        const QString nothing = "E Nothing to update from config file";
        const QString malformed = "E Malformed config entry found: ";
        const QString duplicate = "E Config file contains duplicate key value: ";
        row("padded", "  Host FW Boot \t=  /h  \n\n", "/h", listOf(loaded));
        row("no spaces, cleared", "Host FW Boot=", "", listOf(loaded));
        row("indented comment", " \t'words\n", "/old", listOf(nothing));
        row("unknown keys", "PlatformType = VKMD1\nhost fw boot = x\n", "/old", listOf(nothing));
        row("two equals signs", "Host FW Boot = /a=%1\nFlash-Layer = /f", "/old",
            listOf(malformed + "Host FW Boot = /a=%1", loaded));
        row("no equals sign", "words\n \nHost FW Boot = /h", "/h",
            listOf(malformed + "words", malformed, loaded));
        row("carriage returns", "Host FW Boot = /h\r\n\r\n", "/h", listOf(malformed, loaded));
        row("keys twice", "x = 1\nx = 2\nHost FW Boot = /h\nHost FW Boot = /i\n", "/h",
            listOf(duplicate + "x = 2", duplicate + "Host FW Boot = /i", loaded));
        row("empty file", {}, "/old", listOf(nothing));
        row("UTF-16", QTextCodec::codecForName("UTF-16")->fromUnicode("Host FW Boot=/h"), "/h",
            listOf(loaded));
        row("not UTF-8", "\xff\xc0=\xfe\nHost FW Boot=/h", "/h", listOf(loaded));
        row("NUL bytes", QByteArray("a\0b\nHost FW Boot = /h", 21), "/h",
            listOf(malformed + QString::fromLatin1("a\0b", 3), loaded));
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

    void unusableFiles_data()
    {
        const Table<QString> row("file");
        row("in a missing directory", "none/c");
        row("directory", ".");
        row("FIFO without another end", "fifo");
        row("device", "/dev/null");
        row("symlink loop", "loop");
        row("very long name", QString(5000, 'x'));
        row("without permission", "locked");
    }
    void unusableFiles()
    {
        QFETCH(QString, file);
        const CurrentDirectory inside(folder->path());
        QFile::setPermissions(".", QFile::Permissions(0x7755));
        QCOMPARE(mkfifo("fifo", 0600), 0);
        QFile::link("loop", "loop");
        QFile::setPermissions(writeFile("locked", "a=b"), QFile::Permissions());
        const int user = setfsuid(file == "locked" ? 65534 : geteuid()); // Root may read any file.
        const bool loaded = manager->loadConfigFromFile(file);
        const bool valid = manager->validateXmlFile(file);
        const bool saved = manager->saveConfigToFile(file);
        setfsuid(uid_t(user));
        QVERIFY(!loaded && !valid && !saved);
        QCOMPARE(log->take(),
                 listOf("E Failed to open " + file + " for reading",
                        "S Validating Legacy XML Data File " + file,
                        "E ERROR: Failed to open Legacy XML Data file!",
                        "E Failed to open " + file + " for writing"));
    }

    void version_data()
    {
        const Table<bool> row("valid");
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
        QCOMPARE(validate(xml.toUtf8()), valid);
        const QStringList accepted = listOf("S \nLegacy XML PLENKITVersion is " + text);
        const QStringList refused
            = listOf("E \nLegacy XML PLENKITVersion is " + text
                         + " but version 0.1.0 or greater is required.",
                     "S \nPlease use a legacy XML with PLENKITVersion 0.1.0 or greater.");
        const QStringList sections = listOf("S Found the following Header Sections:",
                                            "S \nVerifying integrity of header sections");
        QCOMPARE(log->take(1), (valid ? accepted : refused) + sections);
    }

    void nodes_data()
    {
        const Table<QByteArray, int, QStringList> row("nodes", "nodeCount", "errors");
        const QByteArray four(8, '0');
        const QStringList none;
        row("valid",
            node("a", "0", "4", four) + node("b", "4", "16", QByteArray(32, '0'))
                + node("c", "14", "8", QByteArray(16, '0')),
            3, none);
        row("comment counts", "<!-- c -->" + node("a", "0", "4", four), 2, none);
        row("undeclared entity in an attribute", "<n name='a&nbsp;' offset='0' byte_cnt='0'/>", 1,
            none);
        row("first data element", node("a", "0", "4", four + "</data><data>0"), 1, none);
        row("offset and sizes", node("a", "0", "4", "0000000") + node("b%1", "10", "2", "00\n00"),
            2,
            listOf(sizeMismatch("4", "3.5", "0", "a"),
                   "E ERROR: Offset mismatch! Stated Offset: 10  Actual offset: 4   Name: b%1  ",
                   sizeMismatch("2", "2.5", "10", "b%1")));
        row("data is not trimmed", node("a", "0", "4", "\n" + four + " "), 1,
            listOf(sizeMismatch("4", "5", "0", "a")));
        row("signature is case-sensitive",
            "<n name='Signature x' offset='0' byte_cnt='4'/>"
            "<n name='signature' offset='4' byte_cnt='4'/>",
            2, listOf(sizeMismatch("4", "0", "4", "signature")));
        const QStringList malformed = listOf("E ERROR: Malformed node!  ");
        row("malformed ends the section",
            node("a", "0", "4", four) + node("b", "4", "0x4", four) + "<n/>", 2, malformed);
        QByteArray attributes;
        for (int i = 0; i < 100000; ++i) {
            attributes += " a" + QByteArray::number(i) + "=''";
        }
        row("a hundred thousand attributes", "<n" + attributes + "/>", 1, malformed);
        row("offset that is no number", node("a", "x", "4", four), 1, malformed);
        row("size past int", node("a", "0", "2147483648", ""), 1, malformed);
        row("sizes past int in sum",
            node("a", "0", "2147483647", "") + node("b", "7fffffff", "2147483647", "")
                + node("c", "0", "0", ""),
            3,
            listOf(sizeMismatch("2147483647", "0", "0", "a"),
                   sizeMismatch("2147483647", "0", "7fffffff", "b"),
                   "E ERROR: Offset mismatch! Stated Offset: 0  Actual offset: fffffffe   Name: "
                   "c  "));
    }
    void nodes()
    {
        QFETCH(QByteArray, nodes);
        QFETCH(int, nodeCount);
        QFETCH(QStringList, errors);
        const QByteArray xml = legacyXml("<header_2 title='T%1'>" + nodes + "</header_2><Header/>");
        QCOMPARE(validate(xml), errors.isEmpty());
        QCOMPARE(log->take(2),
                 listOf("S Found the following Header Sections:", "S  - T%1",
                        "S \nVerifying integrity of header sections")
                     + sectionReport("T%1", nodeCount, errors));
    }

    void encodings_data()
    {
        const Table<QString> row("declaration");
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
        QVERIFY(validate(codec->fromUnicode(text)));
        QVERIFY(log->take().contains("S  - " + title));
    }

    void limitsOfXml_data()
    {
        const Table<QByteArray, bool> row("xml", "valid");
        row("empty", {}, false);
        row("deepest", legacyXml(nested(999)), true);
        row("too deep", legacyXml(nested(1000)), false);
        row("too deep after empty elements", legacyXml("<b c='>'/>" + nested(1000)), false);
        row("too deep with tags in a value", legacyXml("<b c='/>'>" + nested(999) + "</b>"), false);
        row("too deep with tags in a comment", legacyXml("<!--</b></b>-->" + nested(1000)), false);
        row("too deep with tags in an instruction", legacyXml("<?b </b></b></b>?>" + nested(1000)),
            false);
        row("many elements", legacyXml(QByteArray("<b></b>").repeated(1001)), true);
        row("many elements and a comment",
            legacyXml("<!-- -->" + QByteArray("<b></b>").repeated(1001)), true);
        row("much too deep, truncated", QByteArray("<a>").repeated(200000), false);

        const auto declared = [&row](const char *name, const QByteArray &declarations,
                                     const QByteArray &content, bool valid) {
            row(name, "<!DOCTYPE p [" + declarations + "]>" + legacyXml(content), valid);
        };
        const QByteArray use = "&a;";
        const QByteArray none;
        declared("long entity", entity("a", QByteArray(9000, 'x')), use, true);
        declared("declared after its use", entity("a", "&b;") + entity("b", "x"), use, true);
        declared("1.2 million characters", entity("a", QByteArray(4000, 'x')), use.repeated(300),
                 true);
        declared("2.4 million characters", entity("a", QByteArray(4000, 'x')), use.repeated(600),
                 false);
        declared("2.4 million characters in a larger file", entity("a", QByteArray(4000, 'x')),
                 "<!--" + QByteArray(600000, ' ') + "-->" + use.repeated(600), true);
        declared("135 million characters in an attribute", entity("a", QByteArray(4090, 'x')),
                 "<b c='" + use.repeated(33000) + "'/>", false);

        QByteArray laughs;
        QByteArray parameterLaughs;
        for (char level = 'a'; level < 'j'; ++level) {
            const QByteArray next(1, char(level + 1));
            laughs += entity(QByteArray(1, level), ("&" + next + ";").repeated(10));
            parameterLaughs.prepend(
                entity(QByteArray("% ") + level, ("%" + next + ";").repeated(10)));
        }
        declared("billion laughs", laughs + entity("j", "ha"), use, false);
        declared("billion laughs in declarations",
                 entity("% j", "ha") + parameterLaughs + entity("k", "%a;"), none, false);
        declared("cycle", entity("a", "&b;x") + entity("b", "&a;x"), use, false);
        declared("too deep in an entity", entity("a", nested(1000)), use, false);

        const QByteArray parentheses(900, '(');
        const QByteArray manyParentheses(200000, '(');
        const QByteArray end = "b" + QByteArray(200000, ')') + ">";
        declared("many declarations",
                 ("<!ELEMENT p " + parentheses + "b" + QByteArray(900, ')') + ">").repeated(3),
                 none, true);
        declared("many groups in a declaration",
                 "<!ELEMENT p (b" + QByteArray(",(b)").repeated(1001) + ")>", none, true);
        declared("many comments", QByteArray("<!-- ( -->").repeated(1001), none, true);
        declared("parentheses in the content", entity("a", "b"), QByteArray(1001, '('), true);
        declared("much too deep declaration", "<!ELEMENT p " + manyParentheses + end, none, false);
        declared("in a parameter entity",
                 entity("% a", "<!ELEMENT p " + manyParentheses + end) + "%a;", none, false);
        declared("after a parameter entity",
                 entity("% a", "<!ELEMENT p ") + "%a;" + manyParentheses + end, none, false);
        // Each adds a part of the same declaration.
        QByteArray parts = entity("% p0", "<!ELEMENT p " + parentheses);
        for (int i = 0; i < 300; ++i) {
            parts += entity("% p" + QByteArray::number(i + 1),
                            "&#37;p" + QByteArray::number(i) + ";" + parentheses);
        }
        declared("in many parameter entities", parts + "%p300;", none, false);
    }
    void limitsOfXml()
    {
        QFETCH(QByteArray, xml);
        QFETCH(bool, valid);
        QCOMPARE(validate(xml), valid);
        const QStringList errors = log->take().filter("XML Document content could not be set!");
        QCOMPARE(errors.isEmpty(), valid);
    }

    void failedSectionStays()
    {
        QVERIFY(!validate(legacyXml("<header title='invalid'><n/></header><header/>")));
        log->take();
        QVERIFY(!validate(legacyXml(""))); // Compat: a section that failed once stays.
        QCOMPARE(log->take().filter("Verify header").count(), 2);
    }

    void missingVersionIsNotReported()
    {
        QVERIFY(!validate("<p/>"));
        QCOMPARE(log->take().filter("PLENKITVersion"), QStringList());
    }

    void callsFromWithinTheSignals()
    {
        const QString file = writeFile(path("x"), legacyXml("<header title='h'/>"));
        int rounds = 3;
        const auto callAgain = [&] {
            if (rounds-- > 0) {
                manager->loadDataFromXmlFile(file);
                manager->validateXmlFile(file);
                manager->loadConfigFromFile(path("none"));
            }
        };
        const SignalHook loaded(manager.data(), SIGNAL(dataFileLoaded()), callAgain);
        const SignalHook failed(manager.data(), SIGNAL(errorMessage(QString)), callAgain);
        QVERIFY(manager->loadDataFromXmlFile(path("none")));
        QCOMPARE(manager->getSupportedViews().count(), 1);
    }

    void mapping()
    {
        const QStringList files = listOf("a/%1/HOSTFW_A.BIN", "a/Signed_annex_CDX_PACK.bin",
                                         "a/../data.xml", "a/HostFW_.bin/notes.xml.bak");
        for (const QString &file : files) {
            manager->loadIngredientFile(file);
        }
        const QString found = "S  - Ingredient found: ";
        QCOMPARE(log->take().filter("Ingredient found"),
                 listOf(found + "Host FW Boot = " + files.at(0),
                        found + "SIGNED_CODEC_FW = " + files.at(1),
                        found + "Secure_Annex_FW = " + files.at(1),
                        found + "XML Data File = " + files.at(2)));
    }

    void directories()
    {
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

    /// The mapper is the only class with signals that no host can reach.
    void signalsOfTheMapper()
    {
        const QMetaObject &mapper = SimpleIngredientMapper::staticMetaObject;
        const int first = mapper.methodOffset();
        QCOMPARE(mapper.methodCount(), first + 2);
        QCOMPARE(signatureOf(mapper.method(first)), QByteArray("statusMessage(QString)"));
        QCOMPARE(signatureOf(mapper.method(first + 1)), QByteArray("errorMessage(QString)"));
        QCOMPARE(mapper.method(first).parameterNames(), QList<QByteArray>() << "message");
        QCOMPARE(mapper.method(first + 1).parameterNames(), QList<QByteArray>() << "message");
    }

    void mapRules()
    {
        const QString rule = "<mapIngredient keyName='k' fileNameRegex='%1'/>";
        QVERIFY(maps(rule.arg("abc|xyz"), "xyz"));
        QVERIFY(!maps(rule.arg("abc"), "xabc"));
        QVERIFY(!maps(rule.arg("abc"), "abcx"));
        QVERIFY(!maps(rule.arg("[ab]"), "xax"));
        QVERIFY(!maps(rule.arg("(abc"), "abc"));
        QVERIFY(maps("<m>" + rule.arg("b") + rule.arg("A") + "</m>", "a")); // The last rule wins.
        QVERIFY(!maps("<m>" + rule.arg("a") + rule.arg("b") + "</m>", "a"));
        QVERIFY(!maps("<m><mapIngredient fileNameRegex='a'/></m>", "a"));
        QVERIFY(!maps("a", "a"));
    }

private:
    QString path(const QString &name) const
    {
        return QDir::cleanPath(folder->filePath(name));
    }
    bool validate(const QByteArray &xml)
    {
        return manager->validateXmlFile(writeFile(path("x"), xml));
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
