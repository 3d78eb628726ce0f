// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/icons.h"
#include "host/window/logpane.h"
#include "host/window/mainwindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QMainWindow>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

// "bench_window empty" and "bench_window ours" show a window and end after its first paint, to be
// compared by hyperfine. "bench_window log" feeds the log pane with 200 MB, a chunk every so many
// milliseconds, and prints the longest time in milliseconds without an answer.

namespace {

const int chunkSize = 64 * 1024;
const int chunkCount = 200 * 1000 * 1000 / chunkSize;

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
    QApplication::setWindowIcon(applicationIcon());
    MainWindow window;
    window.loadPlugin({QStringLiteral(PLUGIN_LIBRARY)});
    return showUntilPainted(&window);
}

/// Feeds a chunk in every round of the event loop, and measures the rounds.
int feedLog(int roundIntervalMs)
{
    LogPane log;
    log.resize(800, 400);
    log.show();
    QString chunk;
    while (chunk.size() < chunkSize) {
        chunk
            += QStringLiteral("stitching block %1 of the image at its offset\n").arg(chunk.size());
    }
    int chunksLeft = chunkCount;
    qint64 longestMs = 0;
    QElapsedTimer sinceLastRound;
    QTimer round;
    QObject::connect(&round, &QTimer::timeout, &log, [&] {
        if (sinceLastRound.isValid()) {
            longestMs = qMax(longestMs, sinceLastRound.elapsed());
        }
        sinceLastRound.start();
        if (chunksLeft > 0) {
            --chunksLeft;
            log.addStatus(chunk);
        } else if (!log.isBusy()) {
            QCoreApplication::quit();
        }
    });
    round.start(roundIntervalMs);
    const int status = QApplication::exec();
    std::printf("%lld\n", static_cast<long long>(longestMs));
    return status;
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
    if (work == "log") {
        return feedLog(argc > 2 ? QByteArray(argv[2]).toInt() : 0);
    }
    std::fprintf(stderr, "Usage: bench_window empty|ours|log [MILLISECONDS]\n");
    return EXIT_FAILURE;
}
