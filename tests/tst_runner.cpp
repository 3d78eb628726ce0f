// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/stitcherrun.h"
#include "host/runner/runnerprotocol.h"
#include "processes.h"
#include "row.h"

#include <QtTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

using Kinds = QList<int>;

/// What happens to a running stitcher.
enum Stimulus { Nothing, StopIt, TimeOut, HostGone, SignalRunner, SignalSupervisor };

/// When the connection ends.
enum Moment { BeforeStart, WhileItRuns, AfterItsEnd };

const int answerTimeoutMs = 20000;
const int maxDescriptor = 1024;
const QStringList arguments = {"-k", "a  b", "-A"};

/// The variable that leads a script to the directory of the test.
const QByteArray folderVariable = '$' + QByteArray(processMark);

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

Q_DECLARE_METATYPE(Stimulus)
Q_DECLARE_METATYPE(Moment)

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
        QTRY_COMPARE(processesOf(mark()), QStringList());
    }

    void ends_data()
    {
        columns<QByteArray, Kinds, int, QByteArray, QByteArray, int>(
            "script", "kinds", "value", "output", "errors", "ignoredSignal");
        const auto exited = [](const char *name, int status, const QByteArray &script,
                               const QByteArray &output = {}, const QByteArray &errors = {},
                               int ignoredSignal = 0) {
            row(name, "#!/bin/sh\n" + script,
                Kinds{RunnerStatus::Started, RunnerStatus::Exited, RunnerStatus::Finished}, status,
                output, errors, ignoredSignal);
        };
        const auto other = [](const char *name, const Kinds &kinds, int value,
                              const QByteArray &script) {
            row(name, script, Kinds{RunnerStatus::Started} + kinds + Kinds{RunnerStatus::Finished},
                value, QByteArray(), QByteArray(), 0);
        };
        exited("exit status 0", 0, "");
        exited("exit status 3", 3, "exit 3");
        exited("arguments", 0, "printf '%s|' \"$@\"", "-k|a  b|-A|");
        exited("standard input is empty", 0, "cat; echo end", "end\n");
        exited("output as it comes", 0, "printf 'a\\nb\\000c'; printf d >&2",
               QByteArray("a\nb\0c", 5), "d");
        exited("PATH", 0, "echo $PATH", qgetenv("PATH") + '\n');
        exited("the stitcher inherits no descriptor and none of the runner's variables", 0,
               "env | grep ^LOOMWRIGHT_ | cut -d= -f1; exec ls /proc/self/fd",
               processMark + QByteArray("\n0\n1\n2\n3\n")); // The last one is that of ls.
        exited("no signal blocked", 0, "exec grep SigBlk /proc/self/status",
               "SigBlk:\t0000000000000000\n");
        exited("child that ends soon", 0, "(sleep 0.2; echo late) &", "late\n");
        exited("HUP is ignored", 5, "kill -HUP $PPID $$; exit 5", {}, {}, SIGHUP);
        exited("CHLD is ignored", 5, "exit 5", {}, {}, SIGCHLD);
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
        QCOMPARE(reportedKinds(), kinds);
        QCOMPARE(reports[0].value, int(program->processId()));
        QCOMPARE(reports[1].value, value);
        say(HostCommand::Finish);
        QVERIFY(program->waitForFinished());
        QTEST(program->readAllStandardOutput(), "output");
        QTEST(program->readAllStandardError(), "errors");
        const bool crashed = kinds.contains(RunnerStatus::Signaled);
        QCOMPARE(program->exitStatus(), crashed ? QProcess::CrashExit : QProcess::NormalExit);
        // QProcess gives the signal's number here as well.
        QCOMPARE(program->exitCode(), kinds.contains(RunnerStatus::StartFailed) ? 127 : value);
        QVERIFY(QDir(folder->path()).entryList({"core*"}).isEmpty());
    }

    void nobodyIsLeft_data()
    {
        columns<QByteArray, Stimulus, int, int, int>("script", "stimulus", "signalNumber", "report",
                                                     "exitCode");
        const QByteArray deaf = "trap '' HUP INT QUIT TERM; ";
        const auto behind = [](const char *name, const QByteArray &script) {
            row(name, script, Nothing, 0, int(RunnerStatus::LeftBehind), 0);
        };
        behind("child that ignores TERM", deaf + "sleep 1000 &");
        behind("double fork in a session of its own",
               deaf + "setsid sh -c 'sleep 1000 & sleep 1000 & sleep 1000' > /dev/null 2>&1 &");
        behind("fork after fork",
               deaf + "export next='(: | :; exec sh -c \"$next\") &'; sh -c \"$next\"");
        behind("stopped child", "sleep 1000 & kill -STOP $!");

        const QByteArray two = "setsid sleep 1000 & sleep 1000";
        const int none = -1;
        row("time-out", two, TimeOut, 0, int(RunnerStatus::TimedOut), 124);
        row("stop", two, StopIt, 0, int(RunnerStatus::Stopped), 128 + SIGTERM);
        row("stop, deaf", deaf + two, StopIt, 0, int(RunnerStatus::Stopped), 128 + SIGTERM);
        row("host gone", two, HostGone, 0, none, 128 + SIGTERM);
        row("host gone, all descriptors closed",
            deaf + "exec <&- >&- 2>&- 3>&- 4>&- 5>&- 6>&-; " + two, HostGone, 0, none,
            128 + SIGTERM);
        row("TERM to the runner", two, SignalRunner, SIGTERM, int(RunnerStatus::Stopped),
            128 + SIGTERM);
        row("TERM to the supervisor", two, SignalSupervisor, SIGTERM, int(RunnerStatus::Stopped),
            128 + SIGTERM);
        // These two end the process at once, so QProcess gives the signal's number.
        for (const auto &[name, number] :
             {std::pair("KILL", SIGKILL), std::pair("USR1", SIGUSR1)}) {
            row(QByteArray(name) + " to the runner", two, SignalRunner, number,
                int(RunnerStatus::Stopped), number);
            row(QByteArray(name) + " to the supervisor", two, SignalSupervisor, number, none,
                number);
        }
    }
    void nobodyIsLeft()
    {
        QFETCH(QByteArray, script);
        QFETCH(Stimulus, stimulus);
        QFETCH(int, signalNumber);
        QFETCH(int, report);
        request.timeoutMs = stimulus == TimeOut ? 1 : 0;
        start("#!/bin/sh\n: > \"" + folderVariable + "/ready\"\n" + script);
        say(HostCommand::Start);
        if (stimulus != TimeOut) {
            QTRY_VERIFY(QFile::exists(folder->filePath("ready")));
        }
        const auto runner = pid_t(program->processId());
        if (stimulus == StopIt) {
            say(HostCommand::Stop);
        } else if (stimulus == HostGone) {
            close(std::exchange(host, -1));
            QVERIFY(program->waitForFinished());
        } else if (stimulus == SignalRunner) {
            ::kill(runner, signalNumber);
        } else if (stimulus == SignalSupervisor) {
            ::kill(childOf(runner), signalNumber);
        }
        readReports();
        QCOMPARE(processesOf(mark()).filter(QRegularExpression(" (?!tamblin-)")), QStringList());
        if (report >= 0) {
            QVERIFY(reportedKinds().contains(report));
            QCOMPARE(reportedKinds().last(), int(RunnerStatus::Finished));
            say(HostCommand::Finish);
        } else {
            QVERIFY(!reportedKinds().contains(RunnerStatus::Finished));
        }
        QVERIFY(program->state() == QProcess::NotRunning || program->waitForFinished());
        QTEST(program->exitCode(), "exitCode");
        QTRY_COMPARE(processesOf(mark()), QStringList());
    }

    void directories_data()
    {
        columns<Moment, bool, bool, bool>("moment", "isFinishSaid", "isKept", "isRemoved");
        row("host gone before the start", BeforeStart, false, false, true);
        row("host gone while the stitcher runs", WhileItRuns, false, false, true);
        row("host gone after its end", AfterItsEnd, false, false, true);
        row("kept", WhileItRuns, false, true, false);
        row("finish before the start", BeforeStart, true, false, false);
        row("finish while the stitcher runs", WhileItRuns, true, false, false);
        row("finish after its end", AfterItsEnd, true, false, false);
    }
    /// The host ends without reading what it was sent, which resets the connection.
    void directories()
    {
        QFETCH(Moment, moment);
        QFETCH(bool, isFinishSaid);
        QFETCH(bool, isKept);
        QFETCH(bool, isRemoved);
        QVERIFY(QFile::link("../outside", folder->filePath("work/link")));
        QDir(folder->filePath("work")).mkpath("deep/er");
        request.isKept = isKept;
        start("#!/bin/sh\n: > \"" + folderVariable + "/ready\"\nsleep "
              + (moment == WhileItRuns ? "1000" : "0"));
        if (moment != BeforeStart) {
            say(HostCommand::Start);
            QTRY_VERIFY(QFile::exists(folder->filePath("ready")));
        }
        if (moment == AfterItsEnd) {
            readReports();
        }
        if (isFinishSaid) {
            say(HostCommand::Finish);
        }
        close(std::exchange(host, -1));
        QVERIFY(program->waitForFinished());
        QCOMPARE(QFile::exists(folder->filePath("ready")), moment != BeforeStart);
        QCOMPARE(!QFile::exists(folder->filePath("staging")), isRemoved);
        QCOMPARE(!QFile::exists(folder->filePath("work")), isRemoved);
        QVERIFY(QFile::exists(folder->filePath("outside/file")));
    }

    void hostsEnd_data()
    {
        columns<bool, bool, QStringList, int>("isStarted", "isPermitted", "emissions",
                                              "exitStatus");
        row("run", true, true, QStringList{"started", "stitcherEnded", "ended"}, 4);
        row("dry run", true, false, QStringList{"started", "stitcherEnded", "ended"}, -1);
        row("nothing started", false, false, QStringList{"stitcherEnded", "ended"}, -1);
    }
    void hostsEnd()
    {
        QFETCH(bool, isStarted);
        QFETCH(bool, isPermitted);
        QFETCH(QStringList, emissions);
        const QByteArray path = qgetenv("PATH");
        StitcherRun run;
        QStringList emitted;
        QStringList commandLine;
        connect(&run, &StitcherRun::started, this, [&] {
            emitted << "started";
            commandLine = run.commandLine();
            isPermitted ? run.permit() : run.finish();
        });
        connect(&run, &StitcherRun::stitcherEnded, this, [&] {
            emitted << "stitcherEnded";
            run.finish();
        });
        connect(&run, &StitcherRun::ended, this, [&] { emitted << "ended"; });
        startBy(run, "#!/bin/sh\n[ $TMPDIR = " + folderVariable + "/work ] && exit 4\n", isStarted);
        QCOMPARE(emitted, QStringList());
        QCOMPARE(qgetenv("PATH"), path);
        QTRY_VERIFY(emitted.contains("ended"));
        QCOMPARE(emitted, emissions);
        QCOMPARE(commandLine, isStarted ? arguments : QStringList());
        QTEST(run.exitStatus(), "exitStatus");
        QVERIFY(QFile::exists(folder->filePath("staging/file")));
    }

    void hostsEndDeleted()
    {
        auto run = std::make_unique<StitcherRun>();
        startBy(*run, "#!/bin/sh\n: > " + folderVariable + "/ready; sleep 1000 & setsid sleep 1000",
                true);
        run->permit();
        QTRY_VERIFY(QFile::exists(folder->filePath("ready")));
        run.reset();
        QCOMPARE(processesOf(mark()), QStringList());
        QVERIFY(program->waitForFinished());
        QVERIFY(QFile::exists(folder->filePath("staging/file")));
    }

    void byHand()
    {
        program->start(RUNNER_PROGRAM, QStringList());
        QVERIFY(program->waitForFinished());
        QCOMPARE(program->exitCode(), 2);
        QVERIFY(program->readAllStandardError().contains("loomwright starts this program"));
    }

