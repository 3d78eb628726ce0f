// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "execution/externalunsignedzorvexecutionmanager.h"
#include "files.h"
#include "manager/externalunsignedzorvingredientmanager.h"
#include "observers.h"
#include "qtcompat.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

int openDescriptors()
{
    return QDir("/proc/self/fd").entryList(QDir::Files | QDir::System).count();
}

bool isSignalToAll = false;
bool isForkFailing = false;

} // namespace

// The system's headers have other names of parameters, and the analyzer does not know va_start().
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name, clang-analyzer-valist.Uninitialized)

/// Replaces the system's function for Qt as well. Nothing may send a signal to all processes.
extern "C" Q_DECL_EXPORT int kill(pid_t process, int number)
{
    isSignalToAll = isSignalToAll || process <= 0;
    return process <= 0 ? -1 : int(syscall(SYS_kill, process, number));
}

/// The same: how Qt 5 forks.
extern "C" Q_DECL_EXPORT long syscall(long number, ...)
{
    typedef long (*Function)(long, ...);
    static const Function original = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "syscall"));
    va_list list;
    va_start(list, number);
    long values[6];
    for (int i = 0; i < 6; ++i) {
        values[i] = va_arg(list, long);
    }
    va_end(list);
    if (isForkFailing && number == SYS_clone) {
        errno = EAGAIN;
        return -1;
    }
    return original(number, values[0], values[1], values[2], values[3], values[4], values[5]);
}

/// The same: how Qt 4 forks.
extern "C" Q_DECL_EXPORT pid_t fork()
{
    errno = EAGAIN;
    return isForkFailing ? -1 : pid_t(syscall(SYS_clone, long(SIGCHLD), 0L, 0L, 0L, 0L, 0L));
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name, clang-analyzer-valist.Uninitialized)

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
        // In the order of the root object.
        ingredients.reset();
        manager.reset();
    }

    void checksFromWithinTheReset()
    {
        IngredientModel *model = ingredients->getIngredients();
        const SignalHook reset(manager->getIngredientChecks(), SIGNAL(modelReset()), [&] {
            if (manager->getIngredientCheckSummary().checkCount > 0) {
                const QModelIndexList cells = model->ingredientCells();
                for (const QModelIndex &cell : cells) {
                    model->setData(cell, false, VisibilityRole);
                }
                QVERIFY(manager->verifyInputs());
            }
        });
        QVERIFY(!manager->verifyInputs());
    }

    void errorTexts()
    {
        // In the order of QProcess::ProcessError.
        const QStringList texts = listOf(
            "E The process failed to start. Either the invoked program is missing, or you may have "
            "insufficient permissions to invoke the program.",
            "E The process crashed some time after starting successfully.",
            "E The last waitFor...() function timed out. The state of QProcess is unchanged, and "
            "you can try calling waitFor...() again.",
            "E An error occurred when attempting to read from the process. For example, the "
            "process may not be running.",
            "E An error occurred when attempting to write to the process. For example, the process "
            "may not be running, or it may have closed its input channel.",
            "E An unknown error occurred. This is the default return value of error().");
        for (int error = -1; error <= texts.count(); ++error) {
            manager->processCommandLineError(static_cast<QProcess::ProcessError>(error));
        }
        QCOMPARE(log->take(), texts); // The values before and after have no text.
    }

    void outputIsRelayedInChunks()
    {
        const QString go = folder->filePath("go");
        writeStitcher(folder->path(),
                      "printf ' one\\n\\ntwo'; while [ ! -e " + quoted(go)
                          + " ]; do sleep 0.01; done; printf 'three\\0four'");
        manager->beginExecution();
        log->take();
        QVERIFY(waitForOutput("two"));
        QCOMPARE(output, listOf("S  one\n\ntwo"));

        // A second start is refused and cancelling only reports: the run goes on to its end.
        QTest::ignoreMessage(QtWarningMsg, "QProcess::start: Process is already running");
        manager->beginExecution();
        manager->cancelExecution();
        log->take();
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

    void crash()
    {
        writeStitcher(folder->path(), "kill -SEGV $$");
        for (int round = 0; round < 2; ++round) { // The manager stays usable.
            output.clear();
            manager->beginExecution();
            QVERIFY(waitForOutput("E The process crashed"));
        }
    }

    void fewDescriptorsAreLeft()
    {
        writeStitcher(folder->path(), "exit 0");
        rlimit before = {};
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
        for (rlim_t left = 1; left < 20; ++left) {
            rlimit few = before;
            few.rlim_cur = rlim_t(openDescriptors()) + left;
            QCOMPARE(setrlimit(RLIMIT_NOFILE, &few), 0);
            manager->beginExecution();
            setrlimit(RLIMIT_NOFILE, &before);
            output += log->take();
            manager.reset(new ExternalUnsignedZorvExecutionManager(ingredients.data()));
            log.reset(new MessageLog(manager.data()));
        }
        QVERIFY(!output.filter("E The process failed to start.").isEmpty());
        QVERIFY(!isSignalToAll);
    }

    void forkFails()
    {
        init(); // The process that is abandoned leaks, as tests/leaks.supp says.
        writeStitcher(folder->path(), "echo done");
        isForkFailing = true;
        manager->beginExecution();
        QVERIFY(waitForOutput("E The process failed to start."));
        const int descriptors = openDescriptors();
        manager->beginExecution();
        isForkFailing = false;
        QCOMPARE(openDescriptors(), descriptors);
        manager->beginExecution();
        QVERIFY(waitForOutput("S done"));
        manager.reset();
        QVERIFY(!isSignalToAll);
    }

    void unsavedConfigurationStartsNothing()
    {
        const QString file = writeFile(folder->filePath("file"), "");
        qputenv("TMPDIR", QFile::encodeName(file));
        manager->setWorkingDirectory("/before");
        manager->beginExecution();
        QCOMPARE(log->take(1), listOf("E Failed to save Config file to " + file + "/config.txt"));
        QCOMPARE(manager->getWorkingDirectory(), QString("/before"));
    }

private:
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
