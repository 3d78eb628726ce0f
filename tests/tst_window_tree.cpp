// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "windowtest.h"

#include <QAbstractItemModelTester>

/// The ingredient tree and the list of problems below it.
class TestWindowTree : public WindowTest
{
    Q_OBJECT

private slots:
    void showsWhatThePluginSays()
    {
        QAbstractItemModelTester tester(model());
        QVERIFY(!tree->isColumnHidden(1));
        QVERIFY(tree->isColumnHidden(2));
        QVERIFY(tree->isExpanded(model()->index(2, 0)));
        const QString toolTip = valueCell("Host FW").data(Qt::ToolTipRole).toString();
        QVERIFY(toolTip.contains("input file, required, 102400 bytes, Binary File (*.bin)"));

        drop(window.data(), {sample});
        QTRY_COMPARE(state("Host FW"), RowState::Good);
        const QModelIndex cell = valueCell("Host FW");
        QCOMPARE(cell.siblingAtColumn(3).data().toString(), QString("102,400 bytes"));
        setValue("Host FW", "/a/<b>.bin");
        QTRY_VERIFY(
            valueCell("Host FW").data(Qt::ToolTipRole).toString().contains("/a/&lt;b&gt;.bin"));

        QVERIFY(model()->sourceModel()->setData(model()->mapToSource(cell), false, Qt::UserRole));
        QTRY_VERIFY(tree->isRowHidden(cell.row(), cell.parent()));
    }

    void edit_data()
    {
        const Table<int, QString, QString, QString> row("column", "typed", "end", "taken");
        row("Enter", 1, "/a/%1.bin", "Enter", "/a/%1.bin");
        row("from the name", 0, "/a", "Enter", "/a");
        row("Escape", 1, "/a", "Escape", "");
        row("another cell", 1, "/a", "cell", "/a");
        row("Build", 0, "/a", "Ctrl+B", "/a");
        row("Save", 1, "/a", "Ctrl+S", "/a");
        row("Undo in the editor", 1, "/a", "Ctrl+Z", "");
        row("a URL", 1, "  file:///a%20b/c.bin ", "Enter", "/a b/c.bin");
        row("below the home folder", 1, "~/c.bin ", "Enter", QDir::homePath() + "/c.bin");
    }
    void edit()
    {
        QFETCH(int, column);
        QFETCH(QString, typed);
        QFETCH(QString, end);
        QLineEdit *line = openEditor(valueCell("Host FW").siblingAtColumn(column));
        QVERIFY(line);
        QTest::keyClicks(line, typed);
        if (end == "cell") {
            tree->setCurrentIndex(valueCell("Probe Set"));
        } else if (end == "Enter" || end == "Escape") {
            QTest::keyClick(line, end == "Enter" ? Qt::Key_Return : Qt::Key_Escape);
        } else {
            if (end != "Ctrl+Z") {
                withNextDialog([](QDialog *dialog) { dialog->reject(); });
            }
            const int key = QKeySequence(end)[0] & ~int(Qt::KeyboardModifierMask);
            QTest::keyClick(line, Qt::Key(key), Qt::ControlModifier);
        }
        if (end != "Ctrl+Z") {
            QTRY_VERIFY(!tree->findChild<QLineEdit *>());
        }
        QTEST(value("Host FW"), "taken");
        const auto file = valueCell("Host FW").data(Qt::EditRole).value<FilePath>();
        QCOMPARE(file.exactSize, 102400);
    }

