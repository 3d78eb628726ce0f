// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/settingsdialog.h"
#include "spokentext.h"
#include "windowtest.h"

/// The window as a whole: its parts, their names, its size.
class TestWindow : public WindowTest
{
    Q_OBJECT

private slots:
    void everyControlHasAName()
    {
        drop(window.data(), {sample()});
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
    }

    /// What is read aloud is what is shown.
    void labelsAreRead()
    {
        drop(window.data(), {sample()});
        qputenv("PATH", "/nope");
        setImage();
        action("Build")->trigger();
        for (const char *name : {"target", "buildState", "status"}) {
            auto label = window->findChild<QLabel *>(name);
            QVERIFY2(label->isVisible(), name);
            QVERIFY2(!label->text().isEmpty(), name);
            QCOMPARE(spokenText(label), label->text());
        }
        QVERIFY(text("buildState").contains("Nothing was built."));
        QVERIFY(action("Build")->isEnabled());
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
        QCOMPARE(action("Quit")->shortcut().toString(), QString("Ctrl+Q"));
        for (const char *name : {"Toolbar", "Problems", "Log", "Data views", "Target details"}) {
            QVERIFY2(action(name)->isCheckable(), name);
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
};

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
