// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "hostprogram.h"
#include "row.h"

#include <csignal>
#include <sys/stat.h>

/// Project files, manifests, and the JSON that the terminal host writes.
class TestProject : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        host.reset();
        QVERIFY(QDir(host.folder->path()).mkdir("work"));
        QVERIFY(makeSample(host.path("work/drop")));
        host.environment.insert("PATH", EXAMPLES_FOLDER ":" + host.environment.value("PATH"));
    }

    void roundTrip()
    {
        QCOMPARE(run("-d work/drop --image work/i.bin project -o work/p.json").status, 0);
        const QByteArray written = readFile(host.path("work/p.json"));
        QVERIFY(written.contains("\"drop/platform/veldmark-d1.xml\""));
        QVERIFY(written.contains("\"i.bin\""));
        // Elsewhere, with all that it names.
        QVERIFY(QDir(host.folder->path()).rename("work", "moved"));
        QCOMPARE(run("-p moved/p.json check").status, 0);
        QCOMPARE(run("-p moved/p.json project -o moved/p.json").status, 0);
        QCOMPARE(readFile(host.path("moved/p.json")), written);
        // Later inputs come on top of it.
        QVERIFY(matches(run("-p moved/p.json -s Flash-Layer=/x ingredients").output,
                        "Flash-Layer +/x .*Vendor Signed FW +/.*moved/drop"));
        QVERIFY(run("-p moved/p.json project").output.contains("\"moved/i.bin\""));
    }

    void unusable_data()
    {
        const Table<QByteArray, QString> row("content", "problem");
        row("no JSON", "{\n\"a\": }", "p.json: line 2: not valid JSON");
        row("a list", "[]", "it is not a JSON object");
        row("no version", "{}", "\"schemaVersion\" is missing");
        row("newer", "{\"schemaVersion\": 2}", "schemaVersion is 2, but this program");
        row("wrong type", project("{}").replace("\"T\"", "7"), "\"target\" is not a text");
        row("unknown key", project("[], \"extra\": 1"), "unknown member \"extra\"");
        row("other target", project("[]").replace("\"T\"", "\"X\""), "is for the target \"X\"");
        row("unknown ingredient", project(entry("nope", "\"text\": \"\"")),
            "\"nope\": The target has no such ingredient");
        row("no value", project(entry("Flash-Layer", "\"size\": 1")),
            "ingredients\\[0\\]: one of \"file\", \"choice\" and \"text\" is needed");
        row("wrong kind", project(entry("Flash-Layer", "\"text\": \"x\"")),
            "\"Flash-Layer\": It is a text in the file, but a file in the target");
        row("wrong hash", project(entry("Flash-Layer", "\"file\": \"x\", \"sha256\": \"12\"")),
            "is not a SHA-256");
        row("named twice",
            project(entry("Flash-Layer", "\"file\": \"x\"").chopped(1) + ", "
                    + entry("Flash-Layer", "\"file\": \"y\"").mid(1)),
            "p.json: The ingredient \"Flash-Layer\" occurs twice");
        row("second one wrong",
            project(entry("Flash-Layer", "\"file\": \"x\"").chopped(1) + ", "
                    + entry("nope", "\"file\": \"\"").mid(1)),
            "\"nope\": The target has no such ingredient");
    }
    void unusable()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, problem);
        content.replace("\"T\"", "\"Veldmark D1 Phone - Unsigned Zorv\"");
        writeFile(host.path("p.json"), content);
        const Run run = this->run("-p p.json ingredients");
        QCOMPARE(run.status, 1);
        QVERIFY2(matches(run.errors, problem), qPrintable(run.errors));
        QVERIFY2(matches(run.output, "Flash-Layer  +input file"), qPrintable(run.output));
    }

    void manifest()
    {
        const QJsonObject report
            = run("--json -d work/drop build -o work/i.bin --manifest work/m.json").json();
        QCOMPARE(report["image"].toString(), host.path("work/i.bin"));
        QCOMPARE(report["size"].toInt(), int(QFileInfo(host.path("work/i.bin")).size()));
        QCOMPARE(report["sha256"].toString(), hashOf("work/i.bin"));
        const QJsonObject manifest
            = QJsonDocument::fromJson(readFile(host.path("work/m.json"))).object();
        const QJsonValue build = manifest["build"];
        QCOMPARE(build["image"]["file"].toString(), QString("i.bin"));
        QCOMPARE(build["image"]["sha256"].toString(), hashOf("work/i.bin"));
        QCOMPARE(build["stitcher"]["exitStatus"].toInt(-1), 0);
        QCOMPARE(build["stitcher"]["file"].toString(),
                 QString(EXAMPLES_FOLDER "/tamblin-stitcher"));
        QVERIFY(build["configuration"].toString().contains("Flash-Layer = /"));
        QCOMPARE(manifest.value("ingredients")[1]["sha256"].toString(),
                 hashOf("work/drop/platform/veldmark-d1.xml"));

        QCOMPARE(run("-p work/m.json --locked build -o again.bin").status, 0);
        QCOMPARE(readFile(host.path("again.bin")), readFile(host.path("work/i.bin")));
        QVERIFY(run("-p work/m.json project -o work/m.json").errors.contains("that was loaded"));
        QVERIFY(QFile::link("work", host.path("link")));
        for (const QString recorded : {"work/m.json", "link/m.json"}) {
            QCOMPARE(run("verify " + recorded).output,
                     recorded + ": 11 files compared, 0 different\n");
        }
    }

    void differences_data()
    {
        const Table<QString, QByteArray, QString> row("file", "content", "difference");
        row("size", "work/drop/presigned/Controller_Signed.bin", "x",
            "Presigned Controller FW +The size differs");
        row("content", "work/drop/firmware/probe/D1_ProbeSet.bin", QByteArray(31120, 'x'),
            "Probe Set +The content differs");
        row("gone", "work/drop/firmware/probe/D1_ProbeSet.bin", {}, "Probe Set +It does not exist");
        row("FIFO", "work/drop/firmware/probe/D1_ProbeSet.bin", "FIFO",
            "Probe Set +It is not a regular file");
        row("image", "work/i.bin", "x", "");
    }
    void differences()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, difference);
        QCOMPARE(run("-d work/drop build -o work/i.bin --manifest work/m.json").status, 0);
        QVERIFY(QFile::remove(host.path(file)));
        if (content == "FIFO") {
            QCOMPARE(mkfifo(QFile::encodeName(host.path(file)).constData(), 0600), 0);
        } else if (!content.isEmpty()) {
            writeFile(host.path(file), content);
        }
        const Run verified = run("verify work/m.json");
        QCOMPARE(verified.status, 1);
        QVERIFY2(
            matches(verified.output,
                    difference + ".*" + file + "\nwork/m.json: 11 files compared, 1 different\n$"),
            qPrintable(verified.output));
        check("report",
              writeFile(host.path("r.json"), run("--json verify work/m.json").output.toUtf8()));
        // The image is no input: it may be built again.
        const Run locked = run("-p work/m.json --locked build --no-check");
        QCOMPARE(locked.status, difference.isEmpty() ? 0 : 1);
        QVERIFY2(matches(locked.output, difference), qPrintable(locked.output));
    }

    void stoppedWhileHashing()
    {
        run("-d work/drop build -o work/i.bin --manifest work/m.json");
        QVERIFY(QFile::resize(host.path("work/i.bin"), qint64(8) << 30));
        const Run stopped = host.shell(
            "loomwright verify work/m.json & while ! ls -l /proc/$!/fd | grep -q 'i.bin$'; "
            "do sleep 0.01; done; kill -TERM $!; wait $!");
        QCOMPARE(stopped.status, 128 + SIGTERM);
        QVERIFY(stopped.errors.contains("The comparison was interrupted"));
    }

    void lockedElsewhere()
    {
        run("-d work/drop build -o work/i.bin --manifest work/m.json");
        run("-d work/drop --image work/i.bin project -o p.json");
        QVERIFY(run("-p p.json --locked check").output.contains("is not a manifest"));
        QVERIFY(run("verify p.json").errors.contains("records no build"));
        QCOMPARE(run("--locked check").status, 2);
        const QString other
            = "-s ImageName=x -s Secure_Annex_FW=work/drop/firmware/probe/D1_ProbeSet.bin";
        QVERIFY(matches(run("-p work/m.json --locked " + other + " check").output,
                        "Presigned Secure Annex +The size differs"));
    }

    void anotherStitcher()
    {
        QVERIFY(QFile::copy(EXAMPLES_FOLDER "/tamblin-stitcher", host.path("tamblin-stitcher")));
        const QString stitcher = " --stitcher tamblin-stitcher";
        QCOMPARE(run("-d work/drop build -o work/i.bin --manifest work/m.json" + stitcher).status,
                 0);
        QCOMPARE(run("-p work/m.json --locked build -o again.bin").status, 0); // Same content.
        QCOMPARE(host.shell("echo >> tamblin-stitcher").status, 0);
        const Run locked = run("-p work/m.json --locked build -o other.bin" + stitcher);
        QCOMPARE(locked.status, 1);
        QVERIFY(matches(locked.output, "The stitcher +The content differs"));
        QVERIFY(!QFile::exists(host.path("other.bin")));
        QVERIFY(matches(run("verify work/m.json").output, "The stitcher +The content differs"));
        QVERIFY(QFile::remove(host.path("tamblin-stitcher")));
        const Run verified = run("verify work/m.json");
        QCOMPARE(verified.status, 0);
        QVERIFY2(
            matches(verified.output, "10 files compared, 0 different; the stitcher .* was not"),
            qPrintable(verified.output));
    }

    /// A stitcher that puts a symlink in the manifest's place must not get an input overwritten.
    void manifestInTheWay()
    {
        const QString input = host.path("work/drop/firmware/probe/D1_ProbeSet.bin");
        const QByteArray before = readFile(input);
        writeStitcher(host.folder->path(),
                      findImage + "echo > $image; ln -s " + quoted(input) + ' '
                          + quoted(host.path("m.json")));
        QCOMPARE(
            run("-d work/drop build -o i.bin --manifest m.json --stitcher tamblin-stitcher").status,
            0);
        QVERIFY(!QFileInfo(host.path("m.json")).isSymLink());
        QCOMPARE(readFile(input), before);
        QCOMPARE(run("verify m.json").status, 0);
    }

    void schemas_data()
    {
        const Table<QString> row("arguments");
        row("info", "info");
        row("targets", "targets");
        row("ingredients", "ingredients");
        row("check", "check");
        row("check of the broken one", "-d BROKEN check");
        row("validate", "validate GOOD/platform/veldmark-d1.xml");
        row("config", "config");
        row("config to a file", "config -o c.txt");
        row("project", "project");
        row("project to a file", "project -o p.json");
        row("build", "-d GOOD build -o i.bin --manifest m.json --keep-work");
        row("dry run", "-d GOOD build -o i.bin --dry-run");
        row("failed build", "build --no-check -o i.bin");
        row("wrong command line", "frob");
        row("no plug-in", "--plugin nowhere info");
    }
    void schemas()
    {
        QFETCH(QString, arguments);
        const Run run = this->run("--json " + arguments);
        check("report", writeFile(host.path("report.json"), run.output.toUtf8()));
        for (const QString file : {"p.json", "m.json"}) {
            if (QFile::exists(host.path(file))) {
                check("project", host.path(file));
            }
        }
    }

