// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "host/window/session.h"
#include "host/window/terminalcommand.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"
#include "row.h"

#include <QAbstractItemModel>
#include <QtTest>

class TestSession : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        qputenv("PATH", EXAMPLES_FOLDER ":" + qgetenv("PATH"));
        QVERIFY(makeSample(samples.filePath("good")));
        QVERIFY(makeSample(samples.filePath("broken"), true));
    }
    void init()
    {
        folder.reset(new QTemporaryDir);
        session.reset(new Session);
        QVERIFY2(session->loadPlugin({PLUGIN_LIBRARY}), qPrintable(session->pluginProblem()));
        set("Output file name", folder->filePath("i.bin"));
    }

    /// What the plug-in keeps of one data file must not be in the verdict on the next one.
    void dataFilesAreJudgedAlone_data()
    {
        const Table<QString> row("way");
        row("opened as a file", "file");
        row("set as a value", "value");
        row("changed on disk", "disk");
        row("undone", "undo");
        row("opened with a project", "project");
    }
    void dataFilesAreJudgedAlone()
    {
        QFETCH(QString, way);
        const QString goodFile = samples.filePath("good/platform/veldmark-d1.xml");
        session->open({samples.filePath("good")});
        const Project good = session->project();
        const QString project = folder->filePath("p.json");
        QVERIFY(session->saveProject(project));
        const QString copy
            = writeFile(folder->filePath("copy.xml"),
                        readFile(samples.filePath("broken/platform/veldmark-d1.xml")));
        session->open({copy});
        session->check();
        QCOMPARE(problemsOf("Legacy XML Data File").count(), 2);
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));

        if (way == "file") {
            session->open({goodFile});
        } else if (way == "value") {
            set("Legacy XML Data File", goodFile);
        } else if (way == "disk") {
            writeFile(copy, readFile(goodFile));
        } else if (way == "undo") {
            session->restore(good);
        } else {
            QVERIFY(session->openProject(project));
        }
        QTRY_VERIFY(problemsOf("Legacy XML Data File").isEmpty());
        QVERIFY(session->problems().isEmpty());
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));
        QVERIFY(session->root()->getIngredientManager()->getSupportedViews().count() == 1);
    }

    void filesOnDiskAreWatched()
    {
        session->open({samples.filePath("good")});
        const QString file = folder->filePath("HostFW_x.bin");
        const QString shortFile = writeFile(folder->filePath("short"), "x");
        session->open({writeFile(file, QByteArray(102400, 'x'))});
        QTRY_VERIFY(session->problems().isEmpty());
        QCOMPARE(rename(QFile::encodeName(shortFile), QFile::encodeName(file)), 0);
        QTRY_COMPARE(problemsOf("Host FW").count(), 1);
        writeFile(file, QByteArray(102400, 'y'));
        QTRY_VERIFY(session->problems().isEmpty());
        QFile::remove(file);
        QTRY_COMPARE(problemsOf("Host FW").count(), 1);
        writeFile(file, QByteArray(102400, 'z'));
        QTRY_VERIFY(session->problems().isEmpty());
    }

    /// Something on the way to the files changes, without a change of the files themselves.
    void directoriesAreWatched_data()
    {
        const Table<QString, QString, int> row("opened", "command", "problems");
        row("folder replaced", "work/s1", "mv work/s1 work/s0; mv broken work/s1", 5);
        row("symlink points elsewhere", "link", "ln -sfn broken link", 5);
        row("parent renamed", "work/s1", "mv work gone", 9);
        row("folder deleted and created again", "work/s1",
            "cp -r work/s1 x; rm -r work/s1; mv x work/s1", 0);
    }
    void directoriesAreWatched()
    {
        QFETCH(QString, opened);
        QFETCH(QString, command);
        QFETCH(int, problems);
        const CurrentDirectory current(folder->path());
        QDir().mkdir("work");
        QVERIFY(makeSample("work/s1") && makeSample("broken", true));
        QFile::link("work/s1", "link");
        session->open({opened});
        QTRY_COMPARE(session->problems().count(), 0);
        QSignalSpy changed(session.data(), &Session::changed);
        QCOMPARE(QProcess::execute("sh", {"-c", command}), 0);
        QTRY_VERIFY(changed.count() > 0);
        // The values stay, so the names of another folder do not count.
        QTRY_COMPARE(session->problems().isEmpty(), problems == 0);
        if (QFile::exists(value("Host FW Supplemental"))) { // It still is watched.
            writeFile(value("Host FW Supplemental"), "x");
            QTRY_VERIFY(!problemsOf("Host FW Supplemental").isEmpty());
        }
    }

    void theImageIsToldFromTheValues_data()
    {
        const Table<QString, QString> row("change", "changed");
        row("a value", "value", "Presigned Codec FW");
        row("an input on disk", "input", "Signed_anchor_x.bin");
        row("the image on disk", "image", "i.bin");
    }
    void theImageIsToldFromTheValues()
    {
        QFETCH(QString, change);
        QFETCH(QString, changed);
        session->open({samples.filePath("good")});
        const QString file = writeFile(folder->filePath("Signed_anchor_x.bin"), "anchor");
        session->open({file});
        QCOMPARE(session->buildState(), BuildState::NotBuilt);
        QVERIFY(build().isSuccess);
        QCOMPARE(session->buildState(), BuildState::Current);
        QVERIFY(!session->isNewerThanImage(ingredient("Presigned Secure Anchor")));

        if (change == "value") {
            set("Presigned Codec FW", file);
        } else if (change == "input") {
            writeFile(file, "another");
            QVERIFY(session->isNewerThanImage(ingredient("Presigned Secure Anchor")));
        } else {
            QFile::remove(folder->filePath("i.bin"));
        }
        QCOMPARE(session->buildState(), BuildState::Outdated);
        QCOMPARE(session->changesSinceBuild().count(), 1);
        QVERIFY(session->changesSinceBuild().first().endsWith(changed));
        QSignalSpy noticed(session.data(), &Session::noticed);
        session->writeManifest();
        QCOMPARE(QFileInfo::exists(folder->filePath("i.bin.manifest.json")), change != "image");
        QCOMPARE(noticed.count(), 1);
    }

    void aFailureIsForgottenWithItsCause()
    {
        session->open({samples.filePath("good")});
        writeStitcher(folder->path(), "exit 1");
        session->setStitcher(folder->filePath("tamblin-stitcher"));
        QVERIFY(!build().isSuccess);
        QCOMPARE(session->buildState(), BuildState::Failed);
        set("Presigned Codec FW", value("Host FW"));
        QCOMPARE(session->buildState(), BuildState::NotBuilt);
        writeStitcher(folder->path(), "sleep 1000");
        QSignalSpy finished(session.data(), &Session::buildFinished);
        session->build(0);
        session->stopBuild();
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(session->buildState(), BuildState::Stopped);
    }

    void whatIsWritten()
    {
        session->open({samples.filePath("good")});
        QSignalSpy noticed(session.data(), &Session::noticed);
        QVERIFY(!session->saveConfiguration(value("Host FW")));
        QVERIFY(!session->saveProject(value("Host FW")));
        QVERIFY(noticed.last().first().toString().contains("same file as the input"));

        QVERIFY(build().isSuccess);
        session->writeManifest();
        set("Host FW", "/a b/it's.bin");
        const QString command = terminalCommand(session->ingredients(), session->pluginFile());
        QProcess shell;
        shell.start("sh", {"-c", "loomwright() { printf '%s\\n' \"$@\"; }; " + command});
        QVERIFY(shell.waitForFinished());
        const QList<QByteArray> words = shell.readAllStandardOutput().split('\n');
        QVERIFY(words.contains("Host FW=/a b/it's.bin"));
        QCOMPARE(words.at(words.count() - 2), QByteArray("build"));

        // Opened, it gives the values, but is not what a project is saved to.
        QVERIFY(session->openProject(folder->filePath("i.bin.manifest.json")));
        QVERIFY(session->projectFile().isEmpty());
    }

private:
    Ingredient ingredient(const QString &name) const
    {
        return *findIngredient(session->ingredients(), name);
    }
    QString value(const QString &name) const
    {
        return ingredient(name).text();
    }
    void set(const QString &name, const QString &text)
    {
        session->setValue(ingredient(name).id, text);
    }
    Problems problemsOf(const QString &name) const
    {
        Problems found;
        for (const Problem &problem : session->problems()) {
            if (problem.ingredient.name == name) {
                found << problem;
            }
        }
        return found;
    }
    BuildResult build()
    {
        QSignalSpy finished(session.data(), &Session::buildFinished);
        session->check();
        session->build(0);
        const bool done = QTest::qWaitFor([&finished] { return finished.count() == 1; }, 20000);
        return done ? session->buildResult() : BuildResult();
    }

    QTemporaryDir samples;
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<Session> session;
};

QTEST_MAIN(TestSession)
#include "tst_session.moc"
