// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "hostprogram.h"
#include "processes.h"
#include "row.h"

#include <csignal>

class TestTerminal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QByteArray library = readFile("/bin/true");
        writeFile(host.samples.filePath("deep.xml"), QByteArray("<a>").repeated(200000));
        writeFile(host.samples.filePath("text"), "hello");
        writeFile(host.samples.filePath("true"), library);
        writeFile(host.samples.filePath("qt4"),
                  library + "pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=4.6.2\n");
    }
    void init()
    {
        host.reset();
        host.environment.insert(processMark, host.folder->path());
    }

    void commands_data()
    {
        const Table<QString, int, QString, QString> row("arguments", "status", "output", "errors");
        const QString none = "^$";
        const QString wrong = "\nTry \"loomwright --help\"\\.\n$";
        const QString wrongFor = "\nTry \"loomwright help %1\"\\.\n$";
        row("help", "--help", 0, "Commands:\n  check .*Exit status:\n  0  success", none);
        row("help on one", "help build", 0, "^Usage: .*--dry-run .*Example:\n  loomwright", none);
        row("help on none", "help frob", 2, none, "Unknown command \"frob\"");
        row("help on a mistyped one", "bild --help", 2, none, "Did you mean \"build\"");
        row("help with a mistyped option", "--frob --help", 2, none, "Unknown option");
        row("version", "--version", 0, "^loomwright \\d+\\.\\d+\\.\\d+\n$", none);
        row("no command", "", 2, none, "^loomwright: No command is given\\." + wrong);
        row("mistyped command", "bild", 2, none,
            "Unknown command \"bild\". Did you mean \"build\"\\?" + wrong);
        row("option as command", "version", 2, none, "Did you mean \"--version\"\\?" + wrong);
        row("mistyped option", "--manifets build", 2, none,
            "Unknown option \"--manifets\". Did you mean \"--manifest\"\\?" + wrong);
        row("validate what", "validate", 2, none, wrongFor.arg("validate"));
        row("too many", "info me", 2, none, "Unexpected argument \"me\"\\." + wrongFor.arg("info"));
        row("set what", "-s novalue info", 2, none, "novalue.*" + wrongFor.arg("info"));
        row("timeout of no number", "build --timeout x", 2, none, wrongFor.arg("build"));
        row("timeout past int", "build --timeout 1e9", 2, none, wrongFor.arg("build"));
        row("inputs elsewhere", "-d GOOD targets", 2, none, "targets does not take --directory");
        row("twice", "-d a -d b info", 2, none, wrongFor.arg("info"));
        row("empty name", "--directory= info", 2, none, "--directory.*" + wrongFor.arg("info"));
        row("standard input twice", "validate - -", 2, none, "only once");
        row("quiet and verbose", "-q -v info", 2, none, "cannot be combined");
        row("info", "info", 0, "^Target .*Veldmark D1 Phone.*Data views +none\n$", none);
        row("data views", "-d GOOD info", 0, "Data views +GPIO Settings\n$", none);
        row("targets", "targets", 0, "\nVeldmark D1 Phone - Unsigned Zorv +\\d", none);
        row("targets of no plug-in", "--plugin nope.so targets", 3, none, "No plug-in found");
        row("image twice", "build -o a --image b", 2, none, "cannot be combined");
        row("names and JSON", "--json ingredients --names", 2, "cannot be combined",
            "cannot be combined");
        row("plug-in not found", "--plugin nope.so info", 3, none, "Searched for: nope.so\n$");
        row("a folder as plug-in", "--plugin . info", 3, none, "is not a file that can be read");
        row("text as plug-in", "--json --plugin GOOD/../text info", 3,
            "\"kind\": \"failure\",[^}]*is not a shared library", "is not a shared library");
        row("library as plug-in", "--plugin GOOD/../true info", 3, none, "but no plug-in");
        row("plug-in for Qt 4", "--plugin GOOD/../qt4 info", 3, none, "for another Qt: for Qt 4");
        row("wrong identifier",
            "--plugin " + QLibraryInfo::location(QLibraryInfo::PluginsPath)
                + "/platforms/libqoffscreen.so info",
            3, none, "wrong identifier: it offers \"org.qt-project.Qt.QPA");
        row("target", "--target Nowhere info", 3, none, "\"Nowhere\". Targets: \"Veldmark");
        row("ingredients", "ingredients", 0,
            "Binary Files +Host FW +Host FW Boot +input file, required, "
            "102400 bytes, Binary File",
            none);
        row("check", "-d GOOD --image i.bin check", 0, "^14 checks: 14 passed, 0 failed\n$", none);
        row("check, verbose", "-v -d GOOD --image i.bin check", 0,
            "^Result .*\npass .*14 checks: 14 passed, 0 failed\n$", "Status bridge");
        row("check of the broken one", "-d BROKEN --image i.bin check", 1,
            "FAIL +Host FW +2 candidates found; HostFW_\\S+.bin is used .*/HostFW_1.4.2.bin.*\n"
            "FAIL +Legacy XML Data File +ERROR: Offset.*\nFAIL +Legacy XML Data File +ERROR: "
            "Size.*\n"
            "FAIL +Presigned Controller FW +File size is incorrect \\(required: 95232 bytes, "
            "actual: "
            "95000 bytes\\) .*\nFAIL +Presigned Secure Annex +File path is empty\n"
            "5 errors; 14 checks: 12 passed, 2 failed\n$",
            "Duplicate Ingredient found! Host FW Boot.*Offset mismatch!.*Size mismatch!");
        row("a later value settles two candidates",
            "-d BROKEN --image i.bin -s HostFW=x -f BROKEN/firmware/host/HostFW_1.4.2.bin check", 1,
            "^(?!.*candidates).*has the name or key \"HostFW\"", "Duplicate");
        const QString failed = "Legacy XML Data file failed validation checks";
        row("JSON of a check", "--json -d BROKEN --image i.bin check", 1,
            "\"command\": \"check\",\n +\"exitStatus\": 1,.*\"channel\": \"error\",\n +\"text\": \""
                + failed + ".*\"candidates\".*\"failed\": 2",
            failed);
        row("JSON, quiet", "--json -q -d BROKEN --image i.bin check", 1, failed, none);
        row("JSON of a build that is blocked", "--json -q -d BROKEN --image i.bin build", 1,
            "\"kind\": \"failure\",[^}]*\"Not building: see the errors above", "Not building");
        row("JSON of a file that is not there", "--json -q validate no.xml", 1,
            "\"kind\": \"message\"", none);
        row("validate", "validate GOOD/platform/veldmark-d1.xml", 0,
            "^Validating .*Analyzed 2 nodes.*veldmark-d1.xml: valid\n$", none);
        row("validate three",
            "-q validate BROKEN/platform/veldmark-d1.xml "
            "GOOD/platform/veldmark-d1.xml GOOD/../deep.xml",
            1, "^[^\n]*: not valid\n[^\n]*: valid\n[^\n]*: not valid\n$",
            "^ERROR: Offset mismatch!.*\nERROR: Size mismatch!.*\n"
            "ERROR: XML Document content could not be set!\nloomwright: [^\n]*deep.xml: line 1, "
            "column \\d+: Premature end of document.\n$");
        row("config alone on standard output", "-v -d GOOD config", 0,
            "^'This file was generated.*HostFW_1.4.2.bin\n.*Anchor",
            "Status bridge registered.*\"Legacy XML Data File\" is not part of a configuration");
        row("config that cannot be read back", "-s Flash-Layer=/a=b config", 0,
            "Flash-Layer = /a=b",
            "\"Host FW Supplemental\" cannot be read back from a configuration: /a=b");
        row("config to a file", "-q -s HostFW=x -o c config", 1, none,
            "name or key \"HostFW\".*No configuration is written: see the errors above");
        row("relative paths", "-q -f HostFW_1.bin ingredients", 0,
            "Host FW Boot +/.*/HostFW_1.bin ", none);
        row("build of the broken one", "-q -d BROKEN build", 1, "FAIL",
            "Not building: see the errors above. Use --no-check to build anyway.\n$");
        row("build with a rejected input", "-q -d GOOD -s XML=x build --no-check", 1, "FAIL",
            "Not building: see the errors above.\n$");
        row("line feed in a value", "-q -s Flash-Layer=/a\nb config", 1, none, "control character");
        row("build with a line feed in a value", "-q -s Flash-Layer=/a\nb build --no-check -o i", 1,
            "control character", "Not building");
        row("check with a stitcher that is none", "-q check --stitcher nope", 1,
            "FAIL +The stitcher /[^\n]*/nope does not exist", none);
        row("stitcher that is none", "-q build --no-check -o i --stitcher /etc/passwd", 1, none,
            "/etc/passwd is not executable");
    }
    void commands()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, output);
        QFETCH(QString, errors);
        const Run run = host.start(arguments);
        QVERIFY2(matches(run.output, output), qPrintable(run.output));
        QVERIFY2(matches(run.errors, errors), qPrintable(run.errors));
        QTEST(run.status, "status");
    }

    /// A plug-in with other kinds of values, and another command line.
    void secondTarget()
    {
        QFile::link(SECOND_TARGET, host.path("second.so"));
        QFile::link(PLUGIN_LIBRARY, host.path("first.so"));
        host.environment.insert("LOOMWRIGHT_PLUGIN", host.path("first.so"));
        writeFile(host.path("kernel"), "kernel");
        writeStitcher(host.folder->path(), "printf '%s\n' \"$1\" \"$2\" > \"$3\"");
        const Run run = host.shell(
            "loomwright targets; second() { loomwright --target Second \"$@\" 2>&1; }; "
            "second -s Layout=huge info; second --json -s Kernel=nowhere check; echo $?; "
            "second -q -s TITLE=big -s Layout=large -s Kernel=kernel --image i.bin project -o p; "
            "second -q -p p build; cat i.bin; loomwright -p p info 2>&1");
        QVERIFY2(matches(run.output,
                         "\nVeldmark.*\nSecond +0.1 .*Layout: \"huge\" is not one of the choices: "
                         "small, large.*\"key\": \"KERNEL\".*\n1\n.*\nlarge\nbig\n.*"
                         "is for the target \"Second\""),
                 qPrintable(run.output));
    }

    /// One that is left out in one of these places would be missing in the image, or unknown to
    /// users.
    void everyInputIsInConfigurationImageAndManual()
    {
        host.environment.insert("PATH", EXAMPLES_FOLDER ":" + host.environment.value("PATH"));
        QCOMPARE(host.start("-q -d GOOD build -o image.bin").status, 0);
        const QByteArray image = readFile(host.path("image.bin"));
        const QString contents = image.left(image.indexOf("\n\n"));
        const QString configuration = host.start("-q -d GOOD config").output;
        const QString manual = readFile(DOCS_FOLDER "/terminal.md");
        const QJsonArray ingredients
            = host.start("--json -q -d GOOD ingredients").json()["ingredients"].toArray();
        QStringList missing;
        for (const QJsonValue &ingredient : ingredients) {
            const QString name = ingredient["name"].toString();
            const QString key = ingredient["key"].toString();
            // The data file is an argument of the stitcher.
            const bool isFound = name == "Legacy XML Data File"
                || (configuration.contains('\n' + key + " = ")
                    && contents.contains('\n' + key + " | "));
            if (ingredient["input"].toBool()
                && !(isFound && manual.contains("\n| " + name + " | `"))) {
                missing << name;
            }
        }
        QCOMPARE(missing, QStringList());
    }

    /// The stitcher's output on its way; the stitcher's image is $image.
    void output_data()
    {
        const Table<QByteArray, QString, QString> row("stitcher", "script", "output");
        const QByteArray dots = "printf a; sleep 0.1; printf b; printf image > $image";
        const QByteArray much = "seq 3000000; printf image > $image";
        const QByteArray endless = "touch started; exec yes";
        const QString build = "loomwright build --no-check -o i.bin";
        const QString slowly
            = " | (sleep 0.3; grep -x '[0-9]*' | cmp - <(seq 3000000) && echo same)";
        const QString whenStarted = "while [ ! -e started ]; do sleep 0.02; done; ";
        const QString terminate = "sleep 0.3; kill -TERM $!; wait $!; echo $?; kill %1; wait";
        row("dots", dots, build, "^ab\nImage ");
        row("quiet", dots, build + " -q", "^Image ");
        row("slow reader", much, build + slowly, "^same\n$");
        row("non-blocking", much,
            "perl -MFcntl -e 'fcntl(STDOUT, F_SETFL, O_NONBLOCK); exec @ARGV' " + build + slowly,
            "^same\n$");
        row("too slow", "trap '' TERM; sleep 1000 & wait; sleep 1000",
            build + " --timeout 0.3 2>&1; echo $?",
            "^(?!.*crashed).*did not finish within 0.3 s.*\n1\n$");
        // Twice, as timeout and a closed terminal do: the clean-up goes on.
        const QByteArray deaf
            = "trap '' HUP INT TERM; sleep 1000 & touch started; wait; sleep 1000";
        const QString twice = build + " 2>&1 & " + whenStarted
            + "kill -%1 $!; sleep 0.1; kill -%1 $!; wait $!; echo $?";
        row("TERM", deaf, twice.arg("TERM"), "interrupted.*\n143\n$");
        row("HUP", deaf, twice.arg("HUP"), "interrupted.*\n129\n$");
        row("stalled reader", endless,
            "mkfifo pipe; sleep 1000 < pipe & " + build + " > pipe & " + whenStarted + terminate,
            "^143\n$");
        row("stalled reader and time-out",
            "trap 'touch ended; exit 1' TERM; yes & while :; do wait; done",
            "mkfifo pipe; sleep 1000 < pipe & reader=$!; " + build
                + " --timeout 0.3 > pipe & "
                  "while [ ! -e ended ]; do sleep 0.02; done; kill $reader; wait $!; echo $?",
            "^141\n$");
        row("stalled standard input", dots,
            "mkfifo pipe; sleep 1000 > pipe & loomwright -c - config < pipe & " + terminate,
            "^143\n$");
        row("reader that leaves", endless, build + " | head -c 2 > head; echo ${PIPESTATUS[0]}",
            "^141\n$");
        row("no reader, ignored", dots,
            "trap '' PIPE; (" + build + "; echo $? > status) | true; cat status", "^1\n$");
        row("closed", dots, build + " >&-; echo $?", "^1\n$");
        row("full disk", dots, build + " 2>&1 > /dev/full; echo $?",
            "could not be written.*\n1\n$");
        row("progress on a terminal", "printf '1%%\\r2%%\\033'; exit 1",
            "script -qec '" + build + "' /dev/null",
            "^loomwright: warning: Errors ignored because of --no-check: "
            "9.*\r\n1%\r2%\\\\u001b\r\n"
            "loomwright: The build failed");
        row("kept work", "mktemp -u > $image; exit 1",
            "IFS=; " + build
                + " --keep-work > log; work=$(sed -n 's/^Work directory: //p' log); "
                  "kept=$(sed -n 's/^Kept files: //p' log); ls $work; stat -c %a $work $kept; "
                  "grep -c ^$work/ $kept/i.bin; rm -r $work $kept",
            "^config.txt\n700\n700\n1\n$");
        // A signal is not lost between two phases of a command.
        row("interrupted at any time", "exec sleep 1000",
            "set -m; echo older > i.bin; for delay in $(seq -f 0.%03g 1 59); do "
            "[ \"$signal\" = INT ] && signal=TERM || signal=INT; "
            "loomwright -q -d 'GOOD' build -o i.bin --manifest manifest > log 2>&1 & "
            "sleep $delay; kill -$signal $!; wait $!; echo $?; done; cat i.bin; ls manifest",
            "^((130\n143\n){29})130\nolder\n$");
        row("two builds", "touch at$N; while [ ! -e go$N ]; do sleep 0.02; done; echo $N > $image",
            "N=1 " + build
                + " > log & while [ ! -e at1 ]; do sleep 0.02; done; touch go2; "
                  "N=2 "
                + build + " > log; cat i.bin; touch go1; wait; cat i.bin",
            "^2\n1\n$");
        // A program that reads the image's path sees the older image or the new one.
        row("seen from outside", "yes | head -c 100000 > $image",
            "echo older > i.bin; " + build
                + " > log & while kill -0 $!; do wc -c < i.bin >> seen; done; "
                  "wc -c < i.bin >> seen; sort -nu seen",
            "^6\n100000\n$");
        row("manifest in place of another file",
            "printf other > \"${image%/*}/m\"; printf image > $image",
            build + " --manifest m 2>&1 > log; echo $?; cat m",
            "/m is not written: the stitcher wrote that file\\.\n1\nother$");
        // As root; other users cannot mount.
        row("mounted in the work directory", "mkdir $TMPDIR/m; mount --bind kept $TMPDIR/m; exit 1",
            "mkdir kept; touch kept/file; " + build
                + "; umount loomwright-*/m; ls kept; rm -r loomwright-*",
            "(^|\n)file\n$");
        row("in a directory with a colon", dots,
            "IFS=; programs=$(dirname $(type -P loomwright)); mkdir a:b; "
            "cp -r $programs/loomwright $programs/libunsigned-zorv* $programs/libexec a:b; unset "
            "IFS; "
            "a:b/"
                + build + " --dry-run 2>&1; ls i.bin",
            "cannot be part of PATH\\.\n$");
        row("ignored HUP",
            QByteArray("touch started; while [ ! -e go ]; do sleep 0.02; done; ") + dots,
            "trap '' HUP; " + build + " & " + whenStarted
                + "kill -HUP $!; touch go; wait $!; echo $?",
            "^ab\nImage .*\n0\n$");
    }
    void output()
    {
        QFETCH(QByteArray, stitcher);
        QFETCH(QString, script);
        QFETCH(QString, output);
        writeStitcher(host.folder->path(),
                      findImage + "cd " + quoted(host.folder->path()) + '\n' + stitcher);
        const Run run = host.shell(script);
        QVERIFY2(matches(run.output, output), qPrintable(run.output + run.errors));
        QCOMPARE(processesOf(host.folder->path()), QStringList());
        const QStringList directories{"loomwright-*", ".loomwright-*"};
        QVERIFY(
            QDir(host.folder->path()).entryList(directories, QDir::Dirs | QDir::Hidden).isEmpty());
    }

    void surroundings_data()
    {
        const Table<QString, QString> row("script", "output");
        // A limit on the size of files stands for a full disk; it is in units of 1,024 bytes.
        const QString fullDisk
            = "echo old > file; trap '' XFSZ; ulimit -f %1; loomwright -q -d 'GOOD' "
              "%2 2>&1; echo $?; cat file";
        const QString unwritten = "/file cannot be written: File too large\\.\n1\nold\n$";
        row("full disk for a project", fullDisk.arg("1", "project -o file"), unwritten);
        row("full disk for a manifest", fullDisk.arg("2", "build -o i.bin --manifest file"),
            unwritten);
        row("full disk for the configuration", fullDisk.arg("0", "build -o i.bin"),
            "not started\\. Failed to save Config file.*\n1\nold\n$");
        row("variables",
            "for each in DISPLAY=:4711 'QT_QPA_PLATFORM=wayland;xcb' QT_QPA_PLATFORMTHEME=gtk3 "
            "HOME=/nonexistent LC_ALL=de_DE.ISO-8859-1; do "
            "env \"$each\" loomwright -q -d 'GOOD' --image i.bin check 2>&1; done; ls",
            "^(14 checks: 14 passed, 0 failed\n){5}tamblin-stitcher\n$");
        row("no temporary directory",
            "TMPDIR=/no/where loomwright -q -d 'GOOD' build 2>&1; echo $?",
            "TMPDIR is set to /no/where, which does not exist.\n1\n$");
        row("deleted current directory",
            "mkdir gone; cd gone; rmdir ../gone; loomwright config -o c 2>&1; echo $?; ls /c",
            "current directory no longer exists\\..*\n1\n$");
        const QString dryRun = "loomwright -q -d 'GOOD' build -o i.bin --dry-run ";
        row("dry run", dryRun + "--json | tr -d ' \\n'; " + dryRun + "| tail -n 1; ls",
            "\"commandLine\":\\[\"/[^\"]*/tamblin-stitcher\",\"-k\",\"/[^\"]*/"
            "veldmark-d1.xml\",\"-c\","
            "[^]]*\"-A\"\\],\"config\":\"[^\"]*ImageName=/[^\"]*/i.bin.*}"
            "Command line: .* -A\ntamblin-stitcher\n$");
        // Nothing can be left behind where no temporary file can be created.
        row("data file on standard input",
            "export TMPDIR=/dev/null; loomwright -q validate - < 'GOOD/platform/veldmark-d1.xml'; "
            "loomwright -q validate - < /dev/null 2> /dev/null",
            "^-: valid\n-: not valid\n$");
        row("configuration on standard input",
            "export TMPDIR=/dev/null; for line in 'Flash-Layer = /a' 'Odd = 1'; do "
            "echo \"$line\" | loomwright -q -c - ingredients 2>&1; done",
            "Flash-Layer +/a .*The configuration standard input was rejected: Nothing to");
        row("rejected inputs",
            "touch file; mkdir empty; for each in nothing file empty; do "
            "loomwright -q -d $each info 2>&1 > log; done; "
            "loomwright -q -c nothing -f file -f nothing info 2>&1 > log; echo $?",
            "nothing was rejected: it does not exist.*file was rejected: it is a file.*"
            "empty was rejected: no file name in it matches.*The configuration nothing was rejected"
            ".*file was rejected: its name matches no ingredient.*"
            "nothing was rejected: it does not exist.*\n1\n$");
        const QString remark = "loomwright: warning: The configuration c, line ";
        row("entries without effect",
            "printf '%s\\n' 'PlatformType = VKMD1' 'ImageType = OTHER' \"'Odd = 1\" 'Odd = 1' "
            "'Flash-Layer = /a' > c; loomwright -q -c c info 2>&1 > log",
            '^' + remark + "2: ImageType is \"OTHER\", but a build always uses \"FWUSB\"\n" + remark
                + "4: no ingredient has the key \"Odd\"\n$");
        const QString each
            = "do loomwright -q build --no-check -o i.bin --stitcher $each 2>&1; done";
        row("not a stitcher",
            "IFS=; mkdir plain; touch plain/tamblin-stitcher; ln -s nowhere link; "
            "runner=$(dirname $(type -P loomwright))/libexec/loomwright; "
            "for each in nope . plain/tamblin-stitcher link $runner/tamblin-stitcher; "
                + each
                + "; rm tamblin-stitcher; for path in /nope $PWD/plain $runner; do "
                  "PATH=$path:$PATH loomwright -q build --no-check -o i.bin 2>&1; done",
            "/nope does not exist.*not a regular file.*/plain/\\S+ is not executable.*"
            "/link is a symlink that leads nowhere.*is not the stitcher.*"
            "There is no tamblin-stitcher in PATH.*/plain/\\S+ is not executable.*"
            "There is no tamblin-stitcher in PATH\\.\n$");
        row("a stitcher behind one that cannot be executed",
            "mkdir plain; touch plain/tamblin-stitcher; cd plain; "
            "for each in '' '--stitcher ../tamblin-stitcher'; do "
            "PATH=/nope:$PWD:$PATH loomwright build --no-check -o i.bin $each --json 2>&1 "
            "| grep -A 3 '\"stitcher\"'; done",
            "(.*\"file\": \"/[^\n]*[^n]/tamblin-stitcher\"){2}");
        // Because it is what the file is made of, or cannot be written.
        row("not overwritten",
            "mkdir drop; echo precious | tee drop/HostFW_1.bin > /dev/null; "
            "echo 'Flash-Layer = /a' > c; ln -s drop/HostFW_1.bin soft.bin; while read -r line; do "
            "loomwright -q $line > log 2>&1; echo $? $(grep -cE 'same file|that was loaded|"
            "is the image|none/. cannot be written: No such' log); done << END\n"
            "-d drop -o soft.bin config\n"
            "-c c -d drop -o c config\n"
            "-d drop -o soft.bin project\n"
            "-d drop --image i.bin build --no-check --manifest soft.bin\n"
            "-d drop --image i.bin build --no-check --manifest tamblin-stitcher\n"
            "-d drop --image i.bin build --no-check --manifest i.bin\n"
            "-d drop --image i.bin build --no-check --manifest none/m\n"
            "project -o none/p\n"
            "END\ncat drop/* c; ls",
            "^(1 1\n){8}precious\nFlash-Layer = /a\nc\ndrop\nlog\nsoft.bin\ntamblin-stitcher\n$");
        row("files that are written",
            "echo old > old; chmod 660 old; ln -s old link; ln -s gone dangling; "
            "mkfifo fifo; for each in new old link dangling fifo . none/x; do "
            "loomwright -s Flash-Layer=/x$each -o $each config 2>&1; done; "
            "stat -c %a old; grep -h Flash-Layer new old; ls -A",
            "^(Configuration written to /[^\n]*/(new|old)\n){3}"
            ".*symlink to a file that does not exist.*not a regular file.*not a regular file.*"
            "No such file or directory.*\n660\nFlash-Layer = /xnew\nFlash-Layer = /xlink\n"
            "dangling\nfifo\nlink\nnew\nold\ntamblin-stitcher\n$");
        // Each has an example, and no line is wider than a terminal.
        row("help on each command",
            "loomwright --help | sed -n '/^Commands:/,/^$/s/^  \\([a-z]*\\) .*/\\1/p' "
            "| xargs -n 1 loomwright help | grep -cE 'Example:|.{80}'",
            "^10\n$");
        const QString drop = "mkdir drop; : > drop/$'HostFW_\\e[2Jx.bin'; ";
        row("escape sequence in a pipe", drop + "loomwright -d drop ingredients",
            "/HostFW_\033\\[2Jx\\.bin");
        row("escape sequence on a terminal",
            drop + "script -qec 'loomwright -v -d drop ingredients' /dev/null",
            "^(?!.*\033\\[2J).*/HostFW_\\\\u001b\\[2Jx\\.bin");
        row("colour on a terminal", "TERM=xterm script -qec 'loomwright -q validate /' /dev/null",
            "\n\033\\[31m/: not valid\033\\[0m\r\n$");
    }
    void surroundings()
    {
        QFETCH(QString, script);
        QFETCH(QString, output);
        writeStitcher(host.folder->path(), findImage + "printf image > $image");
        const Run run = host.shell(script);
        QVERIFY2(matches(run.output, output), qPrintable(run.output + run.errors));
    }

private:
    HostProgram host;
};

QTEST_GUILESS_MAIN(TestTerminal)
#include "tst_terminal.moc"
