// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/buildrunner.h"
#include "host/core/filehasher.h"
#include "host/core/ingredients.h"
#include "host/core/pluginsession.h"
#include "host/core/stitcherlocator.h"
#include "plugin/iingredientmanager.h"
#include "processes.h"
#include "row.h"

#include <QSignalSpy>
#include <QtTest>
#include <QtWidgets>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

const QByteArray deaf = "trap '' HUP INT TERM; ";

} // namespace

class TestBuild : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        connect(session.statusManager(), &StatusManager::statusMessage, this,
                [this](const QString &message) { outputSize += message.size(); });
        QVERIFY(session.load({PLUGIN_LIBRARY}));
    }
    void init()
    {
        folder.reset(new QTemporaryDir(temporaryPath + "/build-XXXXXX"));
        image = folder->filePath("i.bin");
        input = writeFile(folder->filePath("input.bin"), "input");
        QVERIFY(QDir(folder->path()).mkdir("tmp"));
        qputenv("TMPDIR", QFile::encodeName(folder->filePath("tmp")));
        qputenv(processMark, mark());
        QCOMPARE(set("ImageName", image), QString());
        QCOMPARE(set("Host FW", input), QString());
    }
    void cleanup()
    {
        runner.reset();
        QTRY_COMPARE(processesOf(mark()), QStringList());
        QCOMPARE(QDir(folder->filePath("tmp")).entryList({"loomwright-*"}), QStringList());
        QVERIFY(!QFile::exists(image + ".loomwright-lock"));
        QVERIFY(!QFile::exists(image + ".loomwright-backup"));
    }

    void stitchers_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<QByteArray>("partial");
        QTest::addColumn<int>("timeoutMs");
        const QByteArray half = "printf half > $image; ";
        const QByteArray none;
        row("good", QByteArray("printf new > $image"), QString(), none, 0);
        row("reads its input", QByteArray("printf new > $image; cat"), QString(), none, 0);
        row("fails halfway", half + "exit 1", QString("exit status 1\\..*i.bin.partial"),
            QByteArray("half"), 0);
        row("crashes halfway", half + "kill -SEGV $$", QString("ended by signal 11"),
            QByteArray("half"), 0);
        row("hangs halfway", half + deaf + "sleep 1000 & sleep 1000",
            QString("did not end within 0.5 s"), QByteArray("half"), 500);
        row("is killed with its supervisor", half + "kill -KILL $PPID; exec sleep 1000",
            QString("supervises the stitcher was killed"), QByteArray("half"), 0);
        row("goes on in the background", half + "(sleep 1000; printf more >> $image) &",
            QString("left processes running"), QByteArray("half"), 0);
        row("is asked to end", half + "trap 'exit 0' TERM; kill $PPID; while :; do sleep 0.1; done",
            QString("asked to end by a signal"), QByteArray("half"), 0);
        row("ends before its supervisor is killed",
            half + "runner=$PPID; (sleep 0.2; kill -KILL $runner) &",
            QString("supervises the stitcher was killed"), QByteArray("half"), 0);
        row("touches the image", QByteArray("touch $image"), QString("wrote nothing into"), none,
            0);
        row("changes its mode", QByteArray("chmod 600 $image; :"), QString("without writing"), none,
            0);
        row("leaves a symlink", QByteArray("ln -s /etc/passwd $image"),
            QString("is not a regular file"), readFile("/etc/passwd"), 0);
        row("changes an input", QByteArray("printf new > $image; echo >> $input"),
            QString("input.bin \\(Host FW\\) changed"), QByteArray("new"), 0);
        row("replaces an input", QByteArray("printf new > $image; cp $input x; mv x $input"),
            QString("input.bin \\(Host FW\\) changed"), QByteArray("new"), 0);
        row("has no interpreter", QByteArray(), QString("interpreter is missing"), none, 0);
    }
    void stitchers()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, reason);
        QFETCH(QByteArray, partial);
        QFETCH(int, timeoutMs);
        for (const QByteArray &old : {QByteArray(), QByteArray("old")}) {
            QFile::remove(image + ".partial");
            QFile::remove(image);
            if (!old.isEmpty()) {
                writeFile(image, old);
            }
            const QByteArray before = qgetenv("PATH") + qgetenv("TMPDIR");
            BuildOptions options = stitcher(script);
            options.timeoutMs = timeoutMs;
            const BuildResult result = build(options);
            QCOMPARE(qgetenv("PATH") + qgetenv("TMPDIR"), before);
            QVERIFY2(QRegularExpression(reason).match(result.reason).hasMatch(),
                     qPrintable(result.reason));
            QCOMPARE(result.isSuccess, reason.isEmpty());
            QCOMPARE(readFile(image), result.isSuccess ? QByteArray("new") : old);
            QCOMPARE(result.partialFile, partial.isEmpty() ? QString() : image + ".partial");
            QCOMPARE(readFile(image + ".partial"), partial);
            QTRY_COMPARE(processesOf(mark()), QStringList());
        }
    }

    void result()
    {
        const BuildResult result = build(stitcher("cat $4 > $image"));
        QCOMPARE(result.reason, QString());
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.imageFile, image);
        QVERIFY(result.configuration.contains("ImageName = " + QFile::encodeName(image)));
        QCOMPARE(readFile(image), result.configuration);
        QCOMPARE(result.imageSize, qint64(result.configuration.size()));
        QCOMPARE(result.sha256,
                 QCryptographicHash::hash(readFile(image), QCryptographicHash::Sha256).toHex());
        QCOMPARE(build(stitcher("exit 9")).exitStatus, 9);
        QCOMPARE(build(stitcher("kill -KILL $$")).signalNumber, SIGKILL);
    }

    void inputChangedAfterTheChecks()
    {
        BuildOptions options = stitcher("printf new > $image");
        options.knownStates.insert(input, FileState::of(input));
        writeFile(input, "other");
        QVERIFY(build(options).reason.contains("input.bin (Host FW) has changed"));
    }

    void interference_data()
    {
        columns<QByteArray, QString, QByteArray>("script", "reason", "left");
        const QByteArray fail = "; exit 1";
        const QByteArray write = "; printf new > $image";
        const QByteArray none;
        const QByteArray old = "old";
        const QByteArray fresh = "new";
        row("backup removed", "rm $backup" + fail, QString("backup was removed"), none);
        row("backup emptied", ": > $backup" + fail, QString("backup was changed"), none);
        row("backup replaced", "printf evil > x; mv x $backup" + fail,
            QString("backup was changed"), none);
        row("backup made a directory", "rm $backup; mkdir $backup" + write,
            QString("backup was changed"), fresh);
        row("backup put back", QByteArray("mv $backup $image"), QString("put the older image back"),
            old);
        row("backup linked back", QByteArray("ln -f $backup $image"),
            QString("put the older image back"), old);
        row("image linked", "ln -f $image $image.partial" + fail, QString("exit status 1"), old);
        row("lock removed", "rm $image.loomwright-lock" + write, QString("lock was removed"),
            fresh);
        row("directory replaced", "mv $place x; mkdir $place" + write,
            QString("no longer the directory"), fresh);
    }
    void interference()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, reason);
        QDir(folder->path()).mkdir("place");
        image = folder->filePath("place/i.bin");
        QCOMPARE(set("ImageName", image), QString());
        writeFile(image, "old");
        const BuildResult result = build(
            stitcher("backup=$image.loomwright-backup place=${image%/i.bin}; printf half > $image; "
                     + script));
        QVERIFY(!result.isSuccess);
        QVERIFY2(result.reason.contains(reason), qPrintable(result.reason));
        QTEST(readFile(image), "left");
        QVERIFY(QDir(folder->filePath("place")).removeRecursively());
    }

    void imageChangesWhileItIsHashed()
    {
        start(stitcher("truncate -s 256M $image"));
        connect(runner.data(), &BuildRunner::hashing, this,
                [this] { QVERIFY(QFile::resize(image, 100)); });
        QVERIFY(waitForResult().reason.contains("changed while it was hashed"));
    }

    void outputIsCompleteAtTheEnd()
    {
        outputSize = 0;
        QVERIFY(build(stitcher("printf new > $image; yes words | head -c 3000000")).isSuccess);
        QVERIFY(outputSize >= 3000000);
    }

    void refusedImages_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("reason");
        row("directory", QByteArray("mkdir i.bin"), QString("is not a regular file"));
        row("symlink", QByteArray("ln -s input.bin i.bin"), QString("is not a regular file"));
        row("FIFO", QByteArray("mkfifo i.bin"), QString("is not a regular file"));
        row("no directory", QByteArray("rm -r ../place"), QString("directory .* does not exist"));
        row("directory as backup", QByteArray("mkdir i.bin.loomwright-backup"),
            QString("backup is not a regular file"));
        row("symlink as backup", QByteArray("ln -s input.bin i.bin.loomwright-backup"),
            QString("backup is not a regular file"));
        row("FIFO as lock", QByteArray("mkfifo i.bin.loomwright-lock"),
            QString("is not a lock file"));
        row("stitcher", QByteArray("ln -s ../tamblin-stitcher i.bin"),
            QString("has the name of the image"));
    }
    void refusedImages()
    {
        QFETCH(QByteArray, command);
        QFETCH(QString, reason);
        const QString place = folder->filePath("place");
        QVERIFY(QDir().mkdir(place));
        writeFile(place + "/input.bin", "input");
        QCOMPARE(QProcess::execute("sh", {"-c", "cd " + quoted(place) + "; " + command}), 0);
        const QStringList before = QDir(place).entryList(QDir::AllEntries | QDir::System);
        QCOMPARE(set("ImageName", place + "/i.bin"), QString());
        const BuildResult result = build(stitcher("printf new > $image"));
        QVERIFY2(QRegularExpression(reason).match(result.reason).hasMatch(),
                 qPrintable(result.reason));
        QCOMPARE(QDir(place).entryList(QDir::AllEntries | QDir::System), before);
        QCOMPARE(readFile(place + "/input.bin"), QByteArray(before.isEmpty() ? "" : "input"));
    }

    void strangeConfigurationFile()
    {
        const QByteArray fifo = QFile::encodeName(folder->filePath("tmp/config.txt"));
        QCOMPARE(mkfifo(fifo.constData(), 0600), 0);
        QVERIFY(build(stitcher("printf new > $image")).isSuccess);
        QVERIFY(QFile::remove(folder->filePath("tmp/config.txt")));
    }

    void workDirectoryIsKept()
    {
        BuildOptions options = stitcher("pwd > $image; mktemp -u >> $image");
        options.keepWork = true;
        const BuildResult result = build(options);
        QVERIFY2(result.isSuccess, qPrintable(result.reason));
        QVERIFY(result.workDirectory.startsWith(folder->filePath("tmp/")));
        const QByteArray path = QFile::encodeName(result.workDirectory);
        QVERIFY(readFile(image).startsWith(path + '\n' + path + '/'));
        QCOMPARE(readFile(result.workDirectory + "/config.txt"), result.configuration);
        struct stat state = {};
        QCOMPARE(stat(path.constData(), &state), 0);
        QCOMPARE(state.st_mode & 07777, mode_t(0700));
        QVERIFY(QDir(result.workDirectory).removeRecursively());
    }

    void twoBuilds()
    {
        const BuildOptions options = stitcher("while ! [ -e $go ]; do sleep 0.01; done; "
                                              "cp config.txt $(sed -n 's/^ImageName = //p' $4)");
        QProcess other;
        startHost(&other, folder->filePath("other.bin"));
        start(options);
        BuildRunner second(&session);
        QSignalSpy ended(&second, &BuildRunner::finished);
        second.start(options);
        QCOMPARE(ended.count(), 0);
        QVERIFY(ended.wait());
        const QString reason = ended.first().first().value<BuildResult>().reason;
        QVERIFY2(reason.contains(" is being built by another process"), qPrintable(reason));
        // Removing the lock file does not help; the running build notices it.
        const QString lock = image + ".loomwright-lock";
        QVERIFY(QFile::rename(lock, folder->filePath("lock")));
        BuildRunner third(&session);
        QSignalSpy thirdEnded(&third, &BuildRunner::finished);
        third.start(options);
        QVERIFY(thirdEnded.wait());
        QVERIFY(thirdEnded.first().first().value<BuildResult>().reason.contains("is being built"));
        QVERIFY(QFile::rename(folder->filePath("lock"), lock));
        writeFile(folder->filePath("go"), {});
        QVERIFY(waitForResult().isSuccess);
        QTRY_COMPARE(other.state(), QProcess::NotRunning);
        QVERIFY(readFile(image).contains("\nImageName = " + QFile::encodeName(image) + '\n'));
        QVERIFY(readFile(folder->filePath("other.bin")).contains("/other.bin\n"));
    }

    void hostIsKilled_data()
    {
        QTest::addColumn<QByteArray>("older");
        row("older image", QByteArray("old"));
        row("no older image", QByteArray());
    }
    void hostIsKilled()
    {
        QFETCH(QByteArray, older);
        if (!older.isEmpty()) {
            writeFile(image, older);
        }
        stitcher("printf half > $image; " + deaf + "sleep 1000 & sleep 1000");
        QProcess host;
        startHost(&host, image);
        QTRY_COMPARE(readFile(image), QByteArray("half"));
        host.kill();
        QVERIFY(host.waitForFinished());
        // The stitcher ignores SIGTERM, and may write for some time.
        QVERIFY(build(stitcher("printf new > $image")).reason.contains("is being built"));
        QTRY_COMPARE(processesOf(mark()), QStringList());

        // What it left is not overwritten by what the next build leaves.
        QCOMPARE(build(stitcher("printf more > $image; exit 1")).exitStatus, 1);
        QCOMPARE(readFile(image), older);
        QCOMPARE(readFile(image + ".partial"), QByteArray("half"));
        QCOMPARE(readFile(image + ".partial.2"), QByteArray("more"));
        QVERIFY(QDir(folder->filePath("tmp")).removeRecursively());
    }

    void deletedMeanwhile()
    {
        writeFile(image, "old");
        start(stitcher("printf half > $image; sleep 1000 & sleep 1000"));
        QTRY_COMPARE(readFile(image), QByteArray("half"));
        runner.reset();
        QCOMPARE(processesOf(mark()), QStringList());
        QCOMPARE(readFile(image), QByteArray("old"));
        QCOMPARE(readFile(image + ".partial"), QByteArray("half"));
        siginfo_t info = {}; // The next build needs a plug-in that has taken note of the end.
        QTRY_COMPARE(waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT), -1);
    }

    void aFifoIsNotHashed()
    {
        QCOMPARE(mkfifo(QFile::encodeName(folder->filePath("fifo")).constData(), 0600), 0);
        FileHasher hasher;
        QString error;
        connect(&hasher, &FileHasher::finished, this,
                [&error](const QList<FileHash> &hashes) { error = hashes.first().error; });
        hasher.start({folder->filePath("fifo")});
        QTRY_COMPARE(error, QString("It is not a regular file"));
    }

    void locate_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("searchPath");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("problem");
        const QString name = "/tamblin-stitcher";
        row("in the search path", "", "/nope:DIR/plain:DIR/good", "DIR/good" + name, "");
        row("relative", "../good" + name, "", "DIR/good" + name, "");
        row("none", "", "/nope", "", "There is no tamblin-stitcher in the search path.");
        row("runner alone", "", runnerDirectory(), "", "There is no tamblin-stitcher in the");
        row("runner", runnerDirectory() + name, "", "", "is not the stitcher");
        row("missing", "DIR/nope", "", "", "does not exist");
        row("directory", "DIR", "", "", "is a directory");
        row("not executable", "DIR/plain" + name, "", "", "is not executable");
        row("not executable in the search path", "", "DIR/plain", "", "is not executable");
        row("dangling", "DIR/link", "", "", "is a symlink that leads nowhere");
    }
    void locate()
    {
        QFETCH(QString, chosen);
        QFETCH(QString, searchPath);
        QFETCH(QString, file);
        QFETCH(QString, problem);
        const QDir directory(folder->path());
        QVERIFY(directory.mkdir("plain") && directory.mkdir("good"));
        writeFile(folder->filePath("plain/tamblin-stitcher"), "#!/bin/sh\n");
        writeStitcher(folder->filePath("good"), {});
        QVERIFY(QFile::link("nowhere", folder->filePath("link")));
        const CurrentDirectory current(folder->filePath("plain"));
        const QByteArray before = qgetenv("PATH");
        qputenv("PATH", searchPath.replace("DIR", folder->path()).toUtf8());
        const StitcherLocation location = locateStitcher(chosen.replace("DIR", folder->path()));
        qputenv("PATH", before);
        QCOMPARE(location.file, file.replace("DIR", folder->path()));
        QVERIFY2(location.problem.contains(problem), qPrintable(location.problem));
        QCOMPARE(location.problem.isEmpty(), !location.file.isEmpty());
    }

