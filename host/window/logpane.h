// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QTimer>
#include <QWidget>

class QPlainTextEdit;

/// What the plug-in reports, with the time: status and errors apart.
///
/// It keeps the newest text only, so that no amount of messages fills the memory, and shows them in
/// batches, so that no rate of messages blocks the window.
class LogPane : public QWidget
{
    Q_OBJECT

public:
    explicit LogPane(QWidget *parent = nullptr);

    void addStatus(const QString &message);
    void addError(const QString &message);

    /// Copies the selection, or everything when nothing is selected.
    void copy();
    void clear();
    /// Asks for a file and writes the text into it.
    void save();
    /// All text that is kept, as it is shown.
    QString text();

    /// How much text is kept, in characters.
    static const int charactersKept = 2 * 1024 * 1024;

private:
    struct Entry {
        QString text;
        bool isError;
    };

    void add(const QString &message, bool isError);
    void showPending();
    void trim();

    QPlainTextEdit *view;
    QList<Entry> pending;
    int pendingCharacters = 0;
    QTimer showTimer;
};
