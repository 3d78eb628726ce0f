// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "row.h"

#include <QtTest>

#include <csignal>

namespace {

struct Run {
    int status = -1;
    QString output;
    QString errors;

    QJsonObject json() const
    {
        return QJsonDocument::fromJson(output.toUtf8()).object();
    }
};

QStringList textsOf(const QJsonArray &messages, const QString &channel)
{
    QStringList texts;
    for (const QJsonValue &message : messages) {
        if (message["channel"].toString() == channel) {
            texts << message["text"].toString();
        }
    }
    return texts;
}

} // namespace

class TestTerminal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(makeSample(samples.filePath("good")));
        QVERIFY(makeSample(samples.filePath("broken"), true));
        writeFile(samples.filePath("deep.xml"), QByteArray("<a>").repeated(200000));
    }
    void init()
    {
        folder.reset(new QTemporaryDir);
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert("PATH", folder->path() + ":" + environment.value("PATH"));
        environment.insert("TMPDIR", folder->path());
        environment.remove("QT_QPA_PLATFORM");
        environment.remove("DISPLAY");
    }

    void commands_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("errors");
        const QString none = "^$";
        const QString wrong = "Try --help";
        row("help", "--help", 0, "Exit status:\n  0  all well", none);
        row("version", "--version", 0, "^loomwright \\d+\\.\\d+\\.\\d+\n$", none);
        row("no command", "", 2, none, wrong);
        row("unknown command", "frob", 2, none, "\"frob\".*" + wrong);
        row("unknown option", "--frob info", 2, none, "frob.*" + wrong);
        row("validate what", "validate", 2, none, wrong);
        row("too many", "info me", 2, none, "\"me\".*" + wrong);
        row("set what", "-s novalue info", 2, none, "novalue.*" + wrong);
        row("timeout of no number", "build --timeout x", 2, none, wrong);
        row("timeout past int", "build --timeout 1e9", 2, none, wrong);
        row("timeout elsewhere", "check --timeout 1", 2, none, wrong);
        row("twice", "-d a -d b info", 2, none, wrong);
        row("empty name", "--directory= info", 2, none, "--directory.*" + wrong);
        row("info", "info", 0, "^   Status bridge.*Veldmark D1 Phone", none);
        row("ingredients", "-q ingredients", 0,
            "Binary Files +Host FW +Host FW Boot +input file, required, "
            "102400 bytes, Binary File",
            none);
        row("check", "-q -d GOOD -s ImageName=i.bin check", 0,
            "\npass .*14 checks: 14 passed, 0 failed\n$", none);
        row("check of the broken one", "-q -d BROKEN -s ImageName=i.bin check", 1,
            "FAIL +Presigned Controller FW +File size is incorrect .*has 95000 bytes, must have "
            "95232 bytes.*\nFAIL +Presigned Secure Annex +File path is empty\n",
            "Duplicate Ingredient found! Host FW Boot.*Offset mismatch!.*Size mismatch!");
        row("validate", "validate GOOD/platform/veldmark-d1.xml", 0,
            "Validating .*Analyzed 2 nodes.*The file is sound.\n$", none);
        row("validate the broken one", "-q validate BROKEN/platform/veldmark-d1.xml", 1,
            "^The file is not sound.\n$", "^ERROR: Offset mismatch!.*\nERROR: Size mismatch!.*\n$");
        row("validate 200,000 levels", "-q validate DEEP", 1, "^The file is not sound.\n$",
            "^ERROR: XML Document content could not be set!\n$");
        row("config alone on standard output", "-d GOOD config", 0,
            "^'This file was generated.*HostFW_1.4.2.bin\n.*Anchor", "Status bridge registered");
        row("config to a file", "-q -s HostFW=x -o c config", 1, none,
            "name or key \"HostFW\".*No configuration is written");
        row("mapping fails", "-q -f nothing.at.all ingredients", 1, "Host FW",
            "nothing.at.all did not map to any ingredients!");
        row("by key, with equals signs", "-q -s Flash-Layer=/a=b ingredients", 0,
            "Flash-Layer +/a=b ", none);
        row("relative paths", "-q -f HostFW_1.bin ingredients", 0,
            "Host FW Boot +/.*/HostFW_1.bin ", none);
        row("build of the broken one", "-q -d BROKEN build", 1, "FAIL",
            "Nothing is stitched: see the failures above");
    }
    void commands()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, output);
        QFETCH(QString, errors);
        const Run run = start(words(arguments));
        const auto matches = [](const QString &text, const QString &pattern) {
            return QRegularExpression(pattern, QRegularExpression::DotMatchesEverythingOption)
                .match(text)
                .hasMatch();
        };
        QVERIFY2(matches(run.output, output), qPrintable(run.output));
        QVERIFY2(matches(run.errors, errors), qPrintable(run.errors));
        QTEST(run.status, "status");
    }

    void plugins_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("reason");
        row("not found", "nope.so", "No plug-in found. Looked for: nope.so");
        row("a folder", ".", "is not a file that can be read");
        row("not a library", "text", "is not a shared library");
        row("no plug-in", "true", "is a library, but no plug-in");
        row("for Qt 4", "qt4", "for another Qt: for Qt 4");
        row("wrong identifier",
            QLibraryInfo::location(QLibraryInfo::PluginsPath) + "/platforms/libqoffscreen.so",
            "wrong identifier: it offers \"org.qt-project.Qt.QPA");
    }
    void plugins()
    {
        QFETCH(QString, file);
        QFETCH(QString, reason);
        writeFile(folder->filePath("text"), "hello");
        writeFile(folder->filePath("true"), readFile("/bin/true"));
        writeFile(folder->filePath("qt4"),
                  readFile("/bin/true") + "pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=4.6.2\n");
        environment.insert("LOOMWRIGHT_PLUGIN", file);
        for (const QStringList &arguments :
             {QStringList{"--json", "info"}, QStringList{"--json", "--plugin", file, "info"}}) {
            const Run run = start(arguments);
            QCOMPARE(run.status, 3);
            QVERIFY2(run.errors.contains(reason), qPrintable(run.errors));
            QVERIFY(run.json()["problem"].toString().contains(reason));
        }
    }

    void json()
    {
        const QStringList inputs = words("--json -d BROKEN -s ImageName=i.bin");
        const QHash<QString, QString> proof{{"info", "target"},    {"ingredients", "ingredients"},
                                            {"check", "summary"},  {"config", "config"},
                                            {"validate", "sound"}, {"build", "checks"}};
        for (auto it = proof.begin(); it != proof.end(); ++it) {
            QStringList arguments = inputs + QStringList(it.key());
            if (it.key() == "validate") {
                arguments << samples.filePath("good/platform/veldmark-d1.xml");
            }
            const Run run = start(arguments);
            const QJsonObject document = run.json();
            QCOMPARE(run.status, 1);
            QCOMPARE(document["exitStatus"].toInt(), 1);
            QCOMPARE(document["command"].toString(), it.key());
            QVERIFY2(!document[it.value()].isUndefined(), qPrintable(run.output));
            const QStringList errors = textsOf(document["messages"].toArray(), "error");
            QVERIFY(errors.contains("Legacy XML Data file failed validation checks"));
            QVERIFY(run.errors.contains(errors.first()));
            QVERIFY(!textsOf(document["messages"].toArray(), "status").isEmpty());
        }
        const Run quiet = start(QStringList("-q") + inputs + QStringList("check"));
        QCOMPARE(quiet.errors, QString());
        QCOMPARE(quiet.json()["summary"].toObject()["failed"].toInt(), 2);
        QCOMPARE(start(words("--json frob")).json()["exitStatus"].toInt(), 2);
    }

    void surroundings_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        row("display that is gone", "DISPLAY", ":4711");
        row("no home", "HOME", "/nonexistent");
        row("plain locale", "LC_ALL", "C");
        row("unknown locale", "LC_ALL", "de_DE.ISO-8859-1");
    }
    void surroundings()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        environment.insert(name, value);
        const Run run = start(words("-q -d GOOD -s ImageName=i.bin check"));
        QCOMPARE(run.errors, QString());
        QCOMPARE(run.status, 0);
    }

    void fullDisk()
    {
        QProcess program;
        program.setStandardOutputFile("/dev/full");
        program.start(HOST_PROGRAM, {"-q", "info"});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 1);
        QVERIFY(program.readAllStandardError().contains("could not be written"));
    }

    void build()
    {
        environment.insert("PATH", EXAMPLES_FOLDER ":" + environment.value("PATH"));
        const QString image = folder->filePath("image.bin");
        const Run run = start(words("--json -d GOOD build -o image.bin"));
        QCOMPARE(run.status, 0);
        const QByteArray first = readFile(image);
        QCOMPARE(first.left(first.indexOf("\n\n")).count(" | "), 3 * (1 + 8));
        QCOMPARE(run.json()["image"].toString(), image);
        QCOMPARE(run.json()["size"].toInt(), first.size());
        QCOMPARE(run.json()["sha256"].toString(),
                 QString(QCryptographicHash::hash(first, QCryptographicHash::Sha256).toHex()));
        QCOMPARE(start(words("-q -d GOOD build -o image.bin")).status, 0);
        QCOMPARE(readFile(image), first);
    }

    void stitchers_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("reason");
        const QByteArray write = "printf image > $image\n";
        row("missing", QByteArray(), 1, "There is no tamblin-stitcher in the search path");
        row("crashes", write + "kill -SEGV $$", 1, "was ended by signal 11 .*i.bin.partial");
        row("writes nothing", QByteArray("exit 0"), 1, "without writing");
        row("empties the image", QByteArray(": > $image"), 1, "wrote nothing into");
        row("hangs", QByteArray("exec sleep 1000"), 1, "did not end within 0.5 s");
        row("hangs stubbornly, with a child",
            QByteArray("trap '' HUP INT TERM; sleep 1000 & echo $! >> $pids; wait; sleep 1000"), 1,
            "did not end within 0.5 s");
        row("writes megabytes", write + "yes words | head -c 9000000", 0, "^$");
        row("closes its outputs", "exec >&- 2>&-; sleep 0.2; " + write, 0, "^$");
        row("closes all handles",
            QByteArray("export image; exec perl -MPOSIX -e 'POSIX::close($_) for 0..255; "
                       "select(undef, undef, undef, 0.2); open F, \">\", $ENV{image}; "
                       "print F 1; close F'"),
            0, "^$");
        row("goes on in the background", QByteArray("(sleep 1000; : > $image) > /dev/null 2>&1 &"),
            1, "ended without writing");
        row("complains and works", write + "echo wrong >&2", 0, "^wrong\n$");
    }
    void stitchers()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, reason);
        if (!script.isEmpty()) {
            writeStitcher(folder->path(),
                          "pids=" + folder->filePath("pids").toUtf8() + "; echo $$ > $pids\n"
                              + "image=$(sed -n 's/^ImageName = //p' $4)\n" + script);
        }
        const QString timeout = reason.contains("0.5") ? "0.5" : "60";
        const Run run = start(words("-q build --no-check -o i.bin --timeout " + timeout));
        QVERIFY2(QRegularExpression(reason).match(run.errors).hasMatch(), qPrintable(run.errors));
        QTEST(run.status, "status");
        QVERIFY(!isAnyoneLeft());
    }

    void interrupt_data()
    {
        QTest::addColumn<int>("number");
        row("INT", SIGINT);
        row("TERM", SIGTERM);
        row("HUP", SIGHUP);
    }
    void interrupt()
    {
        QFETCH(int, number);
        writeStitcher(folder->path(),
                      "trap '' HUP INT TERM; sleep 1000 & echo $$ $! | tr ' ' '\\n' > "
                          + folder->filePath("pids").toUtf8() + "; wait; sleep 1000");
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(folder->path());
        program.start(HOST_PROGRAM, {"-q", "build", "--no-check", "-o", "i.bin"});
        QTRY_VERIFY(readFile(folder->filePath("pids")).count('\n') == 2);
        ::kill(pid_t(program.processId()), number);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 1);
        QVERIFY(program.readAllStandardError().contains("interrupted"));
        QVERIFY(!isAnyoneLeft());
    }

