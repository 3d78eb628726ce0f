// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "host/core/plugin.h"
#include "host/core/values.h"
#include "plugin/iingredientmanager.h"
#include "row.h"

#include <QtTest>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// As long as it lives, root is refused what any other owner of a file is refused.
class WithoutPrivileges
{
public:
    WithoutPrivileges()
    {
        syscall(SYS_capget, &header, all);
        __user_cap_data_struct few[] = {all[0], all[1]};
        few[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &header, few);
    }
    ~WithoutPrivileges()
    {
        syscall(SYS_capset, &header, all);
    }

private:
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct all[_LINUX_CAPABILITY_U32S_3] = {};
};

} // namespace

class TestValues : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(makeSample(samples.filePath("good")));
        QVERIFY(makeSample(samples.filePath("broken"), true));
    }
    void init()
    {
        folder.reset(new QTemporaryDir);
        QDir::setCurrent(folder->path());
        plugin.reset(new Plugin);
        QVERIFY2(plugin->load({PLUGIN_LIBRARY}), qPrintable(plugin->problem()));
        values.reset(new Values(plugin.data()));
        QVERIFY(values->setImage(folder->filePath("i.bin")));
    }
    void cleanup()
    {
        QDir::setCurrent("/");
        values.reset();
        plugin.reset();
    }

    void findings_data()
    {
        const Table<QString, QString, QString, bool> row("value", "text", "actual", "fatal");
        const QString input = "Presigned Codec FW=";
        row("directory", input + ".", "not a regular file", "a directory", false);
        row("device", input + "/dev/zero", "not a regular file", "a device", false);
        row("FIFO", input + "fifo", "not a regular file", "a FIFO", false);
        row("empty", input + "empty", "is empty", "0 bytes", false);
        row("unreadable", input + "secret", "cannot be read", "", false);
        row("line feed", input + "a\nb", "control character", "", true);
        row("the image", input + "i.bin", "same file as the input", "", true);
        row("hard link", input + "hard.bin", "same file as the input", "", true);
        row("symlink", input + "soft.bin", "same file as the input", "", true);
        row("good", input + "file", "", "", false);
        const QString image = "Output file name=";
        row("no image", image, "No image is named", "", true);
        row("image is a symlink", image + "soft.bin", "The image is not a regular file",
            "a symlink", true);
        row("image is a directory", image + ".", "The image is not a regular file", "a directory",
            true);
        row("image in a directory that cannot be written", image + "locked/i.bin",
            "locked cannot be written: Perm", "", true);
        row("image in a missing directory", image + "nowhere/i.bin", "nowhere cannot be written",
            "", false);
        row("image is a configuration", image + "c.txt", "same file as one that was loaded", "",
            true);
    }
    void findings()
    {
        QFETCH(QString, value);
        QFETCH(QString, text);
        writeFile("i.bin", "image");
        QCOMPARE(link("i.bin", "hard.bin"), 0);
        QCOMPARE(symlink("i.bin", "soft.bin"), 0);
        QCOMPARE(mkfifo("fifo", 0600), 0);
        writeFile("empty", "");
        writeFile("file", "x");
        QVERIFY(QFile::setPermissions(writeFile("secret", "x"), {}));
        QVERIFY(QDir().mkdir("locked"));
        QFile::setPermissions("locked", QFile::Permissions(0x5555));
        QVERIFY(values->loadConfiguration(writeFile("c.txt", "Flash-Layer = /a\n")));
        QVERIFY(values->setValue(value.section('=', 0, 0), value.section('=', 1)));

        const WithoutPrivileges user;
        const Problems problems = values->problems();
        const bool blocked = values->isBlocked(true);
        QCOMPARE(problems.count(), text.isEmpty() ? 0 : 1);
        if (!text.isEmpty()) {
            QVERIFY2(problems.first().text.contains(text), qPrintable(problems.first().text));
            QTEST(problems.first().actual, "actual");
        }
        QTEST(values->isBlocked(false), "fatal");
        QCOMPARE(blocked, !text.isEmpty());
    }

    void skippedEntries()
    {
        QVERIFY(QDir().mkpath("drop/locked"));
        writeFile("drop/locked/HostFW_2.bin", "x");
        writeFile("drop/HostFW_1.bin", "x");
        QFile::link("/etc/hostname", "drop/D1_ProbeSet.bin");
        QFile::link("/etc/hostname", "drop/other");
        QCOMPARE(mkfifo("drop/HostFW_\xff.bin", 0600), 0);
        QFile::setPermissions("drop/locked", {});
        QVERIFY(values->setValue("Flash-Layer", "/kept"));
        {
            const WithoutPrivileges user;
            QVERIFY(values->fillFromDirectory("drop"));
        }
        QFile::setPermissions("drop/locked", QFile::Permissions(0x7777));
        QCOMPARE(unlink("drop/HostFW_\xff.bin"), 0);
        const QStringList skipped{"drop/locked", "drop/D1_ProbeSet.bin", "drop/HostFW_"};
        QCOMPARE(values->problems().count(), skipped.count());
        for (int i = 0; i < skipped.count(); ++i) {
            const QString file = values->problems().at(i).files.value(0);
            QVERIFY2(file.startsWith(folder->filePath(skipped.at(i))), qPrintable(file));
        }
        // Looking at the symlinks has left nothing behind.
        QCOMPARE(valueOf("Probe Set"), QString());
        QCOMPARE(valueOf("Host FW Supplemental"), QString("/kept"));
        values->forgetInputProblems();
        QCOMPARE(texts(), QStringList());
    }

    /// The plug-in would verify an earlier data file again, so it must not be there any more.
    void dataFiles_data()
    {
        const Table<QString, int> row("input", "problems");
        row("replaced", "good/platform/veldmark-d1.xml", 0);
        row("loaded again", "broken/platform/veldmark-d1.xml", 2);
        row("another ingredient", "good/firmware/probe/D1_ProbeSet.bin", 2);
        row("nothing", "good/README", 2);
        row("a project that omits it", "", 2);
    }
    void dataFiles()
    {
        QFETCH(QString, input);
        QFETCH(int, problems);
        const QString broken = samples.filePath("broken/platform/veldmark-d1.xml");
        QVERIFY(values->addFile(broken));
        QVERIFY(values->setValue("Host FW", "/kept"));
        Project project = values->project();
        project.entries = project.entries.mid(project.entries.count() - 1);
        input.isEmpty() ? values->loadProject(project, {})
                        : values->addFile(samples.filePath(input));
        int count = 0;
        for (const Problem &problem : values->problems()) {
            count += problem.kind == ProblemKind::Message ? 1 : 0;
        }
        QCOMPARE(count, problems);
        QCOMPARE(valueOf("Legacy XML Data File"), problems == 0 ? samples.filePath(input) : broken);
        QCOMPARE(valueOf("Host FW"), QString("/kept"));
        QVERIFY(plugin->ingredientManager()->dataLoaded());
        QVERIFY(values->setValue("Legacy XML Data File", ""));
        QCOMPARE(valueOf("Legacy XML Data File"), QString());
        values->check();
        QCOMPARE(texts().filter("Legacy XML Data File").count(), 1);
    }

    void manyErrors()
    {
        QByteArray nodes;
        for (int i = 0; i < 1000; ++i) {
            nodes += "<node name=\"n\" offset=\"7\" byte_cnt=\"1\"><data>00</data></node>";
        }
        QVERIFY(values->setValue(
            "Legacy XML Data File",
            writeFile("e.xml", "<x PLENKITVersion=\"0.1\"><header1>" + nodes + "</header1></x>")));
        QCOMPARE(texts().count(), 51);
        QVERIFY2(
            texts().first().contains(QRegularExpression("[\\d,]+ errors, of which the first 50")),
            qPrintable(texts().first()));
        QVERIFY(values->setValue("Legacy XML Data File", writeFile("f.xml", "<x>\n<y></x>")));
        QVERIFY2(texts().first().contains("(line 2, column"), qPrintable(texts().first()));
        QVERIFY(!values->hasOutdatedDataFiles());
        writeFile("f.xml", "<x>\n<y></x>");
        QVERIFY(!values->hasOutdatedDataFiles());
        writeFile("f.xml", "<x>\n<z></x>");
        QVERIFY(values->hasOutdatedDataFiles());
    }

private:
    QStringList texts() const
    {
        QStringList texts;
        for (const Problem &problem : values->problems()) {
            texts << problem.ingredient.name + ": " + problem.text;
        }
        return texts;
    }
    QString valueOf(const QString &name) const
    {
        return findIngredient(values->ingredients(), name)->text();
    }

    QTemporaryDir samples;
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<Plugin> plugin;
    QScopedPointer<Values> values;
};

QTEST_MAIN(TestValues)
#include "tst_values.moc"
