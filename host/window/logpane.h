// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextDocument>
#include <QTimer>
#include <QWidget>

#include <deque>

class QIcon;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QToolButton;

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

    /// Selects the next match of the text in the search field, after the last line the first one.
    void findNext();
    void findPrevious();
    /// Selects the first line of the next error, after the last error the first one.
    void showNextError();
    /// Whether only errors are shown; the other messages are kept.
    void setErrorsOnly(bool newErrorsOnly);

    /// Copies the selection, or everything that is shown when nothing is selected.
    void copy();
    void clear();
    /// Asks for a file and writes all text that is kept into it.
    void save();
    /// All text that is kept, whether it is shown or not.
    QString text();

    /// Whether there is text that has not been shown yet.
    bool isBusy() const;

    /// How much text is kept, in characters.
    static const int charactersKept = 2 * 1024 * 1024;

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Message {
        QString text;
        bool isError;
    };
    struct Line {
        QString text;
        bool isError;
        bool startsMessage;
    };

    void createView();
    void followEnd();
    QWidget *createBar();
    QToolButton *addButton(QWidget *bar, const QString &iconName, const QString &name);
    void add(const QString &message, bool isError);
    void splitNextMessage();
    void trim();
    void showSome();
    void moveBack(int anchor, int position);
    void showLine(QTextCursor *end, const Line &line);
    void showAgain();
    void forgetLines();
    void clearView();
    bool isShown(const Line &line) const;
    void find(QTextDocument::FindFlags direction);
    void select(const QTextCursor &cursor);
    void updateFont();

    QPlainTextEdit *view;
    QLabel *droppedNotice;
    QLineEdit *searchLine = nullptr;
    QLabel *searchState = nullptr;
    QToolButton *errorsOnlyButton = nullptr;

    /// What has come since the last batch, as it came.
    std::deque<Message> incoming;
    /// All that is kept of the messages before.
    std::deque<Line> lines;
    /// How many of the lines the view has been given; with the filter it shows fewer.
    size_t linesProcessed = 0;
    int blocksShown = 0;
    int incomingCharacters = 0;
    int lineCharacters = 0;
    bool errorsOnly = false;
    bool followsEnd = true;
    QTimer showTimer;
    QTimer followTimer;
};
