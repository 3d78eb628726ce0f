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

/// Shows the state of the build: how long it has been running, the finished image, or why it
/// failed. Takes no space before the first build.
class BuildPane : public QWidget
{
    Q_OBJECT

public:
    /// Shows the builds of @p imageSession, which must outlive this pane.
    explicit BuildPane(Session *imageSession, QWidget *parent = nullptr);

signals:
    /// A request of the user failed.
    void failed(const QString &text);

private:
    void showRunning();
    void showElapsed();
    void showHashing(qint64 done, qint64 total);
    void showResult(const BuildResult &result);
    void showAge();
    void setText(const QString &newText);

    Session *session;
    QLabel *text;
    QLabel *age;
    QProgressBar *progress;
    QPushButton *stopButton;
    QPushButton *folderButton;
    QElapsedTimer elapsed;
    QTimer elapsedTimer;
};
