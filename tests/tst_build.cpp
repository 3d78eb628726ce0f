// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/build.h"
#include "host/core/plugin.h"
#include "host/core/stitcherrun.h"
#include "host/core/values.h"
#include "processes.h"
#include "row.h"

#include <QtTest>
#include <QtWidgets>

#include <csignal>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QByteArray deaf = "trap '' HUP INT TERM; ";
const QByteArray half = "printf half > \"$image\"; ";
const QByteArray writeNew = "printf new > \"$image\"; ";

} // namespace

class TestBuild : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(plugin.load({PLUGIN_LIBRARY}));
        values.reset(new Values(&plugin));
    }
    void init()
    {
        folder.reset(new QTemporaryDir(temporaryPath + "/build-XXXXXX"));
        QVERIFY(QDir(folder->path()).mkdir("place") && QDir(folder->path()).mkdir("tmp"));
        image = folder->filePath("place/i.bin");
        input = writeFile(folder->filePath("input.bin"), "input");
        qputenv("TMPDIR", QFile::encodeName(folder->filePath("tmp")));
        qputenv(processMark, QFile::encodeName(folder->path()));
        QVERIFY(values->setValue("ImageName", image));
        QVERIFY(values->setValue("Host FW", input));
    }
    void cleanup()
    {
        build.reset();
        QTRY_COMPARE(processesOf(folder->path()), QStringList());
        QTRY_COMPARE(leftovers(), QStringList());
    }

    void stitchers_data()
    {
        const Table<QByteArray, QString> row("script", "reason");
        const QString none;
        row("good", writeNew, none);
        row("reads its input", writeNew + "cat", none);
        row("writes to a temporary file", "cd \"${image%/*}\"; printf new > t; mv t i.bin", none);
        row("removes the older image", writeNew + "rm -f \"$final\"; ln \"$image\" \"$final\"",
            "linked the older image");
        row("fails halfway", half + "exit 1", "exit status 1\\.");
        row("crashes halfway", half + "kill -SEGV $$", "killed by signal 11");
        row("hangs halfway", half + deaf + "sleep 1000 & sleep 1000",
            "did not finish within 0.5 s");
        row("is killed with its supervisor", half + "kill -KILL $PPID; exec sleep 1000",
            "supervises the stitcher was killed");
        row("goes on in the background", half + "(sleep 1000; printf more >> \"$image\") &",
            "left processes running");
        row("is asked to end", half + "trap 'exit 0' TERM; kill $PPID; while :; do sleep 0.1; done",
            "stopped by a signal");
        row("writes nothing", ":", "without writing");
        row("writes an empty image", ": > \"$image\"", "wrote nothing into");
        row("leaves a symlink", "ln -s /etc/passwd \"$image\"", "is not a regular file");
        row("changes an input", writeNew + "echo >> \"$input\"",
            "input.bin \\(Host FW\\) has changed during");
        row("replaces an input", writeNew + "cp \"$input\" x; mv x \"$input\"",
            "input.bin \\(Host FW\\) has changed during");
        row("changes itself", writeNew + "echo >> \"$0\"", "stitcher .* has changed during");
        row("has no interpreter", {}, "interpreter is missing");
    }
    void stitchers()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, reason);
        writeFile(image, "old");
        const QByteArray before = qgetenv("PATH") + qgetenv("TMPDIR");
        BuildOptions options = stitcher(script);
        options.timeoutMs = reason.contains("0.5") ? 500 : 0;
        const BuildResult result = run(options);
        QCOMPARE(qgetenv("PATH") + qgetenv("TMPDIR"), before);
        QVERIFY2(QRegularExpression(reason).match(result.reason).hasMatch(),
                 qPrintable(result.reason));
        QCOMPARE(result.isSuccess, reason.isEmpty());
        if (!reason.contains("linked")) {
            QCOMPARE(readFile(image), QByteArray(result.isSuccess ? "new" : "old"));
        }
        QCOMPARE(values->image(), image);
    }

    void result()
    {
        const BuildResult result = run(stitcher("cat \"$4\" > \"$image\"; umask > u"));
        QCOMPARE(result.reason, QString());
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.image.file, image);
        // What the world is told has the user's path.
        QVERIFY(result.configuration.contains("ImageName = " + QFile::encodeName(image) + '\n'));
        QVERIFY(!result.configuration.contains(".loomwright-"));
        QVERIFY(readFile(image).contains("/.loomwright-"));
        QCOMPARE(result.image.state.size, QFileInfo(image).size());
        QVERIFY(FileState::of(image) == result.image.state);
        QCOMPARE(run(stitcher("exit 9")).exitStatus, 9);
        QCOMPARE(run(stitcher("kill -KILL $$")).signalNumber, SIGKILL);
    }

    void inputChangedAfterTheChecks()
    {
        values->check();
        BuildOptions options = stitcher(writeNew);
        options.known = values->inputRecords();
        writeFile(input, "other");
        QVERIFY(run(options).reason.contains("input.bin (Host FW) has changed since"));
        QVERIFY(!QFile::exists(image));
    }

    void otherFiles_data()
    {
        const Table<QByteArray, QString> row("script", "reason");
        row("published", "printf log > i.log", {});
        row("replaces an older one", "printf log > i.log; echo old > \"$place/i.log\"", {});
        row("a symlink is there", "printf log > i.log; ln -s nowhere \"$place/i.log\"",
            "what is there is not a regular file");
        row("a colon in its name", "printf log > i.log; printf x > :map", {});
        row("staging directory replaced",
            "mv ../\"${PWD##*/}\" ../x; mkdir \"$PWD\"; cp ../x/i.bin \"$PWD\"; rm -r ../x",
            "replaced or removed the directory");
        row("directory is a symlink that leads elsewhere in the end",
            "printf log > i.log; ln -sfn tmp \"${place%/place}/link\"", {});
        row("named like an input", "printf evil > in.bin", "in.bin, which is in use");
        row("a symlink", "ln -s /etc/passwd i.log", "not a regular file");
        row("a directory", "mkdir i.log", "not a regular file");
        row("a name that is no text", ": > \"$(printf '\\377')\"", "not a regular file");
        row("its place is taken", "printf log > i.log; mkdir \"$place/i.log\" \"$place/i.log/x\"",
            "what is there is not a regular file");
        row("the image's place is taken", "mkdir \"$final\"",
            "i.bin cannot be replaced: .*The complete image is ");
        row("the directory is gone", "mv \"$place\" \"$place.moved\"", "replaced or removed");
    }
    void otherFiles()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, reason);
        QCOMPARE(link(QFile::encodeName(input).constData(),
                      QFile::encodeName(folder->filePath("place/in.bin")).constData()),
                 0);
        QVERIFY(QFile::link("place", folder->filePath("link")));
        QVERIFY(values->setImage(folder->filePath("link/i.bin")));
        const BuildResult result = run(stitcher(writeNew + "cd \"${image%/*}\"; " + script));
        QVERIFY2(QRegularExpression(reason).match(result.reason).hasMatch(),
                 qPrintable(result.reason));
        QCOMPARE(result.isSuccess, reason.isEmpty());
        QCOMPARE(readFile(folder->filePath("place/i.log")),
                 QByteArray(reason.isEmpty() ? "log" : ""));
        QCOMPARE(readFile(image), QByteArray(reason.isEmpty() ? "new" : ""));
        QCOMPARE(readFile(input), QByteArray("input"));
        if (!result.keptDirectory.isEmpty()) {
            QCOMPARE(readFile(result.keptDirectory + "/i.bin"), QByteArray("new"));
            QVERIFY(result.reason.contains("The complete image is " + result.keptDirectory));
            QVERIFY(QDir(result.keptDirectory).removeRecursively());
        }
        QDir(folder->filePath("place.moved")).removeRecursively();
    }

    /// What was hashed is not what is there in the end.
    void changedWhileHashed()
    {
        const QString link = folder->filePath("link");
        writeFile(folder->filePath("place/input.bin"), "input");
        QVERIFY(QFile::link("place", link));
        FileHasher hasher;
        QList<FileRecord> hashed;
        connect(&hasher, &FileHasher::finished, this,
                [&](const QList<FileRecord> &records) { hashed = records; });
        hasher.add({recordOf(link + "/input.bin")});
        QVERIFY(QFile::remove(link) && QFile::link(".", link));
        QTRY_COMPARE(hashed.count(), 1);
        QVERIFY(QFile::remove(link) && QFile::link("place", link));
        QVERIFY(!isUnchanged(hashed.first()));
    }

    /// Nothing depends on the runner any more, but the image must stay as it is.
    void whileTheImageIsHashed_data()
    {
        const Table<QString, QString> row("event", "reason");
        row("image changes", "change", "It has changed");
        row("runner is killed", "kill", {});
    }
    void whileTheImageIsHashed()
    {
        QFETCH(QString, event);
        QFETCH(QString, reason);
        start(stitcher("truncate -s 256M \"$image\""));
        connect(build.data(), &Build::hashing, this, [this, event] {
            if (event == "change") {
                QFile::resize(folder->filePath("place/" + leftovers().value(0) + "/i.bin"), 100);
                return;
            }
            for (const QString &process : processesOf(folder->path())) {
                ::kill(process.section(' ', 0, 0).toInt(), SIGKILL);
            }
        });
        const BuildResult result = waitForResult();
        QVERIFY2(result.reason.contains(reason), qPrintable(result.reason));
        QCOMPARE(result.isSuccess, reason.isEmpty());
        QVERIFY(FileState::of(image) == result.image.state);
    }

    void rejectedImages_data()
    {
        const Table<QByteArray, QString> row("command", "reason");
        row("symlink", "ln -s ../input.bin i.bin", "is not a regular file");
        row("FIFO", "mkfifo i.bin", "is not a regular file");
        row("no directory", "rm -r ../place", "cannot be written: No such file");
        row("stitcher", "ln ../tamblin-stitcher i.bin", "are the same file");
    }
    void rejectedImages()
    {
        QFETCH(QByteArray, command);
        QFETCH(QString, reason);
        const BuildOptions options = stitcher(writeNew);
        const QDir place(folder->filePath("place"));
        QCOMPARE(QProcess::execute("sh", {"-c", "cd " + quoted(place.path()) + "; " + command}), 0);
        const QStringList before = place.entryList(QDir::AllEntries | QDir::System);
        const BuildResult result = run(options);
        QVERIFY2(result.reason.contains(reason), qPrintable(result.reason));
        QCOMPARE(place.entryList(QDir::AllEntries | QDir::System), before);
        QCOMPARE(readFile(input), QByteArray("input"));
    }

    /// KILL at any moment to any of the processes leaves the older image or the new one, and the
    /// next build works.
    void killed_data()
    {
        const Table<QString> row("victims");
        row("host", "loomwright");
        row("runner and stitcher", "tamblin-stitche");
        row("all", "loomwright tamblin-stitche");
    }
    void killed()
    {
        QFETCH(QString, victims);
        const QByteArray script = half + "sleep 0.02; printf ' and more' >> \"$image\"";
        const QSet<QByteArray> whole{"old", "half and more"};
        std::minstd_rand random(1);
        const int rounds = qEnvironmentVariable("LOOMWRIGHT_KILL_ROUNDS", "12").toInt();
        for (int round = 0; round < rounds; ++round) {
            init(); // What the last round has left is removed.
            writeFile(image, "old");
            stitcher(script);
            QProcess host;
            startHost(&host);
            QVERIFY(host.waitForStarted());
            QTest::qWait(int(random() % 120));
            for (const QString &process : processesOf(folder->path())) {
                if (victims.contains(process.section(' ', 1))) {
                    ::kill(process.section(' ', 0, 0).toInt(), SIGKILL);
                }
            }
            QTRY_COMPARE(host.state(), QProcess::NotRunning);
            QTRY_COMPARE(processesOf(folder->path()), QStringList());
            QVERIFY2(whole.contains(readFile(image)), readFile(image).constData());
            // The runner has cleaned up, unless it had not been started yet.
            for (const QString &directory : leftovers()) {
                QVERIFY(victims != "loomwright"
                        || !QFile::exists(folder->filePath("place/" + directory + "/i.bin")));
            }
        }
        QVERIFY(run(stitcher(writeNew)).isSuccess);
        init();
    }

    void deletedMeanwhile()
    {
        writeFile(image, "old");
        start(stitcher("touch \"$go\"; " + half + "sleep 1000 & sleep 1000"));
        QTRY_VERIFY(QFile::exists(folder->filePath("go")));
        build.reset();
        QCOMPARE(processesOf(folder->path()), QStringList());
        QCOMPARE(readFile(image), QByteArray("old"));
        siginfo_t info = {}; // The next build needs a plug-in that has taken note of the end.
        QTRY_COMPARE(waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT), -1);
    }

    /// Until the plug-in, which the test stands for, has taken note of the runner's end, messages
    /// may still arrive.
    void runnerThatIsNotReapedYet()
    {
        StitcherRequest request;
        writeStitcher(folder->path(), {});
        request.stitcher = folder->filePath("tamblin-stitcher");
        request.workDirectory = folder->filePath("tmp");
        StitcherRun stitcherRun;
        bool hasEnded = false;
        connect(&stitcherRun, &StitcherRun::started, &stitcherRun, &StitcherRun::permit);
        connect(&stitcherRun, &StitcherRun::stitcherEnded, &stitcherRun, &StitcherRun::finish);
        connect(&stitcherRun, &StitcherRun::ended, this, [&hasEnded] { hasEnded = true; });
        pid_t runner = -1;
        stitcherRun.start(request, [&runner] {
            runner = fork();
            if (runner == 0) {
                execlp("tamblin-stitcher", "tamblin-stitcher", nullptr);
                _exit(1);
            }
        });
        QTRY_VERIFY(stitcherRun.reported(RunnerStatus::Finished));
        siginfo_t info = {};
        QCOMPARE(waitid(P_PID, id_t(runner), &info, WEXITED | WNOWAIT), 0);
        for (int round = 0; round < 10; ++round) {
            QCoreApplication::processEvents();
        }
        QVERIFY(!hasEnded);
        QCOMPARE(waitpid(runner, nullptr, 0), runner);
        QTRY_VERIFY(hasEnded);
    }

    void manifestOfAReplacedImage()
    {
        const BuildResult result = run(stitcher(writeNew));
        const QString file = folder->filePath("m.json");
        QCOMPARE(writeManifest(result, file), QString());
        QVERIFY(QFile::remove(file));
        writeFile(image, "other");
        QVERIFY(writeManifest(result, file).contains("was replaced or changed"));
        QVERIFY(!QFile::exists(file));
        // Two builds that name each other's image as their manifest.
        QVERIFY(writeManifest(run(stitcher(writeNew)), image).contains("was replaced or changed"));
    }

