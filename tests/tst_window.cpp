// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/settingsdialog.h"
#include "spokentext.h"
#include "windowtest.h"

#include <KRecentFilesMenu>

/// The window as a whole: its parts, their names, its size, and what it opens and saves.
class TestWindow : public WindowTest
{
    Q_OBJECT

private slots:
    /// Every control has a name, and what is read aloud of a label is what is shown.
    void screenReader()
    {
        drop(window.data(), {sample});
        setImage();
        build();
        SettingsDialog dialog({});
        dialog.show();
        for (QWidget *widget :
             window->findChildren<QWidget *>() + dialog.findChildren<QWidget *>()) {
            const bool isControl = widget->focusPolicy() != Qt::NoFocus
                && !widget->objectName().startsWith("qt_") && widget->isVisible();
            QVERIFY2(!isControl || !spokenText(widget).isEmpty() || widget->inherits("QTabBar")
                         || widget->inherits("QMenuBar"),
                     qPrintable(widget->metaObject()->className() + widget->objectName()));
        }
        for (const char *name : {"target", "buildState", "status"}) {
            auto label = window->findChild<QLabel *>(name);
            QVERIFY2(label->isVisible() && !text(name).isEmpty(), name);
            QCOMPARE(spokenText(label), text(name));
        }
    }

    void fitsTheScreen()
    {
        const QFont before = QApplication::font();
        QFont large = before;
        large.setPointSize(20);
        QApplication::setFont(large);
        QSettings().clear();
        newWindow();
        QApplication::setFont(before);
        // Without fonts, every character is as wide as high, and the least that is needed does not
        // fit.
        const QSize largest
            = window->screen()->availableSize().expandedTo(window->minimumSizeHint());
        QCOMPARE(window->size().boundedTo(largest), window->size());
    }

    void smallWindow()
    {
        drop(window.data(), {broken});
        const QFontMetrics font = window->fontMetrics();
        const QSize small(90 * font.averageCharWidth(), 28 * font.height());
        window->resize(small);
        QTRY_COMPARE(window->size(), small);
        QVERIFY(tree->height() > 4 * font.height());
        QVERIFY(tree->isColumnHidden(3)); // The size.
    }

