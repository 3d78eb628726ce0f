// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/runner/runnerstatus.h"
#include "processes.h"
#include "row.h"

#include <QtTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

enum End { ByItself, AskedTo, WithTheHost, BySignal };

} // namespace

Q_DECLARE_METATYPE(End)

class TestRunner : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder.reset(new QTemporaryDir);
        program.reset(new QProcess);
        messages.clear();
    }
    void cleanup()
    {
        program.reset();
        QTRY_COMPARE(processesOf(mark()), QStringList());
    }

    void ends_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("value");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<QByteArray>("errors");
        const int exited = RunnerStatus::Exited;
        const int signaled = RunnerStatus::Signaled;
        const int failed = RunnerStatus::StartFailed;
        const QByteArray none;
        const auto script = [](const char *text) { return QByteArray("#!/bin/sh\n") + text; };
        row("exit status 0", script(""), exited, 0, none, none);
        row("exit status 3", script("exit 3"), exited, 3, none, none);
        row("crash", script("kill -SEGV $$"), signaled, SIGSEGV, none, none);
        row("no interpreter", QByteArray("#!/nope\n"), failed, ENOENT, none, none);
        row("not a program", QByteArray("hello\n"), failed, ENOEXEC, none, none);
        row("arguments", script("printf '%s|' \"$@\""), exited, 0, QByteArray("-k|a  b|-A|"), none);
        row("standard input is empty", script("cat; echo end"), exited, 0, QByteArray("end\n"),
            none);
        row("output as it comes", script("printf 'a\\nb\\000c'; printf d >&2"), exited, 0,
            QByteArray("a\nb\0c", 5), QByteArray("d"));
        row("environment",
            script("echo $PATH; env | grep '^LOOMWRIGHT_' | grep -v '^LOOMWRIGHT_TEST='"), exited,
            1, qgetenv("PATH") + '\n', none);
        row("no socket", script("ls -l /proc/self/fd | grep -c socket"), exited, 1,
            QByteArray("0\n"), none);
        row("no signal blocked", script("exec grep SigBlk /proc/self/status"), exited, 0,
            QByteArray("SigBlk:\t0000000000000000\n"), none);
        row("child that ends soon", script("(sleep 0.2; echo late) &"), exited, 0,
            QByteArray("late\n"), none);
    }
    void ends()
    {
        QFETCH(QByteArray, script);
        QFETCH(int, kind);
        QFETCH(int, value);
        start(script);
        waitForEnd();
        QCOMPARE(messages.value(1).kind, kind);
        QCOMPARE(messages.value(1).value, value);
        QVERIFY(messages.last().kind != RunnerStatus::LeftBehind);
        QTEST(program->readAllStandardOutput(), "output");
        QTEST(program->readAllStandardError(), "errors");
        if (kind == RunnerStatus::Signaled) {
            QCOMPARE(program->exitStatus(), QProcess::CrashExit);
            QCOMPARE(program->exitCode(), value); // Qt gives the signal's number here.
        } else {
            QCOMPARE(program->exitCode(), kind == RunnerStatus::Exited ? value : 127);
        }
        QVERIFY(QDir(folder->path()).entryList({"core*"}).isEmpty());
    }

    void ignoredHangUp()
    {
        const auto before = std::signal(SIGHUP, SIG_IGN);
        start("#!/bin/sh\nkill -HUP $PPID $$; sleep 0.2; exit 5");
        std::signal(SIGHUP, before);
        waitForEnd();
        QCOMPARE(messages.value(1).kind, int(RunnerStatus::Exited));
        QCOMPARE(messages.value(1).value, 5);
    }

    void nobodyIsLeft_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<End>("end");
        const QByteArray deaf = "trap '' HUP INT QUIT TERM; ";
        row("child that ignores TERM", deaf + "sleep 1000 &", ByItself);
        row("double fork in a session of its own",
            deaf + "setsid sh -c 'sleep 1000 & sleep 1000 & sleep 1000' > /dev/null 2>&1 &",
            ByItself);
        row("fork after fork",
            deaf + "export next='(: | :; exec sh -c \"$next\") &'; sh -c \"$next\"", ByItself);
        row("stopped child", QByteArray("sleep 1000 & kill -STOP $!"), ByItself);
        row("asked to, deaf", deaf + "sleep 1000 & sleep 1000", AskedTo);
        row("host gone", QByteArray("sleep 1000 & sleep 1000"), WithTheHost);
        row("host gone, all descriptors closed",
            deaf + "exec <&- >&- 2>&- 3>&- 4>&- 5>&- 6>&-; sleep 1000 & sleep 1000", WithTheHost);
        row("signal", QByteArray("setsid sleep 1000 & sleep 1000"), BySignal);
    }
    void nobodyIsLeft()
    {
        QFETCH(QByteArray, script);
        QFETCH(End, end);
        const QString ready = folder->filePath("ready");
        start("#!/bin/sh\n: > \"$" + QByteArray(processMark) + "/ready\"\n" + script);
        QTRY_VERIFY(QFile::exists(ready));
        if (end == AskedTo) {
            shutdown(host, SHUT_WR);
        } else if (end == WithTheHost) {
            close(std::exchange(host, -1));
        } else if (end == BySignal) {
            ::kill(pid_t(program->processId()), SIGTERM);
        }
        waitForEnd();
        if (end == ByItself) {
            QCOMPARE(messages.value(1).kind, int(RunnerStatus::Exited));
            QCOMPARE(messages.value(2).kind, int(RunnerStatus::LeftBehind));
        } else if (end != WithTheHost) {
            QCOMPARE(messages.value(1).kind, int(RunnerStatus::Stopped));
            QCOMPARE(messages.value(2).kind, int(RunnerStatus::Signaled));
        }
        QCOMPARE(processesOf(mark()), QStringList());
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

    void start(const QByteArray &stitcher)
    {
        const QString file = writeFile(folder->filePath("stitcher"), stitcher);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner);
        int ends[2] = {-1, -1};
        QVERIFY(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) == 0);
        host = ends[0];
        fcntl(host, F_SETFD, FD_CLOEXEC);
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(processMark, folder->path());
        environment.insert(RunnerProtocol::stitcherVariable, file);
        environment.insert(RunnerProtocol::statusVariable, QString::number(ends[1]));
        environment.insert(RunnerProtocol::lockVariable, QString::number(ends[1]));
        environment.insert(RunnerProtocol::searchPathVariable, environment.value("PATH"));
        environment.insert("PATH", "/nope:" + environment.value("PATH"));
        program->setProcessEnvironment(environment);
        program->setWorkingDirectory(folder->path());
        program->start(RUNNER_PROGRAM, {"-k", "a  b", "-A"});
        close(ends[1]);
        QVERIFY(program->waitForStarted());
    }

    /// Waits for the runner's end, and reads all that it has sent.
    void waitForEnd()
    {
        QVERIFY(program->state() == QProcess::NotRunning || program->waitForFinished());
        RunnerStatus status = {};
        while (host >= 0 && recv(host, &status, sizeof status, MSG_DONTWAIT) == sizeof status) {
            messages << status;
        }
        close(std::exchange(host, -1));
    }

    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<QProcess> program;
    QVector<RunnerStatus> messages;
    int host = -1;
};

QTEST_GUILESS_MAIN(TestRunner)
#include "tst_runner.moc"
