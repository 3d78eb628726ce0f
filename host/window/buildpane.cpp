// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/buildpane.h"

#include "host/window/problemtext.h"
#include "host/window/session.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QTextDocument>
#include <QUrl>

namespace {

const int maxChanges = 4;
const int elapsedIntervalMs = 100;
/// The image may be larger than the maximum of a progress bar.
const int progressSteps = 1000;

QString seconds(qint64 milliseconds)
{
    return QLocale().toString(double(milliseconds) / 1000, 'f', 1);
}

QString mebibytes(qint64 bytes)
{
    return QLocale().toString(double(bytes) / (1 << 20), 'f', 1);
}

QString imageText(const BuildResult &result)
{
    return BuildPane::tr("%1 (%2, %3 s)")
        .arg(QDir::toNativeSeparators(result.image.file), bytesText(result.image.state.size),
             seconds(result.elapsedMs));
}

QString hashText(const BuildResult &result)
{
    return BuildPane::tr("SHA-256 %1").arg(QString::fromLatin1(result.image.sha256));
}

/// Names the first of @p changes, ingredients and paths, without folders.
QString changesText(const QStringList &changes)
{
    QStringList names;
    for (const QString &change : changes.mid(0, maxChanges)) {
        const QFileInfo file(change);
        names.append(file.isAbsolute() ? file.fileName() : change);
    }
    const int hidden = changes.count() - names.count();
    if (hidden > 0) {
        names.append(BuildPane::tr("%1 more").arg(QLocale().toString(hidden)));
    }
    return BuildPane::tr("Changed since: %1").arg(names.join(BuildPane::tr(", ")));
}

} // namespace

BuildPane::BuildPane(Session *imageSession, QWidget *parent)
    : QWidget(parent)
    , session(imageSession)
    , text(new QLabel(this))
    , hash(new QLabel(this))
    , age(new QLabel(this))
    , progress(new QProgressBar(this))
    , stopButton(new QPushButton(tr("S&top"), this))
    , errorsButton(new QPushButton(this))
    , copyButton(new QPushButton(tr("Copy &SHA-256"), this))
    , folderButton(new QPushButton(tr("Show in fol&der"), this))
{
    auto row = new QHBoxLayout;
    row->addWidget(text, 1);
    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addWidget(hash);
    layout->addWidget(age);
    for (QWidget *widget : std::initializer_list<QWidget *>{progress, stopButton, errorsButton,
                                                            copyButton, folderButton}) {
        row->addWidget(widget);
    }

    text->setObjectName(QStringLiteral("buildState"));
    hash->setObjectName(QStringLiteral("buildHash"));
    age->setObjectName(QStringLiteral("buildAge"));
    for (QLabel *label : {text, hash}) {
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    for (QLabel *label : {text, hash, age}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        // A long word, such as a hash, must not widen the window.
        label->setMinimumWidth(1);
    }
    progress->setObjectName(QStringLiteral("buildProgress"));
    progress->setAccessibleName(tr("Progress of the build"));
    progress->setTextVisible(false);
    createButtons();
    hide();

    elapsedTimer.setInterval(elapsedIntervalMs);
    connect(&elapsedTimer, &QTimer::timeout, this, &BuildPane::showElapsed);
    connect(session, &Session::buildStarted, this, &BuildPane::start);
    connect(session, &Session::hashing, this, &BuildPane::showHashing);
    connect(session, &Session::buildFinished, this, &BuildPane::showState);
    connect(session, &Session::changed, this, &BuildPane::showState);
}

void BuildPane::createButtons()
{
    stopButton->setObjectName(QStringLiteral("stopBuild"));
    errorsButton->setObjectName(QStringLiteral("showErrors"));
    copyButton->setObjectName(QStringLiteral("copyHash"));
    folderButton->setObjectName(QStringLiteral("showInFolder"));
    connect(stopButton, &QPushButton::clicked, session, &Session::stopBuild);
    connect(errorsButton, &QPushButton::clicked, this, &BuildPane::errorsRequested);
    connect(copyButton, &QPushButton::clicked, this, [this] {
        QApplication::clipboard()->setText(
            QString::fromLatin1(session->buildResult().image.sha256));
        emit noticed(tr("The SHA-256 is on the clipboard."));
    });
    connect(folderButton, &QPushButton::clicked, this, &BuildPane::openFolder);
}

void BuildPane::openFolder()
{
    const QString folder = QFileInfo(session->buildResult().image.file).path();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder))) {
        emit noticed(
            tr("The folder %1 could not be opened.").arg(QDir::toNativeSeparators(folder)));
    }
}

void BuildPane::start()
{
    progress->setRange(0, 0);
    elapsed.start();
    elapsedTimer.start();
    showElapsed();
}

void BuildPane::showElapsed()
{
    text->setText(tr("The stitcher is running: %1 s").arg(seconds(elapsed.elapsed())));
}

void BuildPane::showHashing(qint64 done, qint64 total)
{
    elapsedTimer.stop();
    progress->setRange(0, progressSteps);
    progress->setValue(total > 0 ? int(double(done) / double(total) * progressSteps) : 0);
    text->setText(tr("Hashing: %1 of %2 MiB").arg(mebibytes(done), mebibytes(total)));
}

void BuildPane::showState()
{
    const BuildState state = session->buildState();
    const bool built = state == BuildState::Current || state == BuildState::Outdated;
    setVisible(state != BuildState::NotBuilt);
    progress->setVisible(session->isBuilding());
    stopButton->setVisible(session->isBuilding());
    stopButton->setEnabled(state == BuildState::Running);
    copyButton->setVisible(built);
    folderButton->setVisible(built);
    setErrorLines(errorLines);
    if (state != BuildState::Running) {
        elapsedTimer.stop();
        text->setText(stateText());
    }
    hash->setVisible(built);
    hash->setText(hashText(session->buildResult()));
    const QStringList changes
        = state == BuildState::Outdated ? session->changesSinceBuild() : QStringList();
    age->setVisible(!changes.isEmpty());
    age->setText(changes.isEmpty() ? QString() : changesText(changes));
    age->setToolTip(Qt::convertFromPlainText(changes.join(QLatin1Char('\n'))));
}

void BuildPane::setErrorLines(int count)
{
    errorLines = count;
    errorsButton->setVisible(!session->isBuilding() && count > 0);
    errorsButton->setText(count == 1
                              ? tr("1 error line in the &log")
                              : tr("%1 error lines in the &log").arg(QLocale().toString(count)));
}

QString BuildPane::stateText() const
{
    const BuildResult &result = session->buildResult();
    switch (session->buildState()) {
    case BuildState::Stopping:
        return tr("Stopping…");
    case BuildState::Current:
        return tr("✔ %1").arg(imageText(result));
    case BuildState::Outdated:
        return tr("↻ Older image: %1").arg(imageText(result));
    case BuildState::Failed:
        return tr("✖ The build failed. %1").arg(result.reason);
    case BuildState::Stopped:
        return result.reason;
    case BuildState::NotBuilt:
    case BuildState::Running:
        break;
    }
    return {};
}

QString resultLine(const BuildResult &result)
{
    if (!result.isSuccess) {
        return result.isStopped ? result.reason
                                : BuildPane::tr("The build failed. %1").arg(result.reason);
    }
    return BuildPane::tr("Built %1, %2").arg(imageText(result), hashText(result));
}
