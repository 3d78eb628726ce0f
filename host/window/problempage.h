// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QLabel;

/// What the window shows while there is no plug-in: why, and an offer to choose one.
class ProblemPage : public QWidget
{
    Q_OBJECT

public:
    explicit ProblemPage(QWidget *parent = nullptr);

    void setProblem(const QString &problem);

signals:
    void chooseRequested();

private:
    QLabel *text;
};
