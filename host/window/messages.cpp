// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/messages.h"

#include <QMessageBox>
#include <QPushButton>

void showWarning(QWidget *parent, const QString &title, const QString &text)
{
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

bool confirm(QWidget *parent, const QString &title, const QString &text, const QString &yes,
             const QString &no)
{
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton *yesButton = box.addButton(yes, QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(no, QMessageBox::RejectRole));
    box.exec();
    return box.clickedButton() == yesButton;
}
