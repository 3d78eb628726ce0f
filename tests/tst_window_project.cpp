// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "windowtest.h"

/// Projects, configurations and plug-ins in the window.
class TestWindowProject : public WindowTest
{
    Q_OBJECT

private slots:
    void saveAndRestore()
    {
        const QString file = folder->filePath("d1.loomwright");
        drop(window.data(), {broken()});
        QVERIFY(window->isWindowModified());
        chooseNextFile(file);
        QTest::keyClick(window.data(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(QFileInfo::exists(file));
        QVERIFY(!window->isWindowModified());
        QVERIFY(window->windowTitle().startsWith("d1.loomwright"));
        setValue("Host FW", "/x");
        QTRY_VERIFY(window->isWindowModified());
        activateWindow();
        // Saved again without a question.
        QTest::keyClick(window.data(), Qt::Key_S, Qt::ControlModifier);
        QTRY_VERIFY(!window->isWindowModified());

        newWindow();
        window->restoreLastProject();
        QCOMPARE(value("Host FW"), QString("/x"));
        QVERIFY(value("Legacy XML Data File").endsWith("veldmark-d1.xml"));
        QVERIFY(window->windowTitle().startsWith("d1.loomwright"));
        QVERIFY(!window->isWindowModified());
        QVERIFY(!action("Undo")->isEnabled());
        QCOMPARE(QSettings().value("recentFiles").toStringList().mid(0, 1), QStringList{file});
    }

    void unsavedChanges_data()
    {
        columns<QString, bool, QByteArray>("answer", "closed", "saved");
        row("cancelled", "Cancel", false, QByteArray("/a\""));
        row("discarded", "Discard", true, QByteArray("/a\""));
        row("saved", "Save", true, QByteArray("/b\""));
    }
    void unsavedChanges()
    {
        QFETCH(QString, answer);
        QFETCH(bool, closed);
        QFETCH(QByteArray, saved);
        const QString file = folder->filePath("d1.loomwright");
        setValue("Host FW", "/a");
        chooseNextFile(file);
        action("Save project as")->trigger();
        setValue("Host FW", "/b");
        const QString *said = answerNextBox(answer);
        QCOMPARE(window->close(), closed);
        QVERIFY(said->contains("d1.loomwright"));
        QVERIFY2(readFile(file).contains(saved), readFile(file));
    }

    void aConfigurationStatesWhatItLacks()
    {
        drop(window.data(), {sample()});
        const QString file = folder->filePath("c.txt");
        chooseNextFile(file);
        action("Save configuration")->trigger();
        QVERIFY(text("notice").contains("\"Legacy XML Data File\" is not part"));
        const QString dataFile = value("Legacy XML Data File");
        drop(window.data(), {file});
        QCOMPARE(value("Legacy XML Data File"), dataFile);
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));

        chooseNextFile("/nope/c.txt");
        action("Save configuration")->trigger();
        QVERIFY(text("notice").contains("could not be written"));
    }

    void verdictsAreThoseOfTheCurrentFile()
    {
        auto dock = window->findChild<QDockWidget *>("dataViewDock");
        QVERIFY(dock->isHidden());
        drop(window.data(), {broken()});
        QTRY_VERIFY(problemRow("Legacy XML Data File") >= 0);
        auto views = window->findChild<QTabWidget *>("dataViews");
        QCOMPARE(views->count(), 1);
        QTRY_VERIFY(!dock->isHidden());
        drop(window.data(), {sample()});
        QTRY_COMPARE(problemList()->model()->rowCount(), 0);
        QCOMPARE(views->count(), 1);
        QVERIFY(tree->isExpanded(model()->index(2, 0)));
        auto table = window->findChild<QTableView *>("dataView");
        QVERIFY(table && table->model()->rowCount() > 0);
    }

    void aWrongPluginChangesNothing()
    {
        drop(window.data(), {sample()});
        chooseNextFile(writeFile(folder->filePath("wrong.so"), "x"));
        const QString *said = answerNextBox("OK");
        action("Choose plug-in")->trigger();
        QVERIFY2(said->contains("not a shared library"), qPrintable(*said));
        QVERIFY(window->loadPlugin({PLUGIN_LIBRARY})); // It is in use.
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));
        QVERIFY(window->findChild<QLabel *>("target")->isVisible());
    }

    void withoutAPlugin()
    {
        window.reset(new MainWindow);
        QVERIFY(!window->loadPlugin({"/nope.so"}));
        window->show();
        QVERIFY(window->findChild<QLabel *>("problem")->isVisible());
        QVERIFY(text("problem").contains("/nope.so"));
        for (const char *name : {"Build", "Open folder", "Add files", "Open project",
                                 "Save project", "Save configuration", "Rescan", "Copy as"}) {
            QVERIFY2(!action(name)->isEnabled(), name);
        }
        QVERIFY(!action("Recent")->isVisible());
        // As from the list of recent files.
        window->open({writeFile(folder->filePath("c.txt"), "a = b\n"), sample()});
        window->build();
        window->restoreLastProject();
        QVERIFY(window->loadPlugin({PLUGIN_LIBRARY}));
        QVERIFY(window->findChild<QLabel *>("target")->isVisible());
        QVERIFY(action("Build")->isEnabled());
    }
};

QTEST_MAIN(TestWindowProject)
#include "tst_window_project.moc"
