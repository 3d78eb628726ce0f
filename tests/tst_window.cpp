// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "windowtest.h"

#include <QAccessible>

/// The window as a whole: its parts, their names, its size.
class TestWindow : public WindowTest
{
    Q_OBJECT

private slots:
    void dataViews()
    {
        auto tabs = window->findChild<QTabWidget *>("dataViews");
        QVERIFY(!tabs->isVisible());
        for (int round = 0; round < 2; ++round) {
            window->open({sample() + "/platform/veldmark-d1.xml"});
            QCOMPARE(tabs->count(), 1);
            auto dock = window->findChild<QDockWidget *>("dataViewDock");
            QTRY_VERIFY(!dock->isHidden());
            dock->raise();
            QTRY_VERIFY(tabs->isVisible());
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
        }
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
                         || qobject_cast<QLabel *>(widget),
                     qPrintable(widget->metaObject()->className() + widget->objectName()));
        }
    }

    /// What is read aloud is what is shown.
    void labelsAreRead()
    {
        drop(window.data(), {sample()});
        qputenv("PATH", "/nope");
        setImage();
        window->build();
        for (const char *name : {"target", "buildState", "status"}) {
            auto label = window->findChild<QLabel *>(name);
            QVERIFY2(label->isVisible(), name);
            const QString read
                = QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name);
            QVERIFY2(!read.isEmpty(), name);
            QCOMPARE(read, label->text());
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
        const QSize available = window->screen()->availableSize();
        QVERIFY(window->width() <= available.width());
        QVERIFY(window->height() <= available.height());
    }

    void smallWindow()
    {
        drop(window.data(), {broken()});
        window->resize(640, 480);
        QTRY_COMPARE(window->size(), QSize(640, 480));
        QVERIFY(tree->height() > 100);
    }

    void everythingComesBack()
    {
        const QString quitKey = action("Quit")->shortcut().toString();
        QCOMPARE(quitKey, QString("Ctrl+Q"));
        for (const char *name : {"Toolbar", "Problems", "Log", "Data views", "Target details"}) {
            QAction *view = action(name);
            QVERIFY2(view->isCheckable(), name);
            QVERIFY(window->menuBar()->findChildren<QMenu *>().count() > 0);
        }
        auto toolBar = window->findChild<QToolBar *>();
        action("Toolbar")->trigger();
        QVERIFY(!toolBar->isVisible());
        window->close();
        newWindow();
        toolBar = window->findChild<QToolBar *>();
        QVERIFY(!toolBar->isVisible());
        action("Toolbar")->trigger();
        QVERIFY(toolBar->isVisible());
    }

    void iconsFollowThePalette()
    {
        const auto color = [this] {
            const QImage image = action("Build")->icon().pixmap(32).toImage();
            int lightness = 0;
            int count = 0;
            for (int x = 0; x < image.width(); ++x) {
                for (int y = 0; y < image.height(); ++y) {
                    if (image.pixelColor(x, y).alpha() > 200) {
                        lightness += image.pixelColor(x, y).lightness();
                        ++count;
                    }
                }
            }
            return count == 0 ? -1 : lightness / count;
        };
        const QPalette before = QApplication::palette();
        const int light = color();
        QApplication::setPalette(QPalette(QColor(53, 53, 53)));
        const int dark = color();
        QApplication::setPalette(before);
        QVERIFY(light >= 0 && light < 128);
        QVERIFY(dark > 128);
    }
};

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
