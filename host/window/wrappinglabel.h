// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// A label for plain text of several lines that can break anywhere, so that a path or a hash
/// without spaces does not widen the window. A menu offers to copy the text.
class WrappingLabel : public QLabel
{
    Q_OBJECT

public:
    explicit WrappingLabel(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int layOut(int width, QPainter *painter) const;
};
