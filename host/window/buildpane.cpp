// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/buildpane.h"

#include "host/window/problemtext.h"
#include "host/window/session.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>

namespace {

const int elapsedIntervalMs = 100;
/// The image may be larger than the maximum of a progress bar.
const int progressSteps = 1000;

QString seconds(qint64 milliseconds)
{
    return QLocale().toString(double(milliseconds) / 1000, 'f', 1);
}

QString mebibytes(qint64 bytes)
{
    return QLocale().toString(double(bytes) / (1 << 20), 'f', 0);
}

} // namespace

BuildPane::BuildPane(Session *imageSession, QWidget *parent)
    : QWidget(parent)
    , session(imageSession)
    , text(new QLabel(this))
    , age(new QLabel(this))
    , progress(new QProgressBar(this))
    , stopButton(new QPushButton(tr("S&top"), this))
    , folderButton(new QPushButton(tr("Open fol&der"), this))
{
    auto texts = new QVBoxLayout;
    texts->addWidget(text);
    texts->addWidget(age);
    auto layout = new QHBoxLayout(this);
    layout->addLayout(texts, 1);
    layout->addWidget(progress);
    layout->addWidget(stopButton);
    layout->addWidget(folderButton);

    text->setObjectName(QStringLiteral("buildState"));
    text->setTextFormat(Qt::PlainText);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    age->setObjectName(QStringLiteral("buildAge"));
    age->setText(tr("The values or files have changed since."));
    for (QLabel *label : {text, age}) {
        label->setWordWrap(true);
        // A long word, such as a hash, must not widen the window.
        label->setMinimumWidth(1);
    }
    progress->setObjectName(QStringLiteral("buildProgress"));
    progress->setAccessibleName(tr("Progress of the build"));
    progress->setTextVisible(false);
    stopButton->setObjectName(QStringLiteral("stopBuild"));
    folderButton->setObjectName(QStringLiteral("openImageFolder"));
    hide();

    connect(stopButton, &QPushButton::clicked, session, &Session::stopBuild);
    connect(folderButton, &QPushButton::clicked, this, [this] {
        const QFileInfo image(session->buildResult().image.file);
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(image.path()))) {
            emit failed(tr("The folder %1 could not be opened.")
                            .arg(QDir::toNativeSeparators(image.path())));
        }
    });
    elapsedTimer.setInterval(elapsedIntervalMs);
    connect(&elapsedTimer, &QTimer::timeout, this, &BuildPane::showElapsed);
    connect(session, &Session::buildStarted, this, &BuildPane::showRunning);
    connect(session, &Session::hashing, this, &BuildPane::showHashing);
    connect(session, &Session::buildFinished, this, &BuildPane::showResult);
    connect(session, &Session::changed, this, &BuildPane::showAge);
    connect(session, &Session::projectOpened, this, &QWidget::hide);
}

void BuildPane::setText(const QString &newText)
{
    text->setText(newText);
    show();
}

void BuildPane::showRunning()
{
    age->hide();
    folderButton->hide();
    progress->setRange(0, 0);
    progress->show();
    stopButton->show();
    elapsed.start();
    elapsedTimer.start();
    showElapsed();
}

void BuildPane::showElapsed()
{
    setText(tr("The stitcher is running: %1 s").arg(seconds(elapsed.elapsed())));
}

void BuildPane::showHashing(qint64 done, qint64 total)
{
    elapsedTimer.stop();
    progress->setRange(0, progressSteps);
    progress->setValue(total > 0 ? int(double(done) / double(total) * progressSteps) : 0);
    setText(tr("Hashing: %1 of %2 MiB").arg(mebibytes(done), mebibytes(total)));
}

void BuildPane::showResult(const BuildResult &result)
{
    elapsedTimer.stop();
    progress->hide();
    stopButton->hide();
    age->hide();
    folderButton->setVisible(result.isSuccess);
    if (result.isSuccess) {
        setText(tr("✔ %1\n%2 in %3 s, SHA-256 %4")
                    .arg(QDir::toNativeSeparators(result.image.file),
                         bytesText(result.image.state.size), seconds(result.elapsedMs),
                         QString::fromLatin1(result.image.sha256)));
    } else if (result.isStopped) {
        setText(result.reason);
    } else {
        setText(tr("✖ The build failed. %1").arg(result.reason));
    }
}

void BuildPane::showAge()
{
    age->setVisible(session->buildState() == BuildState::Outdated);
}
