// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "files.h"
#include "gpio/gpiobittoggle.h"
#include "host/core/ingredients.h"
#include "host/window/filepatheditor.h"
#include "host/window/ingredientdelegate.h"
#include "host/window/ingredientviewmodel.h"
#include "host/window/logpane.h"
#include "host/window/mainwindow.h"
#include "model/choice.h"
#include "row.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>
#include <QtWidgets>

namespace {

void drop(QWidget *target, const QStringList &files)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &file : files) {
        urls << QUrl::fromLocalFile(file);
    }
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

/// Presses the button with @p text in the next message box, and tells what the box said.
QString *answerNextBox(const QString &text)
{
    static QString said;
    said.clear();
    auto timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, text] {
        auto box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box) {
            return;
        }
        timer->deleteLater();
        said = box->text() + '\n' + box->informativeText();
        for (QAbstractButton *button : box->buttons()) {
            if (button->text().remove('&') == text) {
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
    });
    timer->start(20);
    return &said;
}

QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::AlternateBase, QColor(42, 42, 42));
    palette.setColor(QPalette::Highlight, QColor(42, 110, 180));
    return palette;
}

} // namespace

class TestWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        qputenv("TMPDIR", QFile::encodeName(samples.path()));
        qputenv("HOME", QFile::encodeName(samples.path()));
        QDir::setCurrent(samples.path());
        QApplication::setApplicationDisplayName("Loomwright");
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, samples.path());
        QVERIFY(makeSample(sample()));
        QVERIFY(makeSample(samples.filePath("broken"), true));
        qputenv("PATH", EXAMPLES_FOLDER ":" + qgetenv("PATH"));
    }
    void init()
    {
        folder.reset(new QTemporaryDir);
        window.reset(new MainWindow);
        QVERIFY(window->loadPlugin({PLUGIN_LIBRARY}));
        window->show();
        QApplication::setActiveWindow(window.data());
        QVERIFY(QTest::qWaitForWindowExposed(window.data()));
        tree = window->findChild<QTreeView *>("ingredientTree");
    }
    void cleanup()
    {
        window.reset();
    }

    void treeShowsWhatThePluginSays()
    {
        QAbstractItemModelTester tester(tree->model());
        QVERIFY(!tree->isColumnHidden(1));
        QVERIFY(tree->isColumnHidden(2));
        QVERIFY(tree->isExpanded(tree->model()->index(2, 0)));
        const QModelIndex hostFirmware = valueCell("Host FW");
        QVERIFY(hostFirmware.data(Qt::ToolTipRole)
                    .toString()
                    .contains("input file, required, 102400 bytes, Binary File (*.bin)"));
        QVERIFY(source()->setData(sourceCell("Host FW"), false, Qt::UserRole));
        QVERIFY(tree->isRowHidden(hostFirmware.row(), hostFirmware.parent()));
    }

    void editPath()
    {
        tree->setCurrentIndex(valueCell("Host FW"));
        QTest::keyClick(tree, Qt::Key_F2);
        auto editor = tree->findChild<FilePathEditor *>();
        QVERIFY(editor);
        QTest::keyClicks(editor->findChild<QLineEdit *>(), "/a/%1.bin");
        QTest::keyClick(editor->findChild<QLineEdit *>(), Qt::Key_Return);
        QTRY_COMPARE(pathOf("Host FW").fileName, QString("/a/%1.bin"));
        QCOMPARE(pathOf("Host FW").exactSize, 102400);
        QVERIFY(pathOf("Host FW").fileFilter.startsWith("Binary"));
        QTRY_VERIFY(!tree->findChild<FilePathEditor *>());

        // Escape leaves the value; another cell takes it over; a dropped file is taken at once.
        for (const bool isKept : {false, true}) {
            tree->setCurrentIndex(valueCell("Host FW"));
            QTest::keyClick(tree, Qt::Key_F2);
            auto line = tree->findChild<QLineEdit *>();
            QTest::keyClicks(line, isKept ? "/kept" : "/lost");
            if (isKept) {
                tree->setCurrentIndex(valueCell("Probe Set"));
            } else {
                QTest::keyClick(line, Qt::Key_Escape);
            }
            QTRY_VERIFY(!tree->findChild<FilePathEditor *>());
            QCOMPARE(pathOf("Host FW").fileName, QString(isKept ? "/kept" : "/a/%1.bin"));
        }
        tree->setCurrentIndex(valueCell("Host FW"));
        QTest::keyClick(tree, Qt::Key_F2);
        drop(tree->findChild<FilePathEditor *>(), {"/dropped.bin"});
        QTRY_COMPARE(pathOf("Host FW").fileName, QString("/dropped.bin"));
    }

    void editChoice()
    {
        QStandardItemModel model;
        model.setItem(0, new QStandardItem);
        Choice choice;
        choice.choices << "A"
                       << "B"
                       << "C";
        model.setData(model.index(0, 0), QVariant::fromValue(choice), Qt::DisplayRole);
        IngredientViewModel shown;
        shown.setSourceModel(&model);
        QCOMPARE(shown.index(0, 0).data().toString(), QString("A"));
        QTreeView view;
        view.setModel(&shown);
        view.setItemDelegate(new IngredientDelegate(&view));
        view.show();
        view.edit(shown.index(0, 0));
        auto list = view.findChild<QComboBox *>();
        QVERIFY(list);
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Return);
        QTRY_COMPARE(model.index(0, 0).data().value<Choice>().selectedIndex, 1);
        QCOMPARE(model.index(0, 0).data().value<Choice>().choices.count(), 3);
    }

    void dropCheckBuild()
    {
        drop(window.data(), {sample()});
        QVERIFY(pathOf("Host FW").fileName.endsWith("HostFW_1.4.2.bin"));
        setOutput(folder->filePath("image.bin"));
        QTest::keyClick(window.data(), Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(text("checkSummary"), QString("All 14 checks passed."));

        QSignalSpy finished(window.data(), &MainWindow::buildFinished);
        QTest::keyClick(window.data(), Qt::Key_B, Qt::ControlModifier);
        QVERIFY(!buildAction()->isEnabled());
        QVERIFY(window->findChild<QWidget *>("buildProgress")->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY(buildAction()->isEnabled());
        QVERIFY2(text("buildState").contains("304528 bytes"), qPrintable(text("buildState")));
        QVERIFY(window->findChild<QWidget *>("openImageFolder")->isVisible());
        QVERIFY(QFileInfo::exists(folder->filePath("image.bin")));
    }

    void refuseAFailingCheck()
    {
        drop(window.data(), {samples.filePath("broken")});
        setOutput(folder->filePath("image.bin"));
        QSignalSpy finished(window.data(), &MainWindow::buildFinished);
        const QString *said = answerNextBox("Cancel");
        window->build();
        for (const char *problem : {"Presigned Controller FW: File size is incorrect",
                                    "Presigned Secure Annex: File path is empty",
                                    "Duplicate Ingredient found!", "Offset mismatch!"}) {
            QVERIFY2(said->contains(problem), qPrintable(*said));
        }
        QVERIFY(buildAction()->isEnabled());
        QVERIFY(!QFileInfo::exists(folder->filePath("image.bin")));

        // The tree marks what failed, and the table leads there.
        const QModelIndex failed = valueCell("Presigned Secure Annex")
                                       .sibling(valueCell("Presigned Secure Annex").row(), 0);
        QVERIFY(!failed.data(Qt::DecorationRole).isNull());
        QVERIFY(valueCell("Host FW").sibling(0, 0).data(Qt::DecorationRole).isNull());
        auto table = window->findChild<QAbstractItemView *>("checkTable");
        window->findChild<QAbstractButton *>("failedFirst")->click();
        QCOMPARE(table->model()->index(0, 0).data().toString(), QString("Fail"));
        QCOMPARE(table->model()->index(1, 1).data().toString(), QString("Presigned Secure Annex"));
        emit table->activated(table->model()->index(1, 2));
        QCOMPARE(tree->currentIndex(), valueCell("Presigned Secure Annex"));

        answerNextBox("Build anyway");
        window->build();
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY(text("buildState").contains("The build failed."));
    }

    void dataViews()
    {
        QCOMPARE(window->findChild<QTabWidget *>("dataViews")->count(), 0);
        for (int round = 0; round < 2; ++round) {
            window->open({sample() + "/platform/veldmark-d1.xml"});
            auto tabs = window->findChild<QTabWidget *>("dataViews");
            QCOMPARE(tabs->count(), 1);
            auto view = window->findChild<QAbstractItemView *>("dataView");
            const QModelIndex bit = view->model()->index(0, 2);
            QCOMPARE(bit.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
            view->setCurrentIndex(bit);
            QTest::keyClick(view, Qt::Key_Space);
            QCOMPARE(bit.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
            QStyleOptionViewItem option;
            option.initFrom(view);
            option.rect = view->visualRect(bit);
            option.features = QStyleOptionViewItem::HasCheckIndicator;
            option.widget = view;
            const QRect box = view->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator,
                                                            &option, view);
            QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, box.center());
            QCOMPARE(bit.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
            QTest::keyClick(view, Qt::Key_Space);
        }
    }

    void dataFileOf200000Levels()
    {
        const QString file = folder->filePath("deep.xml");
        writeFile(file, QByteArray("<a>").repeated(200000) + QByteArray("</a>").repeated(200000));
        drop(window.data(), {file});
        QVERIFY(window->findChild<LogPane *>()->text().contains(
            "ERROR: XML Document content could not be set!"));
        QCOMPARE(pathOf("Legacy XML Data File").fileName, file);
    }

    void closingDuringABuild()
    {
        writeStitcher(folder->path(), "exec sleep 1000");
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(folder->path()) + ":" + path);
        answerNextBox("Build anyway");
        window->build();
        qputenv("PATH", path);
        QVERIFY(!buildAction()->isEnabled());
        const QString *said = answerNextBox("Cancel");
        QVERIFY(!window->close());
        QVERIFY(said->contains("still running"));

        QSignalSpy finished(window.data(), &MainWindow::buildFinished);
        QTest::mouseClick(window->findChild<QPushButton *>("stopBuild"), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        QVERIFY(text("buildState").contains("It was stopped."));
        QVERIFY(window->close());
    }

    void logIsBounded()
    {
        auto log = window->findChild<LogPane *>();
        log->clear();
        log->addError("first\nsecond");
        QVERIFY(log->text().endsWith(QString::fromUtf8("✖ first\nsecond")));
        const QString chunk = QString(65536, 'x') + '\n';
        for (int sent = 0; sent < 100; ++sent) {
            for (int i = 0; i < 16; ++i) {
                log->addStatus(chunk);
            }
            QCoreApplication::processEvents();
        }
        log->addStatus(QString(10 * LogPane::charactersKept, 'y') + "end");
        QVERIFY(log->text().endsWith("end"));
        QVERIFY(log->text().size() <= LogPane::charactersKept);
        log->copy();
        log->clear();
        QCOMPARE(log->text(), QString());
    }

    void configurations()
    {
        drop(window.data(), {sample()});
        window->saveConfig(folder->filePath("c.txt"));
        window.reset(new MainWindow);
        QVERIFY(window->loadPlugin({PLUGIN_LIBRARY}));
        window->openConfig(folder->filePath("c.txt"));
        tree = window->findChild<QTreeView *>("ingredientTree");
        QVERIFY(pathOf("Host FW").fileName.endsWith("HostFW_1.4.2.bin"));
        const QStringList recent = QSettings().value("recentFiles").toStringList();
        QCOMPARE(recent.mid(0, 2), QStringList({folder->filePath("c.txt"), sample()}));
        const QString *said = answerNextBox("OK");
        window->saveConfig("/nope/c.txt");
        QVERIFY(said->contains("could not be saved"));
    }

    void withoutAPlugin()
    {
        QVERIFY(!window->loadPlugin({"/nope.so"}));
        QVERIFY(window->findChild<QLabel *>("problem")->isVisible());
        QVERIFY(text("problem").contains("/nope.so"));
        QVERIFY(!buildAction()->isEnabled());
        window->open({sample()});
        window->build();
        QVERIFY(!window->check());
        QVERIFY(window->loadPlugin({PLUGIN_LIBRARY}));
        QVERIFY(window->findChild<QLabel *>("target")->isVisible());
    }

    void everyControlHasAName()
    {
        drop(window.data(), {sample()});
        const QList<QWidget *> widgets = window->findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            const bool isControl = widget->focusPolicy() != Qt::NoFocus
                && !widget->objectName().startsWith("qt_") && widget->isVisible();
            const auto button = qobject_cast<QAbstractButton *>(widget);
            QVERIFY2(!isControl || !widget->accessibleName().isEmpty()
                         || (button && !button->text().isEmpty()) || widget->inherits("QTabBar")
                         || widget->inherits("QMenuBar") || widget->inherits("QHeaderView")
                         || widget->inherits("QWidgetLineControl"),
                     qPrintable(widget->metaObject()->className() + widget->objectName()));
        }
    }

    /// Renders the main states, to be looked at.
    void pictures_data()
    {
        QTest::addColumn<bool>("isDark");
        row("light", false);
        row("dark", true);
    }
    void pictures()
    {
        QFETCH(bool, isDark);
        const QPalette before = QApplication::palette();
        if (isDark) {
            QApplication::setPalette(darkPalette());
        }
        window.reset(new MainWindow);
        QVERIFY(window->loadPlugin({PLUGIN_LIBRARY}));
        window->resize(1280, 860);
        window->show();
        tree = window->findChild<QTreeView *>("ingredientTree");
        take("start");
        drop(window.data(), {samples.filePath("broken")});
        setOutput(folder->filePath("image.bin"));
        window->check();
        tree->setCurrentIndex(valueCell("Host FW"));
        tree->edit(tree->currentIndex());
        take("failed");
        QTest::keyClick(tree->findChild<QLineEdit *>(), Qt::Key_Escape);
        window.reset(new MainWindow);
        QVERIFY(window->loadPlugin({PLUGIN_LIBRARY}));
        window->resize(1280, 860);
        window->show();
        tree = window->findChild<QTreeView *>("ingredientTree");
        drop(window.data(), {sample()});
        setOutput(folder->filePath("image.bin"));
        window->findChild<QTabWidget *>("dataViews")->setCurrentIndex(1);
        writeStitcher(folder->path(), "sleep 1; exec " EXAMPLES_FOLDER "/tamblin-stitcher \"$@\"");
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(folder->path()) + ":" + path);
        QSignalSpy finished(window.data(), &MainWindow::buildFinished);
        window->build();
        qputenv("PATH", path);
        take("building");
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000);
        take("built");
        window->loadPlugin({"/nope/libunsigned-zorv.so.1"});
        take("no-plugin");
        QApplication::setPalette(before);
    }

