// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/logpane.h"

#include "host/core/stagedfile.h"
#include "host/window/marks.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QFileDialog>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <QTime>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

const int showIntervalMs = 50;
const int minLines = 4;
/// A larger batch would block the window while the view takes it in.
const int linesPerBatch = 500;
/// A longer line would block the text layout.
const int maxLineLength = 1000;
/// A longer message is cut at once, since all of it would be dropped anyway.
const int maxMessageLength = 2 * 1024 * 1024;

/// The user states of the blocks of lines. The error lines of each build have their own, above
/// these.
enum LineState { StatusLine, ErrorLine };

bool isAtEnd(const QTextCursor &cursor)
{
    return cursor.block() == cursor.document()->lastBlock();
}

/// Copies only the lines that it shows.
class LogView : public QPlainTextEdit
{
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    QMimeData *createMimeDataFromSelection() const override
    {
        const int start = textCursor().selectionStart();
        const int end = textCursor().selectionEnd();
        QStringList lines;
        for (QTextBlock block = document()->findBlock(start);
             block.isValid() && block.position() <= end; block = block.next()) {
            if (block.isVisible()) {
                const int from = qMax(0, start - block.position());
                lines << block.text().mid(from, end - block.position() - from);
            }
        }
        auto copied = new QMimeData;
        copied->setText(lines.join(QLatin1Char('\n')));
        return copied;
    }
};

/// Colours the lines of errors.
class ErrorHighlighter : public QSyntaxHighlighter
{
public:
    using QSyntaxHighlighter::QSyntaxHighlighter;

protected:
    void highlightBlock(const QString &text) override
    {
        if (currentBlockState() >= ErrorLine) {
            setFormat(0, text.size(), failureColor(QGuiApplication::palette()));
        }
    }
};

} // namespace

LogPane::LogPane(QWidget *parent)
    : QWidget(parent)
    , view(new LogView(this))
    , highlighter(new ErrorHighlighter(view->document()))
    , droppedNotice(new QLabel(this))
    , searchLine(new QLineEdit(this))
    , searchState(new QLabel(this))
    , lastBuild(ErrorLine)
    , errorState(ErrorLine)
{
    setObjectName(QStringLiteral("logPane"));
    createView();
    droppedNotice->setObjectName(QStringLiteral("logDropped"));
    droppedNotice->setText(
        tr("Older lines were dropped: %1 lines are kept.").arg(QLocale().toString(maxLines)));
    droppedNotice->setWordWrap(true);
    droppedNotice->hide();
    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    QToolBar *bar = createBar();
    layout->addWidget(bar);
    layout->addWidget(droppedNotice);
    layout->addWidget(view);
    // The view was created first.
    setTabOrder(searchLine, view);
    setTabOrder(bar->widgetForAction(bar->actions().constLast()), view);
    setFocusProxy(searchLine);

    showTimer.setSingleShot(true);
    showTimer.setInterval(showIntervalMs);
    connect(&showTimer, &QTimer::timeout, this, [this] {
        showLines(linesPerBatch);
        if (isBusy()) {
            showTimer.start();
        }
    });
}

void LogPane::createView()
{
    view->setObjectName(QStringLiteral("log"));
    view->setAccessibleName(tr("Log"));
    view->setReadOnly(true);
    view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    view->setUndoRedoEnabled(false);
    view->setTabChangesFocus(true);
    // The last block is empty: a selection of the last line does not grow with the text.
    view->setMaximumBlockCount(maxLines + 1);
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setStyleHint(QFont::Monospace);
    fixed.setPointSizeF(QFontInfo(font()).pointSizeF());
    view->setFont(fixed);
    // Less than its own minimum: in a low window, the tree needs the height.
    view->setMinimumHeight(fontMetrics().lineSpacing() * minLines);
    // The view follows its end until the user moves elsewhere, by scrolling or with the cursor. The
    // value of the scroll bar does not show this, since the view also changes it while it lays out
    // lines.
    const QScrollBar *bar = view->verticalScrollBar();
    connect(bar, &QScrollBar::actionTriggered, this,
            [this, bar] { followsEnd = bar->sliderPosition() >= bar->maximum(); });
    connect(view, &QPlainTextEdit::cursorPositionChanged, this, [this] {
        followsEnd = isAtEnd(view->textCursor());
        view->ensureCursorVisible();
    });
    // Delayed, because a view that is scrolled while it sets the range counts its lines wrong.
    connect(bar, &QScrollBar::rangeChanged, &followTimer, QOverload<>::of(&QTimer::start));
    connect(&followTimer, &QTimer::timeout, this, &LogPane::followEnd);
    followTimer.setSingleShot(true);
}

