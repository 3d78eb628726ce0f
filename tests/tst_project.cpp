// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "hostprogram.h"
#include "row.h"

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

        QVERIFY(QFile::link("work", host.path("link")));
        for (const QString recorded : {"work/m.json", "link/m.json"}) {
            QCOMPARE(run("verify " + recorded).output,
                     recorded + ": 11 files compared, 0 different\n");
        }
    }

    void differences_data()
    {
        const Table<QString, QString, QString> row("file", "change", "difference");
        const QString probe = "work/drop/firmware/probe/D1_ProbeSet.bin";
        row("size", "work/drop/presigned/Controller_Signed.bin", "echo >",
            "Presigned Controller FW +The size differs");
        row("content", probe, "truncate -s 31120", "Probe Set +The content differs");
        row("gone", probe, "ls", "Probe Set +It does not exist");
        row("FIFO", probe, "mkfifo", "Probe Set +It is not a regular file");
        row("image", "work/i.bin", "echo >", "");
    }
    void differences()
    {
        QFETCH(QString, file);
        QFETCH(QString, change);
        QFETCH(QString, difference);
        const Run run = shell("build; rm " + file + "; " + change + ' ' + file
                              + "; lw verify work/m.json; echo $?; "
                                "lw --json verify work/m.json > r.json; "
                                "lw -p work/m.json --locked build --no-check; echo $?");
        // The image is no input: it may be built again.
        const QString status = difference.isEmpty() ? "0" : "1";
        const QString expected = difference + ".*" + file
            + "\nwork/m.json: 11 files compared, 1 different\n1\n.*" + difference + ".*\n" + status
            + "\n$";
        QVERIFY2(matches(run.output, expected), qPrintable(run.output));
        check("report", host.path("r.json"));
    }

    void sessions_data()
    {
        const Table<QString, QString> row("script", "output");
        row("a project moves with its files",
            "lw -d work/drop --image work/i.bin project -o work/p.json; cp work/p.json .; "
            "mv work moved; lw -p moved/p.json check; lw -p moved/p.json project -o moved/p.json; "
            "cmp p.json moved/p.json && grep -E '\"(drop/platform/.*|i.bin)\"' p.json; "
            // Later inputs come on top of it.
            "lw -p moved/p.json -s Flash-Layer=/x ingredients; lw -p moved/p.json project",
            "^14 checks: 14 passed, 0 failed\n[^\n]*\"i.bin\"[^\n]*\n"
            "[^\n]*\"drop/platform/veldmark-d1.xml\".*Flash-Layer +/x .*"
            "Vendor Signed FW +/.*moved/drop.*\"moved/i.bin\"");
        row("paths in a project",
            "mkdir -p real/sub; ln -s real/sub link; "
            "lw -s Flash-Layer=x -s Secure_Annex_FW=:y project -o p.json; "
            "sed -i 's,\"x\",\"link/../x\",' p.json; cd work; lw -p ../p.json ingredients",
            "Flash-Layer +/[^\n]*/real/x .* Secure_Annex_FW +/(?![^\n]*/work/:y)[^\n]*/:y ");
        row("interrupted",
            "build; truncate -s 8G work/i.bin; loomwright verify work/m.json 2>&1 & "
            "while ! ls -l /proc/$!/fd | grep -q 'i.bin$'; do sleep 0.01; done; "
            "kill -TERM $!; wait $!; echo $?",
            "The comparison was interrupted.*\n143\n$");
        row("no manifest",
            "lw -d work/drop --image i.bin project -o p.json; lw -p p.json --locked check; "
            "lw verify p.json; lw --locked check; echo $?",
            "is not a manifest.*records no build.*\n2\n$");
        row("saved over a manifest", "build; lw -p work/m.json project -o work/m.json",
            "that was loaded");
        row("other values",
            "build; lw -p work/m.json --locked -s ImageName=x "
            "-s Secure_Annex_FW=work/drop/firmware/probe/D1_ProbeSet.bin check",
            "Presigned Secure Annex +The size differs");
        row("another stitcher",
            "cp \"$(type -P tamblin-stitcher)\" .; build --stitcher tamblin-stitcher; "
            "lw -p work/m.json --locked build -o again.bin; cmp again.bin work/i.bin; echo $?; "
            "echo >> tamblin-stitcher; "
            "lw -p work/m.json --locked build -o other.bin --stitcher tamblin-stitcher; "
            "echo $?; ls *.bin; lw verify work/m.json; "
            "rm tamblin-stitcher; lw verify work/m.json; echo $?",
            "\n0\n.*The stitcher +The content differs.*\n1\nagain.bin\n[^O].*"
            "The stitcher +The content differs.*"
            "10 files compared, 0 different; the stitcher .* was not.*\n0\n$");
        row("a stitcher that links the manifest to an input",
            "input=work/drop/firmware/probe/D1_ProbeSet.bin; cp $input before; "
            "printf '#!/bin/sh\\nln -s %q %q; exec %q \"$@\"' \"$PWD/$input\" \"$PWD/m.json\" "
            "\"$(type -P tamblin-stitcher)\" > stitcher; chmod +x stitcher; "
            "lw -d work/drop build -o i.bin --manifest m.json --stitcher stitcher; "
            "cmp before $input && ls -F m.json; lw verify m.json; echo $?",
            "\nm.json\n.* 0 different\n0\n$");
    }
    void sessions()
    {
        QFETCH(QString, script);
        const Run run = shell(script);
        QFETCH(QString, output);
        QVERIFY2(matches(run.output, output), qPrintable(run.output + run.errors));
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
    Run shell(const QString &script) const
    {
        return host.shell("lw() { loomwright -q \"$@\" 2>&1; }; build() { lw -d work/drop "
                          "build -o work/i.bin --manifest work/m.json \"$@\"; }; "
                          + script);
    }
    QString hashOf(const QString &file) const
    {
        return QCryptographicHash::hash(readFile(host.path(file)), QCryptographicHash::Sha256)
            .toHex();
    }

    /// Readers must accept members that the schema does not list, but the program may not write
    /// any.
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
