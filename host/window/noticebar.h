// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>

class QLabel;

/// Shows a text once, until the user closes it or another replaces it.
class NoticeBar : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    /// Shows @p text as plain text; of very many lines, only the first.
    void showText(const QString &text);

private:
    QLabel *label;
};