void LogPane::followEnd()
{
    if (!followsEnd) {
        return;
    }
    // The range still has the line count from before the lines were laid out in the current width.
    QAbstractTextDocumentLayout *layout = view->document()->documentLayout();
    emit layout->documentSizeChanged(layout->documentSize());
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
}

QToolBar *LogPane::createBar()
{
    auto bar = new QToolBar(this);
    searchLine->setObjectName(QStringLiteral("logSearch"));
    searchLine->setPlaceholderText(tr("Search the log"));
    searchLine->setAccessibleName(tr("Search the log"));
    bar->addWidget(searchLine);
    searchState->setObjectName(QStringLiteral("logSearchState"));
    bar->addWidget(searchState);

    const auto add = [this, bar](const QString &name, auto operation) {
        QAction *action = bar->addAction(name, this, operation);
        bar->widgetForAction(action)->setFocusPolicy(Qt::StrongFocus);
        return action;
    };
    add(tr("Previous"), [this] { search(QTextDocument::FindBackward); });
    add(tr("Next"), [this] { search(); });
    bar->addSeparator();
    errorsOnly = add(tr("Errors only"), &LogPane::filterAll);
    errorsOnly->setObjectName(QStringLiteral("logErrorsOnly"));
    errorsOnly->setCheckable(true);
    add(tr("Next error"), &LogPane::showNextError);
    bar->addSeparator();
    add(tr("Clear"), &LogPane::clear);
    add(tr("Save…"), &LogPane::save);

    connect(searchLine, &QLineEdit::textChanged, this, [this] {
        // Starts at the present match, so that it grows in place while the user types.
        QTextCursor start = view->textCursor();
        start.setPosition(start.selectionStart());
        view->setTextCursor(start);
        search();
    });
    connect(searchLine, &QLineEdit::returnPressed, this, [this] {
        const bool backward = QApplication::keyboardModifiers() & Qt::ShiftModifier;
        search(backward ? QTextDocument::FindBackward : QTextDocument::FindFlags());
    });
    return bar;
}

void LogPane::addStatus(const QString &message)
{
    add(message, StatusLine);
}

void LogPane::addError(const QString &message)
{
    add(message, errorState);
}

void LogPane::add(const QString &message, int state)
{
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    const QString mark = state == StatusLine ? QStringLiteral("   ") : QStringLiteral(" ✖ ");
    QString text = time + mark + message.right(maxMessageLength);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (text.endsWith(QLatin1Char('\n'))) {
        text.chop(1);
    }
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        int start = 0;
        do {
            pending.push_back({line.mid(start, maxLineLength), state});
            start += maxLineLength;
        } while (start < line.size());
    }
    while (pending.size() > maxLines) {
        pending.pop_front();
        droppedNotice->show();
    }
    if (!showTimer.isActive()) {
        showTimer.start();
    }
}

bool LogPane::isBusy() const
{
    return !pending.empty();
}

/// Appends at most @p count pending lines.
void LogPane::showLines(int count)
{
    // A cursor at the end moves with it, which is no choice of the user.
    const QSignalBlocker blocker(view);
    QTextCursor end(view->document());
    end.movePosition(QTextCursor::End);
    end.beginEditBlock();
    for (; isBusy() && count > 0; --count) {
        const Line line = pending.front();
        pending.pop_front();
        QTextBlock block = end.block();
        end.insertText(line.text + QLatin1Char('\n'));
        block.setUserState(line.state);
        filter(block);
        if (view->document()->blockCount() > view->maximumBlockCount()) {
            droppedNotice->show();
        }
    }
    end.endEditBlock();
    countBuildErrors();
}

