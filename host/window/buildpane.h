// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "host/core/buildrunner.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

/// How the build stands: busy and for how long, the finished image, or why there is none.
class BuildPane : public QWidget
{
    Q_OBJECT

public:
    explicit BuildPane(QWidget *parent = nullptr);

    void showRunning();
    void showResult(const BuildResult &result);

signals:
    /// The user wants the running build stopped.
    void stopRequested();

private:
    void showElapsed();
    void openFolder();

    QLabel *text;
    QProgressBar *progress;
    QPushButton *stopButton;
    QPushButton *folderButton;
    QElapsedTimer elapsed;
    QTimer elapsedTimer;
    QString imageFile;
};