    void saveAndRestore()
    {
        const QString file = folder->filePath("<b>&1.loomwright");
        drop(window.data(), {broken});
        QVERIFY(!window->isWindowModified()); // Nothing asks to save it.
        chooseNextFile(folder->filePath("<b>&1"));
        QTest::keyClick(window.data(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(QFileInfo::exists(file));
        QVERIFY(!window->isWindowModified());
        QVERIFY(window->windowTitle().startsWith("<b>&1.loomwright"));
        setValue("Host FW", "/x");
        QTRY_VERIFY(window->isWindowModified());
        activateWindow();
        // Saved again without a question.
        QTest::keyClick(window.data(), Qt::Key_S, Qt::ControlModifier);
        QTRY_VERIFY(!window->isWindowModified());

        QVERIFY(window->close());
        newWindow();
        window->restoreLastProject();
        QCOMPARE(value("Host FW"), QString("/x"));
        QVERIFY(value("Legacy XML Data File").endsWith("veldmark-d1.xml"));
        QVERIFY(window->windowTitle().startsWith("<b>&1.loomwright"));
        QVERIFY(!window->isWindowModified());
        QVERIFY(!action("Undo")->isEnabled());
        auto recent = window->findChild<KRecentFilesMenu *>();
        QCOMPARE(recent->recentFiles().value(0), QUrl::fromLocalFile(file));

        // A project that is gone is named, until something else is opened.
        QFile::remove(file);
        for (int start = 0; start < 2; ++start) {
            QVERIFY(window->close());
            newWindow();
            window->restoreLastProject();
            QVERIFY2(notice().contains(file), qPrintable(notice()));
        }
        drop(window.data(), {sample});
        QVERIFY(!window->findChild<QWidget *>("notice"));
    }

    void unsavedChanges()
    {
        const QString file = folder->filePath("d1.loomwright");
        setValue("Host FW", "/a");
        chooseNextFile(file);
        action("Save project as")->trigger();
        setValue("Host FW", "/b");
        for (const char *answer : {"Cancel", "Save"}) {
            const bool saved = answer == QByteArray("Save");
            const QString *said = answerNextBox(answer);
            QCOMPARE(window->close(), saved);
            QVERIFY(said->contains("d1.loomwright"));
            QCOMPARE(readFile(file).contains("/b\""), saved);
        }
    }

    void anotherProgramSaves()
    {
        const QString file = folder->filePath("d1.loomwright");
        chooseNextFile(file);
        action("Save project as")->trigger();
        QVERIFY(!action("Rescan")->isEnabled());
        drop(window.data(), {sample});
        QTRY_VERIFY(action("Rescan")->isEnabled());
        writeFile(file, "{}");
        QTRY_VERIFY(problemRow("Project") >= 0);
        // It is no reason to ask before a build.
        setImage();
        build();
        QVERIFY(text("buildState").startsWith("✔"));
        for (const char *answer : {"Cancel", "Replace"}) {
            const QString *said = answerNextBox(answer);
            action("Save project")->trigger();
            QVERIFY(said->contains("Another program has changed"));
            QCOMPARE(readFile(file) == "{}", answer == QByteArray("Cancel"));
        }
        QTRY_COMPARE(problemCount(), 0);
    }

    void theStitcherIsMissing()
    {
        qputenv("PATH", QFile::encodeName(folder->path()));
        newWindow();
        QTRY_VERIFY(problemRow("Stitcher") >= 0);
        QVERIFY(problemList()->isVisible());
        QVERIFY2(text("status").contains("Next: open or drop a folder"),
                 qPrintable(text("status")));
        const QString stitcher = folder->filePath("chosen/tamblin-stitcher");
        QString first;
        withNextDialog([&](QDialog *dialog) {
            first = dialog->focusWidget() ? dialog->focusWidget()->objectName() : QString();
            dialog->findChild<QLineEdit *>("settingsStitcher")
                ->setText(' ' + QUrl::fromLocalFile(stitcher).toString());
            dialog->findChild<QSpinBox *>("settingsTimeLimit")->setValue(90);
            dialog->accept();
        });
        problemList()->setCurrentIndex(problemList()->model()->index(0, 0));
        QTest::keyClick(problemList(), Qt::Key_Return);
        QCOMPARE(first, QString("settingsStitcher"));
        QCOMPARE(readSettings().timeLimitSeconds, 90);
        newWindow();
        QTRY_VERIFY(problemRow("Stitcher") >= 0);
        QVERIFY(QDir().mkdir(folder->filePath("chosen")));
        writeStitcher(folder->filePath("chosen"), "exit 7");
        QTRY_COMPARE(problemRow("Stitcher"), -1);
        drop(window.data(), {sample});
        setImage();
        build();
        QVERIFY(text("buildState").contains("exit status 7"));
        QVERIFY(logText().contains("Building with " + stitcher));
    }

    void savedConfigurations()
    {
        drop(window.data(), {sample});
        const QString file = folder->filePath("c.txt");
        chooseNextFile(file);
        action("Save configuration")->trigger();
        QVERIFY(notice().contains("\"Legacy XML Data File\" is not part"));
        const QString dataFile = value("Legacy XML Data File");
        drop(window.data(), {file});
        QCOMPARE(value("Legacy XML Data File"), dataFile);
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));
        // An input is not overwritten, even if the user confirms it.
        for (const char *saving : {"Save configuration", "Save project as"}) {
            chooseNextFile(value("Host FW"));
            withNextDialog([](QDialog *dialog) {
                qobject_cast<QMessageBox *>(dialog)->button(QMessageBox::Yes)->click();
            });
            action(saving)->trigger();
            QVERIFY2(notice().contains("same file as the input"), qPrintable(notice()));
            QCOMPARE(QFileInfo(value("Host FW")).size(), 102400);
        }
    }