private:
    /// The words of a command line, with the samples' names filled in.
    QStringList words(QString line) const
    {
        line.replace("GOOD", samples.filePath("good"))

            .replace("BROKEN", samples.filePath("broken"))
            .replace("DEEP", samples.filePath("deep.xml"));
        return line.split(' ', Qt::SkipEmptyParts);
    }

    Run start(const QStringList &arguments) const
    {
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(folder->path());
        program.start(HOST_PROGRAM, arguments);
        Run run;
        if (program.waitForFinished(60000) && program.exitStatus() == QProcess::NormalExit) {
            run.status = program.exitCode();
        }
        run.output = QString::fromUtf8(program.readAllStandardOutput());
        run.errors = QString::fromUtf8(program.readAllStandardError());
        return run;
    }

    /// Whether a process of those that the stitcher wrote down still runs.
    bool isAnyoneLeft() const
    {
        for (const QByteArray &pid : readFile(folder->filePath("pids")).split('\n')) {
            const QByteArray state = readFile("/proc/" + pid + "/stat");
            if (!pid.isEmpty() && !state.isEmpty() && !state.contains(") Z ")) {
                return true;
            }
        }
        return false;
    }

    QTemporaryDir samples;
    QScopedPointer<QTemporaryDir> folder;
    QProcessEnvironment environment;
};

QTEST_GUILESS_MAIN(TestTerminal)
#include "tst_terminal.moc"
