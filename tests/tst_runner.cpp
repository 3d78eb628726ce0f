// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/runnerprotocol.h"
#include "processes.h"
#include "row.h"

#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

using Kinds = QList<int>;

const int maxDescriptor = 1024;
const QStringList arguments = {"-k", "a  b", "-A"};

/// The variable that leads a script to the directory of the test.
const QByteArray folderVariable = "\"$" + QByteArray(processMark) + '"';
const QByteArray makeReady = ": > " + folderVariable + "/ready; ";

class Program : public QProcess
{
public:
    int inheritedSocket = -1; ///< The only descriptor that is inherited; -1 for as usual.
    int ignoredSignal = 0;

protected:
    void setupChildProcess() override
    {
        for (int descriptor = 3; inheritedSocket >= 0 && descriptor < maxDescriptor; ++descriptor) {
            fcntl(descriptor, F_SETFD, descriptor == inheritedSocket ? 0 : FD_CLOEXEC);
        }
        std::signal(ignoredSignal, SIG_IGN);
    }
};

} // namespace

class TestRunner : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.reset(new QTemporaryDir);
        program.reset(new Program);
        request = {};
        reports.clear();
        for (const char *name : {"staging", "work", "outside"}) {
            QDir(folder->path()).mkdir(name);
            writeFile(folder->filePath(name + QString("/file")), "content");
        }
    }
    void cleanup()
    {
        close(std::exchange(host, -1));
        program.reset();
        QTRY_COMPARE(processesOf(folder->path()), QStringList());
    }

    void ends_data()
    {
        const Table<QByteArray, Kinds, int, QByteArray, int> row("script", "kinds", "value",
                                                                 "output", "ignoredSignal");
        const auto exited = [&row](const char *name, int status, const QByteArray &script,
                                   const QByteArray &output = {}, int ignoredSignal = 0) {
            row(name, "#!/bin/sh\n" + script, Kinds{RunnerStatus::Exited}, status, output,
                ignoredSignal);
        };
        const auto other
            = [&row](const char *name, const Kinds &kinds, int value, const QByteArray &script) {
                  row(name, script, kinds, value, {}, 0);
              };
        exited("exit status 3", 3, "exit 3");
        exited("arguments", 0, "printf '%s|' \"$@\"", "-k|a  b|-A|");
        exited("standard input is empty", 0, "cat; echo end", "end\n");
        exited("output as it comes", 0, "printf 'a\\nb\\000c'; printf d >&2",
               QByteArray("a\nb\0cd", 6));
        exited("PATH", 0, "echo $PATH", qgetenv("PATH") + '\n');
        exited("the stitcher inherits no descriptor and none of the runner's variables", 0,
               "env | grep ^LOOMWRIGHT_ | cut -d= -f1; exec ls /proc/self/fd",
               processMark + QByteArray("\n0\n1\n2\n3\n")); // The last one is that of ls.
        exited("no signal blocked", 0, "exec grep SigBlk /proc/self/status",
               "SigBlk:\t0000000000000000\n");
        exited("child that ends soon", 0, "(sleep 0.2; echo late) &", "late\n");
        exited("HUP is ignored", 5, "kill -HUP $PPID $$; exit 5", {}, SIGHUP);
        exited("supervisor is stopped", 5, "kill -STOP $PPID; exit 5");
        exited("CHLD is ignored", 5, "exit 5", {}, SIGCHLD);
        exited("FIFO and symlinks beside the image", 0,
               "cd " + folderVariable + "/staging; mkfifo x; ln -s /nope y; ln -s x z");
        other("crash", {RunnerStatus::Signaled}, SIGSEGV, "#!/bin/sh\nkill -SEGV $$");
        other("no interpreter", {RunnerStatus::StartFailed, RunnerStatus::Exited}, ENOENT,
              "#!/nope\n");
        other("not a program", {RunnerStatus::StartFailed, RunnerStatus::Exited}, ENOEXEC, "hello");
        other("no staging directory to sync", {RunnerStatus::Exited, RunnerStatus::SyncFailed}, 0,
              "#!/bin/sh\nrm -r " + folderVariable + "/staging");
    }
    void ends()
    {
        QFETCH(QByteArray, script);
        QFETCH(Kinds, kinds);
        QFETCH(int, value);
        QFETCH(int, ignoredSignal);
        program->ignoredSignal = ignoredSignal;
        start(script);
        say(HostCommand::Start);
        readReports();
        QCOMPARE(reportedKinds(),
                 Kinds{RunnerStatus::Started} + kinds + Kinds{RunnerStatus::Finished});
        QCOMPARE(reports[0].value, int(program->processId()));
        QCOMPARE(reports[1].value, value);
        say(HostCommand::Finish);
        QVERIFY(program->waitForFinished());
        QTEST(program->readAll(), "output");
        const bool crashed = kinds.contains(RunnerStatus::Signaled);
        QCOMPARE(program->exitStatus(), crashed ? QProcess::CrashExit : QProcess::NormalExit);
        // QProcess gives the signal's number here as well.
        QCOMPARE(program->exitCode(), kinds.contains(RunnerStatus::StartFailed) ? 127 : value);
        QVERIFY(QDir(folder->path()).entryList({"core*"}).isEmpty());
    }

    void nobodyIsLeft_data()
    {
        const Table<QByteArray, QString, int, int> row("script", "hostDoes", "report", "exitCode");
        const QByteArray deaf = "trap '' HUP INT QUIT TERM; ";
        const QByteArray two = "setsid sleep 1000 & sleep 1000";
        const QByteArray supervisor = "$PPID";
        const QByteArray runner = "$(ps -o ppid= $PPID)";
        const int none = -1;
        const auto behind = [&row](const char *name, const QByteArray &script) {
            row(name, script, {}, RunnerStatus::LeftBehind, 0);
        };
        behind("child that ignores TERM", deaf + "sleep 1000 &");
        behind("double fork in a session of its own",
               deaf + "setsid sh -c 'sleep 1000 & sleep 1000 & sleep 1000' > /dev/null 2>&1 &");
        behind("fork after fork",
               deaf + "export next='(: | :; exec sh -c \"$next\") &'; sh -c \"$next\"");
        behind("stopped child", "sleep 1000 & kill -STOP $!");
        row("time-out", two, "sets a time-out", RunnerStatus::TimedOut, 124);
        row("stop", two, "stops", RunnerStatus::Stopped, 128 + SIGTERM);
        row("stop, deaf", deaf + two, "stops", RunnerStatus::Stopped, 128 + SIGTERM);
        row("host gone, all descriptors closed",
            deaf + "exec <&- >&- 2>&- 3>&- 4>&- 5>&- 6>&-; " + two, "dies", none, 128 + SIGTERM);
        row("TERM to the runner", "kill " + runner + "; " + two, {}, RunnerStatus::Stopped,
            128 + SIGTERM);
        row("TERM to the supervisor", "kill " + supervisor + "; " + two, {}, RunnerStatus::Stopped,
            128 + SIGTERM);
        // These two end the process at once, so QProcess gives the signal's number.
        row("KILL to the runner", "sleep 1000 & kill -KILL " + runner + "; " + two, {},
            RunnerStatus::Stopped, SIGKILL);
        row("KILL to the supervisor", "sleep 1000 & kill -KILL " + supervisor + "; " + two, {},
            none, SIGKILL);
    }
    void nobodyIsLeft()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, hostDoes);
        QFETCH(int, report);
        request.timeoutMs = hostDoes == "sets a time-out" ? 1 : 0;
        start("#!/bin/sh\n" + makeReady + script);
        say(HostCommand::Start);
        if (hostDoes == "stops" || hostDoes == "dies") {
            QTRY_VERIFY(QFile::exists(folder->filePath("ready")));
        }
        if (hostDoes == "stops") {
            say(HostCommand::Stop);
        } else if (hostDoes == "dies") {
            close(std::exchange(host, -1));
            QVERIFY(program->waitForFinished());
        }
        readReports();
        QCOMPARE(processesOf(folder->path()).filter(QRegularExpression(" (?!tamblin-)")),
                 QStringList());
        QCOMPARE(reportedKinds().contains(RunnerStatus::Finished), report >= 0);
        if (report >= 0) {
            QVERIFY(reportedKinds().contains(report));
            say(HostCommand::Finish);
        }
        QVERIFY(program->state() == QProcess::NotRunning || program->waitForFinished());
        QTEST(program->exitCode(), "exitCode");
        QTRY_COMPARE(processesOf(folder->path()), QStringList());
    }

    void directories_data()
    {
        const Table<QString, bool, bool> row("moment", "isFinishSaid", "isKept");
        row("host gone before the start", "before", false, false);
        row("host gone while the stitcher runs", "while", false, false);
        row("host gone after its end", "after", false, false);
        row("kept", "while", false, true);
        row("finish before the start", "before", true, false);
        row("finish while the stitcher runs", "while", true, false);
        row("finish after its end", "after", true, false);
    }
    /// The host ends without reading what it was sent, which resets the connection.
    void directories()
    {
        QFETCH(QString, moment);
        QFETCH(bool, isFinishSaid);
        QFETCH(bool, isKept);
        QVERIFY(QFile::link("../outside", folder->filePath("work/link")));
        QDir(folder->filePath("work")).mkpath("deep/er");
        request.isKept = isKept;
        start("#!/bin/sh\n" + makeReady + (moment == "while" ? "sleep 1000" : ""));
        if (moment != "before") {
            say(HostCommand::Start);
            QTRY_VERIFY(QFile::exists(folder->filePath("ready")));
        }
        if (moment == "after") {
            readReports();
        }
        if (isFinishSaid) {
            say(HostCommand::Finish);
        }
        close(std::exchange(host, -1));
        QVERIFY(program->waitForFinished());
        QCOMPARE(QFile::exists(folder->filePath("ready")), moment != "before");
        QCOMPARE(QFile::exists(folder->filePath("staging")), isFinishSaid || isKept);
        QCOMPARE(QFile::exists(folder->filePath("work")), isFinishSaid || isKept);
        QVERIFY(QFile::exists(folder->filePath("outside/file")));
    }

    void byHand()
    {
        program->start(RUNNER_PROGRAM, QStringList());
        QVERIFY(program->waitForFinished());
        QCOMPARE(program->exitCode(), 2);
        QVERIFY(program->readAllStandardError().contains("loomwright starts this program"));
    }