private:
    static QByteArray project(const QByteArray &ingredients)
    {
        return "{\"schemaVersion\": 1, \"target\": \"T\", \"ingredients\": " + ingredients + "}";
    }
    static QByteArray entry(const QByteArray &key, const QByteArray &value)
    {
        return "[{\"key\": \"" + key + "\", \"name\": \"n\", " + value + "}]";
    }

    Run run(const QString &arguments) const
    {
        return host.start("-q " + arguments);
    }
    QString hashOf(const QString &file) const
    {
        return QCryptographicHash::hash(readFile(host.path(file)), QCryptographicHash::Sha256)
            .toHex();
    }

    /// Readers must accept members that the schema does not list, but the program may not write any.
    static void check(const QString &schema, const QString &document)
    {
        QProcess python;
        python.start("/usr/bin/python3",
                     {"-c",
                      "import json, jsonschema, sys\n"
                      "def forbid_unlisted(node):\n"
                      "    if isinstance(node, dict):\n"
                      "        if 'properties' in node:\n"
                      "            node['additionalProperties'] = False\n"
                      "        for child in node.values():\n"
                      "            forbid_unlisted(child)\n"
                      "schema, document = (json.load(open(name)) for name in sys.argv[1:])\n"
                      "jsonschema.Draft7Validator.check_schema(schema)\n"
                      "forbid_unlisted(schema)\n"
                      "jsonschema.validate(document, schema)",
                      DOCS_FOLDER "/" + schema + ".schema.json", document});
        QVERIFY(python.waitForFinished());
        QVERIFY2(python.exitCode() == 0,
                 python.readAllStandardError() + readFile(document).left(2000));
    }

    HostProgram host;
};

QTEST_GUILESS_MAIN(TestProject)
#include "tst_project.moc"
