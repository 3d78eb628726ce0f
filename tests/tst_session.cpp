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
        row("changed on disk", "disk");
        row("undone", "undo");
        row("opened with a project", "project");
    }
    void dataFilesAreJudgedAlone()
    {
        QFETCH(QString, way);
        session->open({samples.filePath("good")});
        const Snapshot good = session->snapshot();
        const QString project = folder->filePath("p.json");
        QVERIFY(session->saveProject(project));
        const QString copy
            = writeFile(folder->filePath("copy.xml"),
                        readFile(samples.filePath("broken/platform/veldmark-d1.xml")));
        session->open({copy});
        session->check();
        QCOMPARE(problemsOf("Legacy XML Data File").count(), 2);

        if (way == "disk") {
            writeFile(copy, readFile(samples.filePath("good/platform/veldmark-d1.xml")));
        } else if (way == "undo") {
            session->restore(good);
        } else {
            QVERIFY(session->openProject(project));
        }
        QTRY_VERIFY(session->problems().isEmpty());
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));
        QVERIFY(session->root()->getIngredientManager()->getSupportedViews().count() == 1);
    }

    /// Only a choice ends an ambiguity.
    void ambiguities_data()
    {
        const Table<QString> row("way");
        row("searched again", "rescan");
        row("another folder, undone", "undo");
        row("a folder that is rejected", "rejected");
        row("the file in use was gone", "used");
        row("the other file was gone", "other");
    }
    void ambiguities()
    {
        QFETCH(QString, way);
        const QString drop = folder->filePath("drop");
        QVERIFY(makeSample(drop, true));
        session->open({drop});
        const Project before = session->project();
        const IngredientId id = findIngredient(session->ingredients(), "Host FW")->id;
        const QStringList files = session->candidates(id);
        QCOMPARE(files.count(), 2);
        if (way == "rescan") {
            session->rescan();
        } else if (way == "undo") {
            const Snapshot snapshot = session->snapshot();
            session->open({samples.filePath("good")});
            session->check();
            QVERIFY(session->problems().isEmpty());
            session->restore(snapshot);
        } else if (way == "rejected") {
            QVERIFY(QDir(folder->path()).mkdir("empty"));
            session->open({folder->filePath("empty")});
        } else {
            const QString gone = files.at(way == "used" ? 0 : 1);
            QVERIFY(QFile::rename(gone, drop + ".spare"));
            session->check();
            QCOMPARE(session->candidates(id), way == "used" ? files.mid(1) : QStringList());
            QCOMPARE(problemsOf("Host FW").count(), way == "used" ? 1 : 0);
            QVERIFY(QFile::rename(drop + ".spare", gone));
        }
        session->check();
        QVERIFY(session->project().hasSameValuesAs(before));
        QCOMPARE(problemsOf("Host FW").count(), 1);
        QCOMPARE(problemsOf("Host FW").first().files, files);
        QCOMPARE(session->candidates(id), files);
        session->setValue(id, files.first());
        session->check();
        QCOMPARE(problemsOf("Host FW").count(), 0);
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

    void whatChangesAfterABuildIsNamed()
    {
        session->open({samples.filePath("good")});
        const QString input = writeFile(folder->filePath("Signed_anchor_x.bin"), "anchor");
        session->open({input});
        QCOMPARE(session->buildState(), BuildState::NotBuilt);
        QVERIFY(build().isSuccess);
        QCOMPARE(session->buildState(), BuildState::Current);
        const QString image = folder->filePath("i.bin");
        QFile::rename(image, image + ".moved");
        QCOMPARE(session->buildState(), BuildState::Outdated);
        QSignalSpy noticed(session.data(), &Session::noticed);
        session->writeManifest();
        QVERIFY(!QFileInfo::exists(image + ".manifest.json"));
        QCOMPARE(noticed.count(), 1);
        set("Presigned Codec FW", input);
        writeFile(input, "another");
        const QStringList changes = session->changesSinceBuild();
        QCOMPARE(changes.count(), 3);
        for (const QString &changed : {QString("Presigned Codec FW"), input, image}) {
            QVERIFY2(!changes.filter(changed).isEmpty(), qPrintable(changes.join('\n')));
        }
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