private:
    QByteArray mark() const
    {
        return QFile::encodeName(folder->path());
    }

    QString set(const QString &name, const QString &value)
    {
        return setIngredientValue(session.ingredientManager()->getIngredients(), name, value);
    }

    /// A stitcher that knows the names of the image and of an input; without a script, one with an
    /// interpreter that is not there.
    BuildOptions stitcher(const QByteArray &script)
    {
        writeStitcher(folder->path(),
                      "image=" + quoted(image) + " input=" + quoted(input)
                          + " go=" + quoted(folder->filePath("go")) + '\n' + script);
        BuildOptions options;
        options.stitcher = folder->filePath("tamblin-stitcher");
        if (script.isEmpty()) {
            writeFile(options.stitcher, "#!/nope\n");
        }
        return options;
    }

    void start(const BuildOptions &options)
    {
        hasResult = false;
        runner.reset(new BuildRunner(&session));
        connect(runner.data(), &BuildRunner::finished, this, [this](const BuildResult &result) {
            hasResult = true;
            lastResult = result;
        });
        runner->start(options);
    }

    BuildResult waitForResult()
    {
        return QTest::qWaitFor([this] { return hasResult; }, 20000) ? lastResult : BuildResult();
    }

    BuildResult build(const BuildOptions &options)
    {
        start(options);
        return hasResult ? BuildResult() : waitForResult();
    }

    void startHost(QProcess *host, const QString &imageFile)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("PATH", folder->path() + ':' + environment.value("PATH"));
        host->setProcessEnvironment(environment);
        host->start(HOST_PROGRAM, {"-q", "build", "--no-check", "-o", imageFile});
    }

    const QString temporaryPath = QDir::tempPath();
    PluginSession session;
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<BuildRunner> runner;
    QString image;
    QString input;
    BuildResult lastResult;
    bool hasResult = false;
    qint64 outputSize = 0;
};

QTEST_MAIN(TestBuild)
#include "tst_build.moc"