/// Hides a status line while only errors are shown.
void LogPane::filter(QTextBlock block) const
{
    const bool isShown = !errorsOnly->isChecked() || block.userState() != StatusLine;
    if (isShown != block.isVisible()) {
        block.setVisible(isShown);
        block.setLineCount(isShown ? 1 : 0);
    }
}

/// Unless the view follows its end, keeps the selected line in view, else the first one that is
/// visible. In place of one that is hidden now, the next one.
void LogPane::filterAll()
{
    QTextDocument *document = view->document();
    const QTextCursor selection = view->textCursor();
    QTextBlock kept = (selection.hasSelection() ? selection : view->cursorForPosition({})).block();
    const bool followed = followsEnd;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        filter(block);
    }
    document->markContentsDirty(0, document->characterCount());
    while (!kept.isVisible()) {
        kept = kept.next(); // The last one is always visible.
    }
    view->setTextCursor(QTextCursor(kept)); // Scrolls to it.
    if (selection.hasSelection()) {
        view->setTextCursor(selection);
    }
    followsEnd = followed;
    followTimer.start();
}

void LogPane::focusSearch()
{
    searchLine->setFocus(Qt::ShortcutFocusReason);
    searchLine->selectAll();
}

void LogPane::search(QTextDocument::FindFlags direction)
{
    searchState->clear();
    if (searchLine->text().isEmpty()) {
        return;
    }
    QTextCursor from = view->textCursor();
    const QString continued
        = direction ? tr("Continued from the end") : tr("Continued from the start");
    for (const QString &state : {QString(), continued}) {
        QTextCursor match = from;
        do {
            match = view->document()->find(searchLine->text(), match, direction);
        } while (!match.isNull() && !match.block().isVisible());
        if (!match.isNull()) {
            view->setTextCursor(match);
            searchState->setText(state);
            return;
        }
        from.movePosition(direction ? QTextCursor::End : QTextCursor::Start);
    }
    searchState->setText(tr("Not found"));
}

void LogPane::startBuild()
{
    errorState = ++lastBuild;
    view->moveCursor(QTextCursor::End);
    followsEnd = true; // Also if the cursor was there already.
    followTimer.start();
    countBuildErrors();
}

void LogPane::finishBuild()
{
    errorState = ErrorLine;
}

void LogPane::countBuildErrors()
{
    int count = 0;
    for (QTextBlock block = view->document()->begin(); block.isValid(); block = block.next()) {
        count += block.userState() == lastBuild ? 1 : 0;
    }
    emit buildErrorsChanged(count);
}

void LogPane::showNextError()
{
    showNext(ErrorLine);
}

void LogPane::showNextBuildError()
{
    showNext(lastBuild);
}

/// Selects the next line of at least @p state.
void LogPane::showNext(int state)
{
    QTextBlock next;
    for (QTextBlock block = view->document()->begin(); block.isValid(); block = block.next()) {
        // An empty line cannot be selected, and the search would stay there.
        if (block.userState() < state || block.text().isEmpty()) {
            continue;
        }
        const bool isAfterCursor = block.position() >= view->textCursor().position();
        if (isAfterCursor || !next.isValid()) {
            next = block;
        }
        if (isAfterCursor) {
            break;
        }
    }
    searchState->setText(next.isValid() ? QString() : tr("Not found"));
    if (next.isValid()) {
        QTextCursor line(next);
        line.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        view->setTextCursor(line);
    }
}

QString LogPane::text()
{
    showLines(maxLines);
    return view->toPlainText();
}

void LogPane::clear()
{
    pending.clear();
    view->clear();
    droppedNotice->hide();
    searchState->clear();
    countBuildErrors();
}

void LogPane::save()
{
    const QString fileName
        = QFileDialog::getSaveFileName(this, tr("Save the log"), QStringLiteral("loomwright.log"),
                                       tr("Log (*.log *.txt);;All files (*)"));
    if (fileName.isEmpty()) {
        return;
    }
    QString content = text();
    if (!droppedNotice->isHidden()) {
        content.prepend(droppedNotice->text() + QLatin1Char('\n'));
    }
    const QString problem = writeWhole(resolvedTarget(fileName), content.toUtf8());
    if (!problem.isEmpty()) {
        emit noticed(problem);
    }
}

void LogPane::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        highlighter->rehighlight();
    }
}