    void anEditorKeepsWhatWasTyped()
    {
        drop(window.data(), {sample});
        const QString own = writeFile(folder->filePath("d.xml"), "<platform/>");
        setValue("Legacy XML Data File", own);
        QCoreApplication::processEvents(); // From now on the file is watched.
        QLineEdit *line = openEditor(valueCell("Host FW"));
        QTest::keyClicks(line, "/typed");
        // The rows are shown again; the data file that has changed replaces the model afterwards.
        const QPointer<QAbstractItemModel> source = model()->sourceModel();
        QSignalSpy shown(model(), &QAbstractItemModel::dataChanged);
        writeFile(own, "<platform></platform>");
        QTRY_VERIFY(!shown.isEmpty());
        QVERIFY(source);
        QCOMPARE(line->text(), QString("/typed"));
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_VERIFY(!source);
        QCOMPARE(value("Host FW"), QString("/typed"));
    }

    /// The second one replaces the model while the editor is being closed.
    void editTheDataFile()
    {
        action("Log")->trigger(); // It would be next to get the focus.
        for (const char *name : {"a.xml", "b.xml"}) {
            const QString file = writeFile(folder->filePath(name), "<platform/>");
            QLineEdit *line = openEditor(valueCell("Legacy XML Data File"));
            QTest::keyClicks(line, file);
            QTest::keyClick(line, Qt::Key_Return);
            QTRY_COMPARE(value("Legacy XML Data File"), file);
            QTRY_VERIFY(!tree->findChild<QLineEdit *>());
            QVERIFY(tree->hasFocus());
        }
        QCOMPARE(tree->currentIndex(), valueCell("Legacy XML Data File"));
        // An unchanged value is not written, which would replace the model.
        const QPointer<QAbstractItemModel> source = model()->sourceModel();
        QTest::keyClick(openEditor(tree->currentIndex()), Qt::Key_Return);
        QTRY_VERIFY(!tree->findChild<QLineEdit *>());
        QVERIFY(source);
    }

    void dropOnARow_data()
    {
        const Table<QString, QString> row("file", "value");
        row("a file", "any name", "any name");
        row("a file, in the editor", "any name", "any name");
        row("two files", "HostFW_a.bin|HostFWSupp_a.bin", "HostFW_a.bin");
        row("a configuration", "c.txt", "/from/config");
    }
    void dropOnARow()
    {
        QFETCH(QString, file);
        QFETCH(QString, value);
        writeFile(folder->filePath("c.txt"), "Host FW Boot = /from/config\n");
        QStringList files;
        for (const QString &name : file.split('|')) {
            files << folder->filePath(name);
        }
        const QModelIndex cell = valueCell("Host FW").siblingAtColumn(0);
        tree->scrollTo(cell);
        const QPoint position = tree->visualRect(cell).center();
        if (QByteArray(QTest::currentDataTag()).endsWith("editor")) {
            drop(openEditor(cell), files);
        } else {
            drop(tree->viewport(), files, position);
        }
        QTRY_COMPARE(this->value("Host FW"),
                     value.startsWith('/') ? value : folder->filePath(value));
    }

    /// Choosing the one in use settles the choice too.
    void candidates()
    {
        openCandidates();
        for (const QString &file : qAsConst(found)) {
            const QModelIndex cell = valueCell("Host FW");
            tree->scrollTo(cell);
            QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                              tree->visualRect(cell).center());
            QLineEdit *line = tree->findChild<QLineEdit *>();
            QAbstractItemView *list = line->completer()->popup();
            QTRY_VERIFY(list->isVisible());
            QCOMPARE(list->model()->rowCount(), 2);
            QTest::keyClicks(line, QFileInfo(file).fileName().toLower());
            QTRY_COMPARE(list->model()->rowCount(), 1);
            QTest::keyClick(list, Qt::Key_Down);
            QTest::keyClick(list, Qt::Key_Return);
            QTRY_COMPARE(state("Host FW"), RowState::Good);
            QTRY_VERIFY(!tree->findChild<QLineEdit *>());
            QCOMPARE(value("Host FW"), file);
            QCOMPARE(candidatesOf("Host FW"), found);
        }

