// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QLabel;

/// Shown when there is no plug-in: the reason, and a button to choose one.
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
