// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/externalunsignedzorvexecutionmanager.h"
#include "files.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "messagelog.h"
#include "row.h"

#include <QtTest>

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
    }
    void cleanup()
    {
        // The order of the root object, which an end of the manager must bear.
        ingredients.reset();
        manager.reset();
    }

    void errorTexts_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<QStringList>("messages");
        row("the last", 5,
            QStringList(
                "E An unknown error occurred. This is the default return value of error()."));
        row("past the last", 6, QStringList());
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
        IngredientModel &model = *ingredients->getIngredients();
        for (int group = 0; group < model.rowCount(); ++group) {
            for (int row = 0; row < model.rowCount(model.index(group, 0)); ++row) {
                model.setIngredientVisible(
                    model.index(row, 0, model.index(group, 0)).data().toString(), false);
            }
        }
        QVERIFY(manager->verifyInputs()); // No check at all is no failure.
        QCOMPARE(table->rowCount(), 0);
        QCOMPARE(log->take(), QStringList());
    }

    void run()
    {
        writeStitcher(folder->path(), "for a; do printf '<%s>' \"$a\"; done; pwd >&2; cat $4");
        ingredients->updateModelFromConfig({{"XML Data File", "a b%1.xml"}});
        manager->setWorkingDirectory("/nowhere");
        QCOMPARE(manager->getWorkingDirectory(), QString("/nowhere"));
        manager->beginExecution();
        const QString config = temporary() + "/config.txt";
        QCOMPARE(log->take(),
                 QStringList({"S Platform XML file returned from getIngredient is a b%1.xml",
                              "S Saved Config file to " + config,
                              "S Running command line stitcher next.",
                              "S Command Line: " + QDir::currentPath()
                                  + "/tamblin-stitcher -k a b%1.xml -c " + config + " -A"}));
        QCOMPARE(manager->getWorkingDirectory(), temporary());
        QStringList output = outputUntil("E " + temporary() + "\n");
        output += outputUntil("'Secure_Anchor_Blob = ?\n", output);
        const QString standardOutput
            = QStringList(output.filter(QRegularExpression("^S "))).join("");
        QVERIFY(standardOutput.startsWith("S <-k><a b%1.xml><-c><" + config + "><-A>"));
        QVERIFY(standardOutput.contains("PlatformType = VKMD1"));
    }

    void chunks()
    {
        const QString go = folder->filePath("go");
        writeStitcher(folder->path(),
                      "printf ' one\\n\\ntwo'; while [ ! -e " + go.toUtf8()
                          + " ]; do sleep 0.01; done; printf 'three\\0four'");
        manager->beginExecution();
        log->take();
        QCOMPARE(outputUntil("two"), QStringList("S  one\n\ntwo"));

        // A second start is refused and cancelling only talks: the run goes on to its end.
        QTest::ignoreMessage(QtWarningMsg, "QProcess::start: Process is already running");
        manager->beginExecution();
        log->take();
        manager->cancelExecution();
        QCOMPARE(log->take(),
                 QStringList("S Inside ExternalUnsignedZorvExecutionManager::cancelExecution()"));
        writeFile(go, "");
        QCOMPARE(outputUntil("three"), QStringList("S three")); // Nothing after the NUL byte.
    }

    void failures_data()
    {
        QTest::addColumn<QByteArray>("stitcher");
        QTest::addColumn<QString>("expected");
        row("missing", QByteArray(), "E The process failed to start.");
        row("no program", QByteArray("-"), "E The process failed to start.");
        row("crash", QByteArray("kill -SEGV $$"), "E The process crashed");
    }
    void failures()
    {
        QFETCH(QByteArray, stitcher);
        QFETCH(QString, expected);
        if (stitcher == "-") {
            writeFile(folder->filePath("tamblin-stitcher"), "not executable");
        } else if (!stitcher.isEmpty()) {
            writeStitcher(folder->path(), stitcher);
        }
        for (int round = 0; round < 2; ++round) { // The manager stays usable.
            manager->beginExecution();
            QVERIFY(!outputUntil(expected).isEmpty());
        }
    }

    void configNotSaved()
    {
        const QString wrong = folder->filePath("file");
        writeFile(wrong, "");
        const QByteArray before = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(wrong));
        manager->beginExecution();
        qputenv("TMPDIR", before);
        QCOMPARE(log->take().mid(1),
                 QStringList("E Failed to save Config file to " + wrong + "/config.txt"));
    }

private:
    static QString temporary()
    {
        return QDir::tempPath();
    }
    /// The messages after @p earlier up to the one that contains @p text; none when it is in there.
    QStringList outputUntil(const QString &text, const QStringList &earlier = {})
    {
        if (!earlier.filter(text).isEmpty()) {
            return {};
        }
        QStringList output;
        const bool isFound = QTest::qWaitFor([&] {
            output += log->take();
            return !output.filter(text).isEmpty();
        });
        return isFound ? output : QStringList();
    }

    const QByteArray systemPath = qgetenv("PATH");
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<ExternalUnsignedZorvIngredientManager> ingredients;
    QScopedPointer<ExternalUnsignedZorvExecutionManager> manager;
    QScopedPointer<MessageLog> log;
};

QTEST_GUILESS_MAIN(TestExecution)
#include "tst_execution.moc"