private:
    QString writeStitcherFile(const QByteArray &content) const
    {
        QString file = writeFile(folder->filePath("stitcher"), content);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner);
        return file;
    }

    /// Starts the runner by itself; the test is the host.
    void start(const QByteArray &stitcher)
    {
        const auto setPath = [](char(&path)[PATH_MAX], const QByteArray &text) {
            qstrncpy(path, text.constData(), sizeof path);
        };
        setPath(request.stitcher, QFile::encodeName(writeStitcherFile(stitcher)));
        setPath(request.stagingDirectory, QFile::encodeName(folder->path()) + "/staging");
        setPath(request.workDirectory, QFile::encodeName(folder->path()) + "/work");
        int ends[2] = {-1, -1};
        QVERIFY(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0);
        host = ends[0];
        QVERIFY(sendMessage(host, request));
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(processMark, folder->path());
        environment.insert(RunnerProtocol::socketVariable, QString::number(ends[1]));
        environment.insert(RunnerProtocol::pathVariable, environment.value("PATH"));
        environment.insert("PATH", "/nope:" + environment.value("PATH"));
        program->inheritedSocket = ends[1];
        program->setProcessEnvironment(environment);
        program->setWorkingDirectory(folder->path());
        program->setProcessChannelMode(QProcess::MergedChannels);
        program->start(RUNNER_PROGRAM, arguments);
        close(ends[1]);
        QVERIFY(program->waitForStarted());
    }

    void say(HostCommand command)
    {
        QVERIFY(sendMessage(host, command));
    }

    /// Reads what the runner sends until it has finished or is gone.
    void readReports()
    {
        while (const auto status = receiveMessage<RunnerStatus>(host)) {
            reports << *status;
            if (status->kind == RunnerStatus::Finished) {
                return;
            }
        }
    }

    Kinds reportedKinds() const
    {
        Kinds kinds;
        for (const RunnerStatus &status : reports) {
            kinds << status.kind;
        }
        return kinds;
    }

    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<Program> program;
    RunnerRequest request;
    QList<RunnerStatus> reports;
    int host = -1;
};

QTEST_GUILESS_MAIN(TestRunner)
#include "tst_runner.moc"
