// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/buildpane.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>

namespace {

const int elapsedIntervalMs = 100;

QString seconds(qint64 milliseconds)
{
    return QString::number(double(milliseconds) / 1000, 'f', 1);
}

} // namespace

BuildPane::BuildPane(QWidget *parent)
    : QWidget(parent)
    , text(new QLabel(tr("Drop a folder of firmware files on this window, check, build."), this))
    , progress(new QProgressBar(this))
    , stopButton(new QPushButton(tr("S&top"), this))
    , folderButton(new QPushButton(tr("&Open folder"), this))
{
    auto layout = new QHBoxLayout(this);
    layout->addWidget(text, 1);
    layout->addWidget(progress);
    layout->addWidget(stopButton);
    layout->addWidget(folderButton);

    text->setObjectName(QStringLiteral("buildState"));
    text->setAccessibleName(tr("State of the build"));
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    progress->setObjectName(QStringLiteral("buildProgress"));
    progress->setAccessibleName(tr("The stitcher is running"));
    progress->setRange(0, 0);
    stopButton->setObjectName(QStringLiteral("stopBuild"));
    stopButton->setAccessibleName(tr("Stop the build"));
    folderButton->setObjectName(QStringLiteral("openImageFolder"));
    folderButton->setAccessibleName(tr("Open the folder of the image"));
    progress->hide();
    stopButton->hide();
    folderButton->hide();

    connect(stopButton, &QPushButton::clicked, this, &BuildPane::stopRequested);
    connect(folderButton, &QPushButton::clicked, this, &BuildPane::openFolder);
    elapsedTimer.setInterval(elapsedIntervalMs);
    connect(&elapsedTimer, &QTimer::timeout, this, &BuildPane::showElapsed);
}

void BuildPane::showRunning()
{
    folderButton->hide();
    progress->show();
    stopButton->show();
    elapsed.start();
    elapsedTimer.start();
    showElapsed();
}

void BuildPane::showElapsed()
{
    text->setText(tr("The stitcher is running: %1 s").arg(seconds(elapsed.elapsed())));
}

void BuildPane::showResult(const BuildResult &result)
{
    elapsedTimer.stop();
    progress->hide();
    stopButton->hide();
    folderButton->setVisible(result.isSuccess);
    imageFile = result.imageFile;
    if (!result.isSuccess) {
        text->setText(tr("✖ The build failed. %1").arg(result.reason));
        return;
    }
    text->setText(tr("✔ %1\n%2 bytes in %3 s, SHA-256 %4")
                      .arg(QDir::toNativeSeparators(imageFile), QString::number(result.imageSize),
                           seconds(result.elapsedMs), QString::fromLatin1(result.sha256)));
}

void BuildPane::openFolder()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(imageFile).absolutePath()));
}