    /// What the plug-in keeps of one data file must not be in the verdict on the next one.
    void dataFilesAreJudgedAlone()
    {
        const QString project = folder->filePath("d1.loomwright");
        const QString copy = folder->filePath("copy.xml");
        const QString dataFile = "/platform/veldmark-d1.xml";
        drop(window.data(), {sample});
        chooseNextFile(project);
        action("Save project as")->trigger();
        for (const char *way : {"disk", "undo", "folder", "project"}) {
            setValue("Legacy XML Data File", QString());
            drop(window.data(), {writeFile(copy, readFile(broken + dataFile))});
            QTRY_COMPARE(problemCount(), 2);
            if (way == QByteArray("disk")) {
                writeFile(copy, readFile(sample + dataFile));
            } else if (way == QByteArray("undo")) {
                setValue("Legacy XML Data File", sample + dataFile);
                action("Undo")->trigger();
                QTRY_COMPARE(problemCount(), 2);
                action("Redo")->trigger();
            } else if (way == QByteArray("folder")) {
                drop(window.data(), {sample});
            } else {
                answerNextBox("Discard");
                window->open({project});
                QVERIFY(!action("Undo")->isEnabled());
            }
            QTRY_COMPARE(problemCount(), 0);
            QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));
            QVERIFY(tree->isExpanded(model()->index(2, 0)));
            QCOMPARE(window->findChild<QTabWidget *>("dataViews")->count(), 1);
        }
    }

    void bitsOfADataView()
    {
        drop(window.data(), {sample});
        QTRY_VERIFY(action("Data views")->isEnabled());
        action("Data views")->trigger();
        auto table = window->findChild<QTableView *>("dataView");
        QCOMPARE(spokenText(table), QString("GPIO Settings"));
        const QModelIndex bit = table->model()->index(0, 2);
        for (const Qt::CheckState state : {Qt::Checked, Qt::Unchecked}) {
            table->setCurrentIndex(bit);
            QTest::keyClick(table, Qt::Key_Space);
            QCOMPARE(bit.data(Qt::CheckStateRole).toInt(), int(state));
            QCOMPARE(bit.data().toString(), QString(state == Qt::Checked ? "on" : "off"));
        }
    }

    void theLayoutComesBack()
    {
        const auto isShown
            = [this](const char *pane) { return window->findChild<QWidget *>(pane)->isVisible(); };
        QVERIFY(!action("Data views")->isEnabled());
        drop(window.data(), {sample});
        QTRY_VERIFY(action("Data views")->isEnabled());
        action("Data views")->trigger();
        action("Log")->trigger();
        QVERIFY(isShown("logPane"));
        action("Data views")->trigger(); // It is behind the log.
        QVERIFY(isShown("dataViews"));
        action("Toolbar")->trigger();
        chooseNextFile(folder->filePath("d1.loomwright"));
        action("Save project as")->trigger();
        for (int start = 0; start < 2; ++start) {
            window->close();
            newWindow();
            QVERIFY(!isShown("steps"));
            QVERIFY(isShown("logPane")); // There is no data yet.
        }
        window->restoreLastProject();
        QTRY_VERIFY(isShown("dataViews"));
        QVERIFY(action("Log")->isChecked());
    }

    void withoutAPlugin()
    {
        window.reset(new MainWindow);
        QVERIFY(!window->loadPlugin({"/nope.so"}));
        window->show();
        tree = window->findChild<QTreeView *>("ingredientTree");
        auto page = window->findChild<QWidget *>("noPlugin");
        QVERIFY(page->isVisible());
        QVERIFY(page->findChild<QLabel *>("hint")->text().contains("/nope.so"));
        for (const char *name :
             {"Build", "Open folder", "Add files", "Open project", "Save project",
              "Save configuration", "Rescan", "Copy as", "Recent"}) {
            QVERIFY2(!action(name)->isEnabled(), name);
        }
        // As from the list of recent files.
        window->open({writeFile(folder->filePath("c.txt"), "a = b\n"), sample});
        window->build();
        window->restoreLastProject();
        choosePlugin(PLUGIN_LIBRARY);
        page->findChild<QPushButton *>()->click();
        QVERIFY(window->findChild<QLabel *>("target")->isVisible());
        QVERIFY(action("Build")->isEnabled());

        // A wrong one changes nothing.
        drop(window.data(), {sample});
        choosePlugin(writeFile(folder->filePath("wrong.so"), "x"));
        action("Settings")->trigger();
        QVERIFY2(notice().contains("not a shared library"), qPrintable(notice()));
        QCOMPARE(readSettings().pluginFile, QString(PLUGIN_LIBRARY));
        QVERIFY(value("Host FW").endsWith("HostFW_1.4.2.bin"));
    }

private:
    /// Names @p file in the next settings dialog.
    static void choosePlugin(const QString &file)
    {
        withNextDialog([file](QDialog *dialog) {
            dialog->findChild<QLineEdit *>("settingsPlugin")->setText(file);
            dialog->accept();
        });
    }
};

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
