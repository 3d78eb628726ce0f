// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/externalunsignedzorvexecutionmanager.h"
#include "files.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "messagelog.h"
#include "qtcompat.h"
#include "row.h"

class TestExecution : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.reset(new QTemporaryDir);
        qputenv("PATH", QFile::encodeName(folder->path()) + ":" + systemPath);
        ingredients.reset(new ExternalUnsignedZorvIngredientManager);
        manager.reset(new ExternalUnsignedZorvExecutionManager(ingredients.data()));
        log.reset(new MessageLog(manager.data()));
        output.clear();
    }
    void cleanup()
    {
        qputenv("TMPDIR", temporaryDirectory);
        // The order of the root object, which the manager's destructor must survive.
        ingredients.reset();
        manager.reset();
    }

    void errorTexts_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<QStringList>("messages");
        row("failed to start", int(QProcess::FailedToStart),
            QStringList("E The process failed to start. Either the invoked program is missing, or "
                        "you may have insufficient permissions to invoke the program."));
        row("crashed", int(QProcess::Crashed),
            QStringList("E The process crashed some time after starting successfully."));
        row("timed out", int(QProcess::Timedout),
            QStringList("E The last waitFor...() function timed out. The state of QProcess is "
                        "unchanged, and you can try calling waitFor...() again."));
        row("read error", int(QProcess::ReadError),
            QStringList("E An error occurred when attempting to read from the process. For "
                        "example, the process may not be running."));
        row("write error", int(QProcess::WriteError),
            QStringList("E An error occurred when attempting to write to the process. For "
                        "example, the process may not be running, or it may have closed its input "
                        "channel."));
        row("unknown error", int(QProcess::UnknownError),
            QStringList(
                "E An unknown error occurred. This is the default return value of error()."));
        row("past the last", QProcess::UnknownError + 1, QStringList());
        row("negative", -1, QStringList());
    }
    void errorTexts()
    {
        QFETCH(int, error);
        manager->processCommandLineError(static_cast<QProcess::ProcessError>(error));
        QTEST(log->take(), "messages");
    }

    void verification()
    {
        QCOMPARE(manager->getIngredientCheckSummary().checkCount, 0);
        const QAbstractItemModel *table = manager->getIngredientChecks();
        QVERIFY(!manager->verifyInputs());
        QCOMPARE(table->rowCount(), 1 + 1 + 8 + 4);
        QCOMPARE(manager->getIngredientCheckSummary().checkCount, table->rowCount());
        IngredientModel *model = ingredients->getIngredients();
        const QModelIndexList cells = model->ingredientCells();
        for (const QModelIndex &cell : cells) {
            model->setData(cell, false, VisibilityRole);
        }
        QVERIFY(manager->verifyInputs()); // No check at all is no failure.
        QCOMPARE(table->rowCount(), 0);
        QCOMPARE(log->take(), QStringList());
    }

    void run()
    {
        writeStitcher(folder->path(), "for a; do printf '<%s>' \"$a\"; done; pwd >&2; cat $4");
        setDataFile("a b%1.xml");
        manager->setWorkingDirectory("/nowhere");
        QCOMPARE(manager->getWorkingDirectory(), QString("/nowhere"));
        manager->beginExecution();
        const QString config = QDir::tempPath() + "/config.txt";
        QCOMPARE(log->take(),
                 QStringList() << "S Platform XML file returned from getIngredient is a b%1.xml"
                               << "S Saved Config file to " + config
                               << "S Running command line stitcher next."
                               << "S Command Line: " + QDir::currentPath()
                         + "/tamblin-stitcher -k a b%1.xml -c " + config + " -A");
        QCOMPARE(manager->getWorkingDirectory(), QDir::tempPath());
        QVERIFY(waitForOutput("E " + QDir::tempPath() + "\n"));
        QVERIFY(waitForOutput("'Secure_Anchor_Blob = ?\n"));
        const QString standardOutput = output.filter(QRegExp("^S ")).join("");
        QVERIFY(standardOutput.startsWith("S <-k><a b%1.xml><-c><" + config + "><-A>"));
        QVERIFY(standardOutput.contains("PlatformType = VKMD1"));
    }

    void outputIsRelayedInChunks()
    {
        const QString go = folder->filePath("go");
        writeStitcher(folder->path(),
                      "printf ' one\\n\\ntwo'; while [ ! -e " + go.toUtf8()
                          + " ]; do sleep 0.01; done; printf 'three\\0four'");
        manager->beginExecution();
        log->take();
        QVERIFY(waitForOutput("two"));
        QCOMPARE(output, QStringList("S  one\n\ntwo"));

        // A second start is refused and cancelling only reports: the run goes on to its end.
        QTest::ignoreMessage(QtWarningMsg, "QProcess::start: Process is already running");
        manager->beginExecution();
        log->take();
        manager->cancelExecution();
        QCOMPARE(log->take(),
                 QStringList("S Inside ExternalUnsignedZorvExecutionManager::cancelExecution()"));
        writeFile(go, "");
        QVERIFY(waitForOutput("three"));
        QCOMPARE(output.last(), QString("S three")); // Nothing after the NUL byte.
    }

    void outputIsLocal8Bit()
    {
        QTextCodec *before = QTextCodec::codecForLocale();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        writeStitcher(folder->path(), "printf 'M\\374ll'");
        manager->beginExecution();
        const bool found = waitForOutput(QString::fromLatin1("S M\374ll"));
        QTextCodec::setCodecForLocale(before);
        QVERIFY(found);
    }

    void failures_data()
    {
        QTest::addColumn<QByteArray>("stitcher");
        QTest::addColumn<bool>("executable");
        QTest::addColumn<QString>("expected");
        row("missing", QByteArray(), false, "E The process failed to start.");
        row("not executable", QByteArray("exit 0"), false, "E The process failed to start.");
        row("crash", QByteArray("kill -SEGV $$"), true, "E The process crashed");
    }
    void failures()
    {
        QFETCH(QByteArray, stitcher);
        QFETCH(bool, executable);
        QFETCH(QString, expected);
        if (!stitcher.isEmpty()) {
            writeStitcher(folder->path(), stitcher);
        }
        if (!stitcher.isEmpty() && !executable) {
            QFile::setPermissions(folder->filePath("tamblin-stitcher"), QFile::ReadOwner);
        }
        for (int round = 0; round < 2; ++round) { // The manager stays usable.
            output.clear();
            manager->beginExecution();
            QVERIFY(waitForOutput(expected));
        }
    }

    void unsavedConfigurationStartsNothing()
    {
        const QString file = writeFile(folder->filePath("file"), "");
        qputenv("TMPDIR", QFile::encodeName(file));
        manager->setWorkingDirectory("/before");
        manager->beginExecution();
        QCOMPARE(log->take(1),
                 QStringList("E Failed to save Config file to " + file + "/config.txt"));
        QCOMPARE(manager->getWorkingDirectory(), QString("/before"));
    }

private:
    void setDataFile(const QString &path)
    {
        QHash<QString, QString> config;
        config.insert("XML Data File", path);
        ingredients->updateModelFromConfig(config);
    }

    /// Waits until a message contains @p text; all messages so far are kept in output.
    bool waitForOutput(const QString &text)
    {
        return QTest::qWaitFor([&] {
            output += log->take();
            return !output.filter(text).isEmpty();
        });
    }

    const QByteArray systemPath = qgetenv("PATH");
    const QByteArray temporaryDirectory = qgetenv("TMPDIR");
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<ExternalUnsignedZorvIngredientManager> ingredients;
    QScopedPointer<ExternalUnsignedZorvExecutionManager> manager;
    QScopedPointer<MessageLog> log;
    QStringList output;
};

QTEST_GUILESS_MAIN(TestExecution)
#include "tst_execution.moc"