private:
    QString sample() const
    {
        return samples.filePath("sample");
    }
    QModelIndex valueCell(const QString &name) const
    {
        const QModelIndex index = static_cast<IngredientViewModel *>(tree->model())->indexOf(name);
        return index.sibling(index.row(), 1);
    }
    QAbstractItemModel *source() const
    {
        return static_cast<IngredientViewModel *>(tree->model())->sourceModel();
    }
    QModelIndex sourceCell(const QString &name) const
    {
        return static_cast<IngredientViewModel *>(tree->model())->mapToSource(valueCell(name));
    }
    FilePath pathOf(const QString &name) const
    {
        return valueCell(name).data(Qt::EditRole).value<FilePath>();
    }
    void setOutput(const QString &file)
    {
        QCOMPARE(setIngredientValue(source(), "ImageName", file), QString());
    }
    QString text(const QString &label) const
    {
        return window->findChild<QLabel *>(label)->text();
    }
    QAction *buildAction() const
    {
        for (QAction *action : window->findChildren<QAction *>()) {
            if (action->shortcut() == QKeySequence("Ctrl+B")) {
                return action;
            }
        }
        return nullptr;
    }
    void take(const QString &state)
    {
        QTest::qWait(120); // The log shows its messages in batches.
        const QString file = QString(PICTURES_FOLDER "/%1-%2%3.png")
                                 .arg(state, QTest::currentDataTag(),
                                      window->devicePixelRatioF() > 1 ? "-double" : "");
        const QPixmap picture = window->grab();
        QVERIFY(picture.save(file, "PNG", 0)); // As small as can be.
        QCOMPARE(picture.size(), window->size() * window->devicePixelRatioF());
    }

    // A short path that looks the same everywhere, for the pictures.
    QTemporaryDir samples{"/tmp/loomwright-XXXXXX"};
    QScopedPointer<QTemporaryDir> folder;
    QScopedPointer<MainWindow> window;
    QTreeView *tree = nullptr;
};

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
