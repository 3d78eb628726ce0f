// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "windowtest.h"

/// Builds, and what the window shows of them.
class TestWindowBuild : public WindowTest
{
    Q_OBJECT

private slots:
    void dropAndBuild()
    {
        QVERIFY(text("status").contains("Next: open or drop a folder"));
        drop(window.data(), {sample});
        setImage();
        const QString anchor = folder->filePath("Signed_anchor_1.bin");
        QVERIFY(QFile::copy(value("Presigned Secure Anchor"), anchor));
        setValue("Presigned Secure Anchor", anchor);
        QTRY_VERIFY(text("status").contains("9 of 9 files found, no problems, not built yet. "
                                            "Next: build the image."));
        QTest::keyClick(window.data(), Qt::Key_B, Qt::ControlModifier);
        QVERIFY(window->findChild<QWidget *>("buildProgress")->isVisible());
        for (const char *name : {"Build", "Settings", "Open folder", "Undo", "Open project"}) {
            QVERIFY2(!action(name)->isEnabled(), name);
        }
        QVERIFY(action("Stop")->isEnabled());
        window->open({broken});
        setValue("Host FW", "/x");
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));
        QVERIFY(!window->loadPlugin({PLUGIN_LIBRARY}));
        QTRY_VERIFY_WITH_TIMEOUT(action("Build")->isEnabled(), 20000);
        QVERIFY2(text("buildState").contains("304,528 bytes"), qPrintable(text("buildState")));
        QVERIFY(QFileInfo::exists(folder->filePath("image.bin")));
        QTRY_VERIFY(text("status").contains("the image is up to date"));

        // An input that changes on disk makes the image old.
        QCOMPARE(text("buildAge"), QString());
        QVERIFY(text("buildState").startsWith("✔"));
        writeFile(anchor, "other");
        QTRY_COMPARE(state("Presigned Secure Anchor"), RowState::Newer);
        QCOMPARE(text("buildAge"), QString("Changed since: Signed_anchor_1.bin"));
        QVERIFY(
            window->findChild<QLabel *>("buildAge")->toolTip().contains("/Signed_anchor_1.bin"));
        QVERIFY(!text("buildState").contains("✔"));
        QVERIFY(text("status").contains("not built since the last change"));

        // So does another value, and an image that is gone.
        setValue("Presigned Codec FW", anchor);
        QVERIFY(QFile::remove(folder->filePath("image.bin")));
        for (const char *changed : {"Presigned Codec FW", "image.bin"}) {
            QTRY_VERIFY2(text("buildAge").contains(changed), changed);
        }
        QVERIFY(!action("Write manifest")->isEnabled());
    }

    void problemsAreAskedAbout()
    {
        const QString folderWithTag = folder->filePath("<h1>drop");
        QVERIFY(makeSample(folderWithTag, true));
        drop(window.data(), {folderWithTag});
        setImage();
        const QString *said = answerNextBox("Cancel");
        action("Build")->trigger();
        for (const char *problem :
             {"Controller FW: File size is incorrect: 95,000 bytes instead of 95,232 bytes",
              "Presigned Secure Annex: No file chosen", "Host FW: 2 candidates found",
              "Legacy XML Data File: Offset mismatch!", "<h1>drop/presigned"}) {
            QVERIFY2(said->contains(problem), qPrintable(*said));
        }
        QCOMPARE(said->count("veldmark-d1.xml"), 1); // It has two errors.
        QVERIFY(action("Build")->isEnabled());
        QVERIFY(!QFileInfo::exists(folder->filePath("image.bin")));

        const QString image = value("Output file name");
        setValue("Output file name", value("Probe Set"));
        said = answerNextBox("Close");
        action("Build")->trigger();
        QVERIFY2(said->contains("cannot be built") && !said->contains("Controller FW"),
                 qPrintable(*said));

        setValue("Output file name", image);
        answerNextBox("Build anyway");
        action("Build")->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(text("buildState").contains("The build failed."), 20000);
        QTRY_VERIFY(text("status").contains("the last build failed"));
    }

    void stop_data()
    {
        const Table<QByteArray, QString> row("stitcher", "state");
        row("the stitcher", "exec sleep 1000", "is running");
        row("the hashing", findImage + "truncate -s 64G \"$image\"", "Hashing");
        row("by closing the window", "exec sleep 1000", "is running");
    }
    void stop()
    {
        QFETCH(QByteArray, stitcher);
        QFETCH(QString, state);
        useStitcher(stitcher);
        drop(window.data(), {sample});
        setImage();
        action("Build")->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(text("buildState").contains(state), 20000);
        const QString *said = answerNextBox("Keep building");
        QVERIFY(!window->close());
        QVERIFY(said->contains("still being built"));
        if (QByteArray(QTest::currentDataTag()).contains("closing")) {
            answerNextBox("Stop and close");
            QVERIFY(window->close());
            window.reset();
            QVERIFY(!QFile::exists(folder->filePath("image.bin")));
            return;
        }
        QTest::mouseClick(window->findChild<QPushButton *>("stopBuild"), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(text("buildState").contains("stopped"), 20000);
        QVERIFY2(!text("buildState").contains("failed"), qPrintable(text("buildState")));
        QTRY_VERIFY(action("Build")->isEnabled());
        QVERIFY(!QFile::exists(folder->filePath("image.bin")));
    }

    void whatTheStitcherReports_data()
    {
        const Table<QByteArray, QString, QString> row("stitcher", "state", "errors");
        row("a failure without output", "exit 3", "exit status 3", "");
        row("one error line", "echo e >&2; exit 3", "exit status 3", "1 error line in the log");
        row("a warning of a good build",
            QByteArray("echo 'a\nb' >&2; exec '" EXAMPLES_FOLDER "/tamblin-stitcher' \"$@\""), "✔",
            "3 error lines in the log");
    }
    void whatTheStitcherReports()
    {
        QFETCH(QByteArray, stitcher);
        QFETCH(QString, state);
        QFETCH(QString, errors);
        useStitcher(stitcher);
        drop(window.data(), {sample});
        setImage();
        build();
        QVERIFY2(text("buildState").contains(state), qPrintable(text("buildState")));
        QVERIFY(window->findChild<LogPane *>()->isVisible());
        const QString reason = text("buildState").section(". ", 1).section('\n', 0, 0);
        QVERIFY2(logText().contains(reason), qPrintable(logText()));
        auto button = window->findChild<QPushButton *>("showErrors");
        QTRY_COMPARE(button->isVisible() ? button->text().remove('&') : QString(), errors);

        setValue("Presigned Codec FW", value("Host FW"));
        const bool failed = state != "✔";
        QTRY_VERIFY(text("status").contains(failed ? "not built yet" : "since the last change"));
        QCOMPARE(window->findChild<QWidget *>("buildState")->isVisible(), !failed);
    }

    /// Something on the way to the files changes, without a change of the files themselves.
    void theFolderChangesAfterABuild_data()
    {
        const Table<QString, QString, bool> row("opened", "command", "good");
        row("another folder in its place", "s1", "mv s1 s0; mv s2 s1", false);
        row("a symlink that points elsewhere", "link", "ln -sfn s2 link", false);
        row("another file in its place", "s1", "mv s2/presigned/Controller_Signed.bin s1/presigned",
            false);
        row("a file is removed", "s1", "rm s1/presigned/Controller_Signed.bin", false);
        row("a symlink's target is renamed", "uplink", "mv up/s up/t", false);
        row("a parent is renamed", "up/s", "mv up down", false);
        row("deleted and created again", "s1", "cp -r s1 x; rm -r s1; mv x s1", true);
    }
    void theFolderChangesAfterABuild()
    {
        QFETCH(QString, opened);
        QFETCH(QString, command);
        QFETCH(bool, good);
        const CurrentDirectory current(folder->path());
        QDir().mkdir("up");
        QVERIFY(makeSample("s1") && makeSample("s2", true) && makeSample("up/s"));
        QVERIFY(QFile::link("s1", "link") && QFile::link("up/s", "uplink"));
        drop(window.data(), {folder->filePath(opened)});
        setImage();
        build();
        QTRY_VERIFY(text("status").contains("no problems, the image is up to date"));
        QTest::qWait(300); // What the build did to the folder would be noticed together with this.
        QCOMPARE(QProcess::execute("sh", {"-c", command}), 0);
        QTRY_VERIFY(text("status").contains("not built since the last change"));
        QTRY_COMPARE(problemCount() == 0, good);
        QTRY_VERIFY(!text("buildState").contains("✔"));
        const QString watched = value("Host FW Supplemental");
        if (QFile::exists(watched)) { // It still is.
            writeFile(watched, "x");
            QTRY_VERIFY(problemRow("Host FW Supplemental") >= 0);
        }
    }

    /// Tab goes through what is visible, in the order in which it is read.
    void tabOrder()
    {
        drop(window.data(), {sample});
        setImage();
        build();
        for (const char *pane : {"log", "dataView"}) {
            QCoreApplication::processEvents();
            tree->setFocus();
            for (const char *name : {"showErrors", "copyHash", "showInFolder"}) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                QCOMPARE(QApplication::focusWidget()->objectName(), QString(name));
            }
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QVERIFY(QApplication::focusWidget()->objectName().startsWith(pane));
            action("Log")->trigger();
            action("Data views")->trigger();
        }
    }

    void manifestAndCommand()
    {
        drop(window.data(), {sample});
        setImage();
        build();
        action("Write manifest")->trigger();
        const QString manifest = folder->filePath("image.bin.manifest.json");
        QTRY_VERIFY(notice().contains(manifest));
        QVERIFY(readFile(manifest).contains("sha256"));

        setValue("Host FW", "/a b/it's.bin");
        action("Copy as terminal command")->trigger();
        const QString command = QApplication::clipboard()->text();
        QVERIFY2(command.startsWith("loomwright --plugin ") && command.endsWith(" build")
                     && command.contains("--set 'Host FW=/a b/it"),
                 qPrintable(command));

        // Opened, it gives the values, but is not what a project is saved to.
        window->open({manifest});
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));
        QVERIFY(window->windowTitle().startsWith("Untitled"));
    }
};

QTEST_MAIN(TestWindowBuild)
#include "tst_window_build.moc"