        // Scanned again, the directory gives what is new and leaves what was chosen.
        QCOMPARE(state("Presigned Secure Annex"), RowState::Missing);
        writeFile(folder->filePath("drop/presigned/secure/Signed_annex_1.bin"), "annex");
        activateWindow();
        QTest::keyClick(window.data(), Qt::Key_F5);
        QTRY_COMPARE(state("Presigned Secure Annex"), RowState::Good);
        QCOMPARE(value("Host FW"), found.last());
        QCOMPARE(state("Host FW"), RowState::Good);
    }

    /// Only a choice says which candidate is meant.
    void anOpenChoiceStays()
    {
        const QString spare = folder->filePath("spare");
        QVERIFY(QDir(folder->path()).mkdir("empty"));
        openCandidates();
        for (const char *way : {"rescan", "undo", "rejected", "used", "other"}) {
            const QString &gone = found.at(way == QByteArray("other") ? 1 : 0);
            if (way == QByteArray("rescan")) {
                action("Rescan folder")->trigger();
            } else if (way == QByteArray("undo")) {
                drop(window.data(), {sample});
                QTRY_COMPARE(problemCount(), 0);
                action("Undo")->trigger();
            } else if (way == QByteArray("rejected")) {
                drop(window.data(), {folder->filePath("empty")});
                QVERIFY(notice().contains("was rejected"));
            } else {
                QVERIFY(QFile::rename(gone, spare));
                QTRY_VERIFY(candidatesOf("Host FW") != found);
                QVERIFY(QFile::rename(spare, gone));
            }
            QTRY_COMPARE(candidatesOf("Host FW"), found);
            QCOMPARE(value("Host FW"), found.first());
            QCoreApplication::processEvents(); // The check.
            QCOMPARE(state("Host FW"), RowState::Problem);
        }
    }

    /// Files that have not been chosen yet are no problems at the start.
    void start()
    {
        auto hint = window->findChild<QWidget *>("startHint");
        QVERIFY(hint->isVisible());
        QVERIFY(!problemList()->isVisible());
        QVERIFY(tree->hasFocus() && tree->currentIndex().isValid());
        chooseNextFile(broken);
        hint->findChild<QPushButton *>()->click();
        QTRY_VERIFY(problemCount() > 0);
        QVERIFY(problemList()->isVisible());
        QVERIFY(!hint->isVisible());
        activateWindow();
        for (const int row : {0, 1}) {
            QTest::keyClick(window.data(), Qt::Key_F8);
            QCOMPARE(problemList()->currentIndex().row(), row);
        }
        // A change elsewhere keeps the position, and the next problem takes the row of one that is
        // gone.
        setValue("Host FW", candidatesOf("Host FW").last());
        QTRY_COMPARE(problemCount(), 4);
        for (const int row : {1, 2}) {
            QTest::keyClick(window.data(), Qt::Key_F8);
            QCOMPARE(problemList()->currentIndex().row(), row);
        }
        setValue("Presigned Controller FW", sample + "/presigned/Controller_Signed.bin");
        QTRY_COMPARE(problemCount(), 3);
        QTest::keyClick(window.data(), Qt::Key_F8);
        QCOMPARE(problemList()->currentIndex().row(), 2);

        // Each folder starts a new set of files.
        drop(window.data(), {sample});
        QTRY_COMPARE(problemCount(), 0);
        drop(window.data(), {broken});
        QTRY_VERIFY(text("status").startsWith("8 of 9 files found"));
        QCOMPARE(value("Presigned Secure Annex"), QString());
        action("Log")->trigger(); // It would be next to get the focus.
        problemList()->setFocus();
        action("Undo")->trigger();
        QTRY_COMPARE(problemCount(), 0);
        QVERIFY(tree->hasFocus());
    }

    void problemsLeadToTheirCells()
    {
        QCOMPARE(state("Host FW"), RowState::Missing);
        drop(window.data(), {broken});
        QTRY_COMPARE(state("Presigned Controller FW"), RowState::Problem);
        QCOMPARE(state("Presigned Secure Annex"), RowState::Missing);
        QCOMPARE(state("Probe Set"), RowState::Good);
        const QAbstractItemView &view = *tree;
        QVERIFY(tree->columnWidth(0) >= view.sizeHintForColumn(0)); // No name is elided.
        const QModelIndex name = valueCell("Presigned Controller FW").siblingAtColumn(0);
        QVERIFY(name.data(Qt::AccessibleTextRole).toString().contains("problems"));

        QAbstractItemView *list = problemList();
        const int problem = problemRow("Presigned Controller FW");
        QVERIFY(problem >= 0);
        const QModelIndex shown = list->model()->index(problem, 1);
        QCOMPARE(shown.data().toString(),
                 QString("File size is incorrect: 95,000 bytes instead of 95,232 bytes"));
        QVERIFY(shown.data(Qt::ToolTipRole).toString().contains("/Controller_Signed.bin"));
        list->scrollTo(list->model()->index(problem, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(problem, 0)).center());
        QCOMPARE(tree->currentIndex(), valueCell("Presigned Controller FW"));
        QVERIFY(tree->hasFocus());

        // What is mended is gone from the list, without a command to check.
        setValue("Presigned Controller FW", sample + "/presigned/Controller_Signed.bin");
        QTRY_COMPARE(problemRow("Presigned Controller FW"), -1);
        QVERIFY2(text("status").startsWith("8 of 9 files found, 4 problems, not built yet."),
                 qPrintable(text("status")));
    }

    /// What is rejected is a notice. The window says "folder", also where the word comes from what
    /// both hosts share.
    void rejections()
    {
        const QString word("directory");
        const QString empty = folder->filePath("<h1>empty");
        QVERIFY(QDir().mkdir(empty));
        drop(window.data(), {empty});
        QVERIFY2(notice().contains(empty + " was rejected") && !notice().contains(word),
                 qPrintable(notice()));
        drop(window.data(),
             {writeFile(folder->filePath("p.json"),
                        R"({"schemaVersion": 1, "target": "T", "ingredients": []})")});
        QVERIFY2(notice().contains("is for the target \"T\""), qPrintable(notice()));
        QVERIFY(window->windowTitle().startsWith("Untitled"));
        QCOMPARE(problemCount(), 0);
        setValue("Host FW", folder->path());
        QTRY_VERIFY(problemRow("Host FW") >= 0);
        const QModelIndex problem = problemList()->model()->index(problemRow("Host FW"), 1);
        QVERIFY(problem.data().toString().contains("a folder instead of"));
        QVERIFY(!problem.data().toString().contains(word));
    }

    void undoRedoClear()
    {
        drop(window.data(), {sample});
        const QString before = value("Host FW");
        QTRY_COMPARE(state("Host FW"), RowState::Good);
        tree->setFocus();
        tree->setCurrentIndex(valueCell("Host FW"));
        QTest::keyClick(tree, Qt::Key_Delete);
        QCOMPARE(value("Host FW"), QString());
        // One problem, although the size cannot be checked either.
        QTRY_COMPARE(problemCount(), 1);
        QTest::keyClick(window.data(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(value("Host FW"), before);
        QTest::keyClick(window.data(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(value("Probe Set"), QString());
        QVERIFY(!action("Undo")->isEnabled());
        QTest::keyClick(window.data(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(value("Host FW"), before);
    }

private:
    /// Opens a folder with two files for one ingredient.
    void openCandidates()
    {
        QVERIFY(makeSample(folder->filePath("drop"), true));
        drop(window.data(), {folder->filePath("drop")});
        QTRY_COMPARE(state("Host FW"), RowState::Problem);
        found = candidatesOf("Host FW");
        QCOMPARE(found.count(), 2);
    }

    QStringList found;
};

QTEST_MAIN(TestWindowTree)
#include "tst_window_tree.moc"
