// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "host/core/imagesession.h"
#include "host/core/manifestwriter.h"
#include "host/core/stitcherlocator.h"
#include "host/core/terminalcommand.h"
#include "plugin/iingredientmanager.h"
#include "plugin/iloomwrightplugin.h"
#include "row.h"

#include <QAbstractItemModel>
#include <QtTest>

class TestImageSession : public QObject
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
        session.reset(new ImageSession);
        QVERIFY2(session->loadPlugin({PLUGIN_LIBRARY}), qPrintable(session->pluginProblem()));
        set("Output file name", folder->filePath("i.bin"));
    }

    /// What the plug-in keeps of one data file must not be in the verdict on the next one.
    void dataFilesAreJudgedAlone_data()
    {
        columns<QString>("way");
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
        const Project good = session->values();
        const QString project = folder->filePath("p.json");
        QVERIFY(session->saveProject(project));
        const QString copy
            = writeFile(folder->filePath("copy.xml"),
                        readFile(samples.filePath("broken/platform/veldmark-d1.xml")));
        session->open({copy});
        session->check();
        QCOMPARE(problemsOf("Legacy XML Data File").count(), 3);
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
        QVERIFY(session->plugin()->getIngredientManager()->getSupportedViews().count() == 1);
    }

    void anotherFileKeepsTheDataFile()
    {
        session->open({samples.filePath("broken")});
        session->open({samples.filePath("good/presigned/secure/Signed_annex_07.bin")});
        session->check();
        QVERIFY(value("Legacy XML Data File").contains("/broken/"));
        QCOMPARE(problemsOf("Legacy XML Data File").count(), 3);
        QCOMPARE(problemsOf("Host FW").count(), 1);
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

    void theImageIsToldFromTheValues_data()
    {
        columns<QString, QString>("change", "problem");
        row("a value", "value", "");
        row("an input on disk", "input", "changed meanwhile");
        row("the image on disk", "image", "");
    }
    void theImageIsToldFromTheValues()
    {
        QFETCH(QString, change);
        QFETCH(QString, problem);
        session->open({samples.filePath("good")});
        const QString file = writeFile(folder->filePath("Signed_anchor_x.bin"), "anchor");
        session->open({file});
        QCOMPARE(session->buildState(), BuildState::NotBuilt);
        build();
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
        const QString manifest = folder->filePath("m.json");
        const QString reported = writeManifest(manifest);
        QVERIFY2(reported.contains(problem), qPrintable(reported));
        QCOMPARE(reported.isEmpty(), problem.isEmpty());
        QCOMPARE(QFileInfo::exists(manifest), problem.isEmpty());
    }

    void whatIsWritten()
    {
        session->open({samples.filePath("good")});
        QSignalSpy noticed(session.data(), &ImageSession::noticed);
        QVERIFY(!session->saveConfiguration(value("Host FW")));
        QVERIFY(!session->saveProject(value("Host FW")));
        QVERIFY(noticed.last().first().toString().contains("same file as the input"));

        build();
        const QString manifest = folder->filePath("m.json");
        QCOMPARE(writeManifest(manifest), QString());
        set("Host FW", "/a b/it's.bin");
        const QString command = terminalCommand(session->ingredients(), session->pluginFile());
        QProcess shell;
        shell.start("sh", {"-c", "loomwright() { printf '%s\\n' \"$@\"; }; " + command});
        QVERIFY(shell.waitForFinished());
        const QList<QByteArray> words = shell.readAllStandardOutput().split('\n');
        QVERIFY(words.contains("Host FW=/a b/it's.bin"));
        QCOMPARE(words.at(words.count() - 2), QByteArray("build"));

        // Opened, it gives the values, but is not what a project is saved to.
        QVERIFY(session->openProject(manifest));
        QVERIFY(session->projectFile().isEmpty());
    }

    void aDataFileWithVeryManyErrors()
    {
        QByteArray nodes;
        for (int i = 0; i < 50; ++i) {
            nodes += "<node name=\"n\" offset=\"7\" byte_cnt=\"4\"><data>00</data></node>";
        }
        set("Legacy XML Data File",
            writeFile(folder->filePath("d.xml"),
                      "<platform PLENKITVersion=\"0.1.0\"><header_a title=\"A\">" + nodes
                          + "</header_a></platform>"));
        session->check();
        const QVector<Problem> problems = problemsOf("Legacy XML Data File");
        QCOMPARE(problems.count(), 51);
        QCOMPARE(problems.last().text, QString("… and 51 more; see the log"));
    }

private:
    Ingredient ingredient(const QString &name) const
    {
        return findIngredient(*session->plugin()->getIngredientManager()->getIngredients(), name);
    }
    QString value(const QString &name) const
    {
        return textOf(ingredient(name).value);
    }
    void set(const QString &name, const QString &text)
    {
        session->setValue(name, ingredient(name).key, text);
    }
    QVector<Problem> problemsOf(const QString &name) const
    {
        QVector<Problem> found;
        for (const Problem &problem : session->problems()) {
            if (problem.ingredient == name) {
                found << problem;
            }
        }
        return found;
    }
    void build()
    {
        QSignalSpy finished(session.data(), &ImageSession::buildFinished);
        BuildOptions options;
        options.stitcher = locateStitcher(QString()).file;
        session->build(options);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY2(session->lastBuild().result().isSuccess,
                 qPrintable(session->lastBuild().result().reason));
    }
    QString writeManifest(const QString &file)
    {
        ManifestWriter writer;
        QSignalSpy finished(&writer, &ManifestWriter::finished);
        writer.start(session->lastBuild(), "1", file);
        return finished.wait() ? finished.first().first().toString() : QString("nothing");
    }

    QTemporaryDir samples;
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<ImageSession> session;
};

QTEST_MAIN(TestImageSession)
#include "tst_imagesession.moc"
