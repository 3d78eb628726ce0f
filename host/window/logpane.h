// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextDocument>
#include <QTimer>
#include <QWidget>

#include <deque>

class QAction;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QSyntaxHighlighter;
class QTextBlock;
class QToolBar;

/// The messages of the plug-in, with the time. Errors are distinguished.
///
/// It keeps only the newest lines, so that messages do not fill the memory, and shows them in
/// batches, so that they do not block the window.
class LogPane : public QWidget
{
    Q_OBJECT

public:
    explicit LogPane(QWidget *parent = nullptr);

    void addStatus(const QString &message);
    void addError(const QString &message);

    /// Moves the focus to the search field.
    void focusSearch();
    /// Selects the next match of the text in the search field and wraps around at the end.
    void search(QTextDocument::FindFlags direction = {});
    /// Selects the next line of an error and wraps around at the end.
    void showNextError();
    /// Follows the end again. The errors from now on are those of the last build.
    void startBuild();
    /// The errors from now on belong to no build.
    void finishBuild();
    /// Selects the next error line of the last build and wraps around at its end.
    void showNextBuildError();

    void clear();
    /// Asks for a file and saves all text that is kept.
    void save();
    /// All text that is kept.
    QString text();

    /// Whether there is text that has not been shown yet.
    bool isBusy() const;

    static const int maxLines = 20000;

signals:
    /// The log now shows @p count error lines of the last build.
    void buildErrorsChanged(int count);
    /// The log could not be saved.
    void noticed(const QString &text);

protected:
    void changeEvent(QEvent *event) override;

private:
    struct Line {
        QString text;
        int state; ///< That of its block.
    };

    void createView();
    QToolBar *createBar();
    void add(const QString &message, int state);
    void showLines(int count);
    void filter(QTextBlock block) const;
    void filterAll();
    void followEnd();
    void showNext(int state);
    void countBuildErrors();

    QPlainTextEdit *view;
    QSyntaxHighlighter *highlighter;
    QLabel *droppedNotice;
    QLineEdit *searchLine;
    QLabel *searchState;
    QAction *errorsOnly = nullptr;
    /// Lines that are not shown yet.
    std::deque<Line> pending;
    int lastBuild;  ///< The state of its error lines.
    int errorState; ///< The state of the next error line.
    bool followsEnd = true;
    QTimer showTimer;
    QTimer followTimer;
};
