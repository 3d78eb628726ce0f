// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/logpane.h"
#include "host/window/mainwindow.h"
#include "host/window/marks.h"
#include "processes.h"
#include "row.h"
#include "spokentext.h"

#include <QtTest>
#include <QtWidgets>

#include <csignal>

class TestWindowParts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        QApplication::setOrganizationName("Loomwright");
    }
    void init()
    {
        log.reset(new LogPane);
        log->resize(600, 300);
        view = log->findChild<QPlainTextEdit *>("log");
        QSettings().clear();
    }

    /// Messages become lines; whatever else ends a line in a document is no line too many.
    void logLines_data()
    {
        const Table<QString, QString> row("message", "shown");
        row("line ends", "a\r\nb\rc\n\ne\n", "a\nb\nc\n\ne");
        row("paragraph separator", QString("a%1b").arg(QChar(0x2029)), "a\nb");
        row("HTML", "<h1>a</h1>&amp;", "<h1>a</h1>&amp;");
        row("long", QString(1500, 'x'), QString(985, 'x') + '\n' + QString(515, 'x'));
    }
    void logLines()
    {
        QFETCH(QString, message);
        QFETCH(QString, shown);
        log->addStatus(message);
        log->addError("end");
        QCOMPARE(log->text().section(' ', 3).section('\n', 0, -3), shown);
        log->addStatus(QString());
        QTRY_COMPARE(lineCount(), shown.count('\n') + 3);
    }

    void logSearch_data()
    {
        const Table<QString, QString, int, QString> row("wanted", "keys", "block", "state");
        row("as typed", "ALPHA", "", 0, "");
        row("next", "alpha", "n", 2, "");
        row("around the end", "alpha", "nn", 0, "Continued from the start");
        row("backward", "alpha", "p", 2, "Continued from the end");
        row("nothing", "delta", "n", 3, "Not found");
        row("cleared", "", "np", 3, "");
    }
    void logSearch()
    {
        QFETCH(QString, wanted);
        QFETCH(QString, keys);
        QFETCH(QString, state);
        log->addStatus("alpha");
        log->addError("beta");
        log->addStatus("alpha");
        showLog(3);
        auto search = log->findChild<QLineEdit *>("logSearch");
        QTest::keyClicks(search, wanted);
        for (const QChar key : keys) {
            QTest::keyClick(search, Qt::Key_Return,
                            key == 'p' ? Qt::ShiftModifier : Qt::NoModifier);
        }
        QTEST(view->textCursor().blockNumber(), "block");
        QCOMPARE(view->textCursor().selectedText(),
                 state == "Not found" ? QString() : wanted.toLower());
        QCOMPARE(spokenText(log->findChild<QLabel *>("logSearchState")), state);
    }

    void logErrors()
    {
        auto searchState = log->findChild<QLabel *>("logSearchState");
        QSignalSpy counts(log.data(), &LogPane::buildErrorsChanged);
        log->addError("before");
        for (int build = 0; build < 2; ++build) {
            log->startBuild();
            log->addStatus("status");
            log->addError("a\n\nb");
            log->finishBuild();
        }
        log->addError("after");
        showLog(10);
        QCOMPARE(counts.last().value(0).toInt(), 3);
        for (const int block : {6, 8, 6}) {
            log->showNextBuildError();
            QCOMPARE(view->textCursor().blockNumber(), block);
        }
        for (const int block : {8, 9, 0, 2, 4}) {
            log->showNextError();
            QCOMPARE(view->textCursor().blockNumber(), block);
        }

        log->findChild<QAction *>("logErrorsOnly")->trigger();
        log->addStatus("status");
        showLog(11);
        log->findChild<QLineEdit *>("logSearch")->setText("status");
        QCOMPARE(searchState->text(), QString("Not found"));
        view->selectAll();
        view->copy();
        QCOMPARE(QApplication::clipboard()->text().count('\n'), 8);
        QVERIFY(!QApplication::clipboard()->text().contains("status"));
        QVERIFY(log->text().contains("status"));
        log->findChild<QAction *>("logErrorsOnly")->trigger();
        QVERIFY(view->document()->findBlockByNumber(10).isVisible());
        log->clear();
        QCOMPARE(counts.last().value(0).toInt(), 0);
        log->showNextError();
        QCOMPARE(searchState->text(), QString("Not found"));
    }

    void colorsFollowThePalette()
    {
        log->addError("old");
        showLog(1);
        const QPalette before = QApplication::palette();
        QPalette dark(Qt::black);
        dark.setColor(QPalette::Base, Qt::black);
        QApplication::setPalette(dark);
        const auto format = view->document()->firstBlock().layout()->formats().value(0).format;
        QCOMPARE(format.foreground().color(), failureColor(dark));
        QApplication::setPalette(before);
        QVERIFY(failureColor(before) != failureColor(dark));
    }

    /// At the end it stays there, whatever happens to text and size; elsewhere it stays put.
    void logStaysAtTheEnd()
    {
        // The first of them while it is hidden.
        for (int i = 0; i < 200; ++i) {
            log->addStatus(QString::number(i) + ' ' + QString("word ").repeated(i % 50));
        }
        showLog(200);
        QScrollBar *bar = view->verticalScrollBar();
        for (const int height : {120, 400, 150}) {
            log->resize(600 - height, height);
            QTRY_VERIFY(bar->maximum() > 0 && isEndVisible());
            log->findChild<QAction *>("logErrorsOnly")->trigger();
            log->findChild<QAction *>("logErrorsOnly")->trigger();
            QTRY_VERIFY(bar->maximum() > 0 && isEndVisible());
        }
        bar->triggerAction(QAbstractSlider::SliderPageStepSub);
        QCoreApplication::processEvents();
        QVERIFY(bar->value() < bar->maximum());
        bar->setValue(3);
        log->resize(600, 120);
        log->addStatus("more");
        QTRY_COMPARE(lineCount(), 201);
        QCOMPARE(bar->value(), 3);

        log->startBuild();
        log->addStatus("a new build");
        QTRY_VERIFY(view->toPlainText().contains("a new build") && isEndVisible());
    }

    /// "Errors only" leaves what is selected in view, else what is at the top.
    void logKeepsItsPlace()
    {
        for (int i = 0; i < 150; ++i) {
            log->addStatus(QString("word ").repeated(i % 50));
            log->addError("error");
        }
        showLog(300);
        for (const bool selected : {false, true}) {
            QTextCursor line(view->document()->findBlockByNumber(selected ? 151 : 51));
            if (selected) {
                line.select(QTextCursor::LineUnderCursor);
                view->setTextCursor(line);
            } else {
                view->verticalScrollBar()->setValue(line.block().firstLineNumber());
                view->verticalScrollBar()->triggerAction(QAbstractSlider::SliderMove);
            }
            for (int i = 0; i < 2; ++i) {
                log->findChild<QAction *>("logErrorsOnly")->trigger();
                QCoreApplication::processEvents();
                QVERIFY(view->viewport()->rect().intersects(view->cursorRect(line)));
                QCOMPARE(view->textCursor().hasSelection(), selected);
            }
        }
    }

    void logIsBounded()
    {
        auto notice = log->findChild<QLabel *>("logDropped");
        log->addError("oldest");
        showLog(1);
        for (int i = 1; i < LogPane::maxLines; ++i) {
            log->addStatus(QString::number(i));
        }
        QTRY_COMPARE(lineCount(), LogPane::maxLines);
        QVERIFY(!notice->isVisible());
        log->addStatus("newest");
        QTRY_VERIFY(notice->isVisible());
        QVERIFY(!log->text().contains("oldest"));
        QVERIFY(log->text().endsWith("newest\n"));
        log->addStatus(QString("at once\n").repeated(LogPane::maxLines * 2));
        QCOMPARE(log->text().count("at once"), LogPane::maxLines);
        log->clear();
        QVERIFY(!notice->isVisible() && view->toPlainText().isEmpty());
    }

    /// It has what the first target has not: a choice, a data view without data, and groups whose
    /// cells are editable.
    void secondTarget()
    {
        MainWindow window;
        QVERIFY(window.loadPlugin({SECOND_TARGET}));
        window.show();
        QCOMPARE(window.findChild<QTabWidget *>("dataViews")->count(), 1);
        auto tree = window.findChild<QTreeView *>("ingredientTree");
        const auto edit = [tree](const QModelIndex &cell) {
            tree->setCurrentIndex(cell);
            QTest::keyClick(tree, Qt::Key_F2);
            QTest::keyClick(tree, Qt::Key_Return);
        };
        const QModelIndex group = tree->model()->index(0, 0);
        edit(group);
        edit(group.siblingAtColumn(3));
        QVERIFY(!tree->findChild<QLineEdit *>());
        const QModelIndex choice = tree->model()->index(0, 3, group);
        const QString before = choice.data().toString();
        edit(choice);
        auto list = tree->findChild<QComboBox *>();
        QTRY_VERIFY(list && list->view()->isVisible());
        QTest::keyClick(list->view(), Qt::Key_Down);
        QCOMPARE(choice.data().toString(), before);
        QTest::keyClick(list->view(), Qt::Key_Return);
        QTRY_VERIFY(choice.data().toString() != before);
    }

    void program_data()
    {
        const Table<QStringList, int, QString> row("arguments", "status", "printed");
        row("help", QStringList("--help"), 0, "--plugin <FILE>");
        row("version", QStringList("--version"), 0, "loomwright-gui ");
        row("unknown option", QStringList("--nope"), 2, "'nope'");
        row("an option of Qt", QStringList("--platform"), 2, "'platform'");
        row("no file", QStringList("--plugin="), 2, "--plugin needs");
    }
    void program()
    {
        QFETCH(QStringList, arguments);
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "none such");
        process.setProcessEnvironment(environment);
        process.start(WINDOW_PROGRAM, arguments);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QTEST(process.exitCode(), "status");
        QFETCH(QString, printed);
        const QString output = process.readAll();
        QVERIFY2(output.contains(printed), qPrintable(output));
    }

    void terminatedDuringABuild()
    {
        const QString image = writeFile(folder.filePath("image.bin"), "old");
        writeStitcher(folder.path(),
                      "printf half > \"$3\"; touch " + quoted(folder.filePath("started"))
                          + "; sleep 1000 & sleep 1000");
        QByteArray project = R"({"schemaVersion": 1, "target": "Second", "ingredients": [
            {"name": "Kernel", "key": "KERNEL", "file": "/etc/passwd"},
            {"name": "Image", "key": "IMAGE", "file": "IMAGE_FILE"}]})";
        project.replace("IMAGE_FILE", QFile::encodeName(image));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("PATH", folder.path() + ':' + environment.value("PATH"));
        environment.insert("XDG_CONFIG_HOME", folder.path());
        environment.insert("XDG_DATA_HOME", folder.path());
        environment.insert("SECOND_TARGET_BUILDS", "1");
        environment.insert(processMark, folder.path());
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(
            WINDOW_PROGRAM,
            {"--plugin", SECOND_TARGET, writeFile(folder.filePath("p.loomwright"), project)});
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(folder.filePath("started")), 20000);
        process.terminate();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(process.exitCode(), SIGTERM);
        QCOMPARE(processesOf(folder.path()), QStringList());
        QCOMPARE(readFile(image), QByteArray("old"));
        QVERIFY(readFile(folder.filePath("Loomwright/loomwright-gui.conf")).contains("[layout]"));
    }

private:
    bool isEndVisible() const
    {
        QTextCursor end(view->document());
        end.movePosition(QTextCursor::End);
        return view->viewport()->rect().contains(view->cursorRect(end));
    }
    /// Every line ends with a line feed.
    int lineCount() const
    {
        return view->document()->blockCount() - 1;
    }
    void showLog(int lines)
    {
        log->show();
        QVERIFY(QTest::qWaitForWindowExposed(log.data()));
        QTRY_COMPARE(lineCount(), lines);
    }

    QTemporaryDir folder;
    QScopedPointer<LogPane> log;
    QPlainTextEdit *view = nullptr;
};

QTEST_MAIN(TestWindowParts)
#include "tst_window_parts.moc"
