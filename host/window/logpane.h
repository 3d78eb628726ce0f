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

/// The messages of the plug-in, with the time. Status and errors are distinguished.
///
/// It keeps only the newest text, so that messages do not fill the memory, and shows them in
/// batches, so that they do not block the window.
class LogPane : public QWidget
{
    Q_OBJECT

public:
    explicit LogPane(QWidget *parent = nullptr);

    void addStatus(const QString &message);
    void addError(const QString &message);

    /// Selects the next match of the text in the search field and wraps around at the end.
    void findNext();
    void findPrevious();
    /// Selects the first line of the next error and wraps around at the end.
    void showNextError();
    /// Sets whether only errors are shown; the other messages are kept.
    void setErrorsOnly(bool newErrorsOnly);

    /// Copies the selection, or all visible text when nothing is selected.
    void copy();
    void clear();
    /// Asks for a file and saves all text that is kept.
    void save();
    /// All text that is kept, visible or not.
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

    /// Unprocessed messages since the last batch.
    std::deque<Message> incoming;
    /// The text that is kept of earlier messages.
    std::deque<Line> lines;
    /// How many of the lines were processed; the filter hides some of them from the view.
    size_t linesProcessed = 0;
    int blocksShown = 0;
    int incomingCharacters = 0;
    int lineCharacters = 0;
    bool errorsOnly = false;
    bool followsEnd = true;
    QTimer showTimer;
    QTimer followTimer;
};
