// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>

class QLabel;

/// What to do first: a title, a text, and a button that does it.
class HintPage : public QFrame
{
    Q_OBJECT

public:
    HintPage(const QString &title, const QString &buttonText, QWidget *parent = nullptr);

    /// Explains the title.
    void setText(const QString &newText);
    /// Sets whether the text is shown, for which a low window has no room.
    void setTextVisible(bool isVisible);

signals:
    /// The button was pressed.
    void requested();

private:
    QLabel *text;
};
