// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>

class QLabel;

/// A line for something that is to be shown once, until the user closes it or it is replaced.
class NoticeBar : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    /// Shows @p text, taken as plain text; of very many lines the first.
    void showText(const QString &text);

private:
    QLabel *label;
};