private:
    QByteArray mark() const
    {
        return QFile::encodeName(folder->path());
    }

    QString writeStitcherFile(const QByteArray &content) const
    {
        QString file = writeFile(folder->filePath("stitcher"), content);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner);
        return file;
    }

    /// Starts the runner by itself; the test is the host.
    void start(const QByteArray &stitcher)
    {
        request.stitcher = QFile::encodeName(writeStitcherFile(stitcher)).toStdString();
        request.stagingDirectory = (mark() + "/staging").toStdString();
        request.workDirectory = (mark() + "/work").toStdString();
        const std::string message = request.serialize();
        int ends[2] = {-1, -1};
        QVERIFY(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0);
        host = ends[0];
        QVERIFY(send(host, message.data(), message.size(), 0) > 0);
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(processMark, folder->path());
        environment.insert(RunnerProtocol::socketVariable, QString::number(ends[1]));
        environment.insert(RunnerProtocol::pathVariable, environment.value("PATH"));
        environment.insert("PATH", "/nope:" + environment.value("PATH"));
        program->inheritedSocket = ends[1];
        program->setProcessEnvironment(environment);
        program->setWorkingDirectory(folder->path());
        program->start(RUNNER_PROGRAM, arguments);
        close(ends[1]);
        QVERIFY(program->waitForStarted());
    }

    /// Starts the runner as a plug-in does; @p run is the host.
    void startBy(StitcherRun &run, const QByteArray &stitcher, bool isStarted)
    {
        const StitcherRequest parameters
            = {writeStitcherFile(stitcher), folder->filePath("staging"), folder->filePath("work")};
        qputenv(processMark, mark());
        const QString problem = run.start(parameters, [&] {
            if (isStarted) {
                program->start("tamblin-stitcher", arguments);
            }
        });
        qunsetenv(processMark);
        QCOMPARE(problem, QString());
    }

    void say(HostCommand command)
    {
        QVERIFY(send(host, &command, sizeof command, MSG_NOSIGNAL) == sizeof command);
    }

    /// Reads what the runner sends until it has finished or is gone.
    void readReports()
    {
        RunnerStatus status = {};
        pollfd source = {host, POLLIN, 0};
        while (host >= 0 && status.kind != RunnerStatus::Finished) {
            int ready = -1;
            do {
                ready = poll(&source, 1, answerTimeoutMs);
            } while (ready == -1 && errno == EINTR);
            QVERIFY(ready == 1);
            if (recv(host, &status, sizeof status, 0) != sizeof status) {
                return;
            }
            reports << status;
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

    static pid_t childOf(pid_t process)
    {
        return readFile(QString("/proc/%1/task/%1/children").arg(process)).trimmed().toInt();
    }

    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<Program> program;
    RunnerRequest request;
    QList<RunnerStatus> reports;
    int host = -1;
};

QTEST_GUILESS_MAIN(TestRunner)
#include "tst_runner.moc"
