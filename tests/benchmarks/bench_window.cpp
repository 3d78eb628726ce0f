// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/mainwindow.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

// "bench_window empty" and "bench_window ours" show a window and end after its first paint, to be
// timed by pairs.py.

namespace {

/// Ends the program after the first paint of a widget.
class FirstPaint : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType()) {
            qApp->removeEventFilter(this);
            // What is painted together with it comes first.
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        }
        return false;
    }
};

int showUntilPainted(QWidget *window)
{
    FirstPaint filter;
    qApp->installEventFilter(&filter);
    window->show();
    return QApplication::exec();
}

int showEmptyWindow()
{
    QMainWindow window;
    return showUntilPainted(&window);
}

int showOurWindow()
{
    MainWindow window;
    window.loadPlugin({QStringLiteral(PLUGIN_LIBRARY)});
    return showUntilPainted(&window);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Loomwright benchmark"));
    const QByteArray work = argc > 1 ? argv[1] : "";
    if (work == "empty") {
        return showEmptyWindow();
    }
    if (work == "ours") {
        return showOurWindow();
    }
    std::fprintf(stderr, "Usage: bench_window empty|ours\n");
    return EXIT_FAILURE;
}
