// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/lowerpanes.h"
#include "host/window/mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QStyleFactory>

#include <cstdio>
#include <functional>

// Creates the screenshots of the documentation; run it with screenshots.sh, which provides the
// input.

namespace {

const QSize usualSize(1100, 760);
const QSize smallSize(640, 480);
/// The log shows messages in batches, and the window checks files with a delay.
const int settleMs = 500;
const int maxWaitMs = 20000;
/// For PNG files, the quality sets the compression: 0 gives the smallest file.
const int smallestFile = 0;

struct Inputs {
    QString plugin;
    QString sample;
    QString brokenSample;
    QDir output;
};

QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::AlternateBase, QColor(42, 42, 42));
    palette.setColor(QPalette::Highlight, QColor(42, 110, 180));
    palette.setColor(QPalette::Link, QColor(110, 180, 255));
    const QColor disabled(140, 140, 140);
    for (const QPalette::ColorRole role :
         {QPalette::ButtonText, QPalette::WindowText, QPalette::Text}) {
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    return palette;
}

bool waitUntil(const std::function<bool()> &condition, int timeoutMs)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition() && elapsed.elapsed() < timeoutMs) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    }
    return condition();
}

/// Each picture has its own window, so that it does not show the state of an earlier one.
class Picture
{
public:
    Picture(const Inputs &usedInputs, const QSize &size)
        : inputs(usedInputs)
    {
        if (!window.loadPlugin({inputs.plugin})) {
            qFatal("the plug-in %s could not be loaded", qPrintable(inputs.plugin));
        }
        window.resize(size);
        window.show();
        settle();
    }

    void open(const QString &folder)
    {
        window.open({folder});
        settle();
    }

    void startBuild()
    {
        window.build();
        settle();
        if (!isBuilding()) {
            qFatal("the build does not run");
        }
    }

    void finishBuild()
    {
        if (!waitUntil([this] { return !isBuilding(); }, maxWaitMs)) {
            qFatal("the build does not end");
        }
        settle();
    }

    void showLog()
    {
        window.findChild<LowerPanes *>()->showLog();
        settle();
    }

    void save(const QString &name)
    {
        const QString file = inputs.output.filePath(name + QLatin1String(".png"));
        if (!window.grab().save(file, "PNG", smallestFile)) {
            qFatal("%s could not be written", qPrintable(file));
        }
    }

private:
    bool isBuilding() const
    {
        const auto progress = window.findChild<QWidget *>(QStringLiteral("buildProgress"));
        return progress && progress->isVisible();
    }

    void settle()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < settleMs) {
            QCoreApplication::processEvents();
        }
    }

    const Inputs &inputs;
    MainWindow window;
};

void takeAll(const Inputs &inputs)
{
    Picture(inputs, usualSize).save(QStringLiteral("start"));
    {
        Picture picture(inputs, usualSize);
        picture.open(inputs.brokenSample);
        picture.save(QStringLiteral("problems"));
    }
    {
        Picture picture(inputs, usualSize);
        picture.open(inputs.sample);
        picture.startBuild();
        picture.save(QStringLiteral("building"));
        picture.finishBuild();
        picture.save(QStringLiteral("built"));
    }
    {
        Picture picture(inputs, smallSize);
        picture.open(inputs.brokenSample);
        picture.save(QStringLiteral("small"));
    }
    QApplication::setPalette(darkPalette());
    Picture picture(inputs, usualSize);
    picture.open(inputs.brokenSample);
    picture.showLog();
    picture.save(QStringLiteral("dark"));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("Loomwright"));
    QApplication::setOrganizationName(QStringLiteral("Loomwright"));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QStringList arguments = QApplication::arguments();
    if (arguments.count() != 5) {
        std::fprintf(stderr, "Usage: loomwright-screenshots PLUGIN SAMPLE BROKEN_SAMPLE OUTPUT\n");
        return 2;
    }
    takeAll({arguments.at(1), arguments.at(2), arguments.at(3), QDir(arguments.at(4))});
    return 0;
}