private:
    /// The directories that builds have left.
    QStringList leftovers() const
    {
        return QDir(folder->filePath("place"))
                   .entryList({".loomwright-*"}, QDir::Dirs | QDir::Hidden)
            + QDir(folder->filePath("tmp")).entryList({"loomwright-*"});
    }

    /// A stitcher that knows the names of the files; without a script, one with an interpreter that
    /// is not there.
    BuildOptions stitcher(const QByteArray &script)
    {
        writeStitcher(folder->path(),
                      findImage + "final=" + quoted(image) + " place="
                          + quoted(folder->filePath("place")) + " input=" + quoted(input)
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
        build.reset(new Build(&plugin, values.data(), options));
        connect(build.data(), &Build::finished, this, [this](const BuildResult &result) {
            hasResult = true;
            lastResult = result;
        });
        build->start();
    }

    BuildResult waitForResult()
    {
        return QTest::qWaitFor([this] { return hasResult; }, 20000) ? lastResult : BuildResult();
    }

    BuildResult run(const BuildOptions &options)
    {
        start(options);
        return hasResult ? BuildResult() : waitForResult();
    }

    void startHost(QProcess *host)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("PATH", folder->path() + ':' + environment.value("PATH"));
        host->setProcessEnvironment(environment);
        host->start(HOST_PROGRAM, {"-q", "build", "--no-check", "-o", image});
    }

    const QString temporaryPath = QDir::tempPath();
    Plugin plugin;
    QScopedPointer<Values> values;
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<Build> build;
    QString image;
    QString input;
    BuildResult lastResult;
    bool hasResult = false;
};

QTEST_MAIN(TestBuild)
#include "tst_build.moc"
