// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/build.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class Session;
class QLabel;
class QProgressBar;
class QPushButton;

/// Shows the state of the build: how long it has been running, the finished image and what has
/// changed since, or why it failed. Takes no space when nothing was built from the values.
class BuildPane : public QWidget
{
    Q_OBJECT

public:
    /// Shows the builds of @p imageSession, which must outlive this pane.
    explicit BuildPane(Session *imageSession, QWidget *parent = nullptr);

    /// Offers to show the error lines of the last build if the log has any.
    void setErrorLines(int count);

signals:
    /// A request of the user was fulfilled or failed.
    void noticed(const QString &text);
    /// The user wants to see what the stitcher has reported.
    void errorsRequested();

private:
    void createButtons();
    void start();
    void showState();
    void showElapsed();
    void showHashing(qint64 done, qint64 total);
    QString stateText() const;
    void openFolder();

    Session *session;
    QLabel *text;
    QLabel *hash;
    QLabel *age;
    QProgressBar *progress;
    QPushButton *stopButton;
    QPushButton *errorsButton;
    QPushButton *copyButton;
    QPushButton *folderButton;
    QElapsedTimer elapsed;
    QTimer elapsedTimer;
    int errorLines = 0; ///< Of the last build, in the log.
};

/// How a build ended, in one line for the log.
QString resultLine(const BuildResult &result);
