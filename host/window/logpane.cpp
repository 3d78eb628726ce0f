// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/logpane.h"

#include "host/window/failurecolor.h"
#include "host/window/icons.h"
#include "host/window/messages.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTime>
#include <QToolButton>

namespace {

const int showIntervalMs = 50;
/// How long one batch may block the window.
const int batchMs = 20;
/// A longer line would block the text layout for seconds.
const int maxLineLength = 4096;

/// The type of a block of the view, stored as its user state.
enum BlockState { StatusBlock, ErrorStart, ErrorContinuation };

/// Whether a text document starts a new block at @p character.
bool endsLine(QChar character)
{
    switch (character.unicode()) {
    case '\n':
    case '\r':
    case QChar::ParagraphSeparator:
    case 0xfdd0: // Used by documents for the borders of frames.
    case 0xfdd1:
        return true;
    default:
        return false;
    }
}

bool isAtEnd(const QTextCursor &cursor)
{
    return cursor.block() == cursor.document()->lastBlock();
}

} // namespace

LogPane::LogPane(QWidget *parent)
    : QWidget(parent)
    , view(new QPlainTextEdit(this))
    , droppedNotice(new QLabel(this))
{
    createView();
    droppedNotice->setObjectName(QStringLiteral("logDropped"));
    droppedNotice->setText(tr("Older lines were dropped: %1 characters are kept.")
                               .arg(QLocale().toString(charactersKept)));
    droppedNotice->setWordWrap(true);
    droppedNotice->hide();
    auto layout = new QVBoxLayout(this);
    layout->addWidget(createBar());
    layout->addWidget(droppedNotice);
    layout->addWidget(view);
    setFocusProxy(view);
    updateFont();

    showTimer.setSingleShot(true);
    showTimer.setInterval(showIntervalMs);
    connect(&showTimer, &QTimer::timeout, this, &LogPane::showSome);
}

void LogPane::createView()
{
    view->setObjectName(QStringLiteral("log"));
    view->setAccessibleName(tr("Log"));
    view->setReadOnly(true);
    view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    view->setUndoRedoEnabled(false);
    view->setTabChangesFocus(true);
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

QWidget *LogPane::createBar()
{
    auto bar = new QWidget(this);
    auto layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    searchLine = new QLineEdit(bar);
    searchLine->setObjectName(QStringLiteral("logSearch"));
    searchLine->setPlaceholderText(tr("Search the log"));
    searchLine->setAccessibleName(tr("Search the log"));
    searchLine->setClearButtonEnabled(true);
    layout->addWidget(searchLine, 1);
    searchState = new QLabel(bar);
    searchState->setObjectName(QStringLiteral("logSearchState"));
    searchState->setMargin(fontMetrics().horizontalAdvance(QLatin1Char(' ')));
    searchState->hide();
    layout->addWidget(searchState);

    const auto add = [this, bar](const char *icon, const QString &name, auto action) {
        QToolButton *button = addButton(bar, QLatin1String(icon), name);
        connect(button, &QToolButton::clicked, this, action);
    };
    add("go-up", tr("Find previous"), &LogPane::findPrevious);
    add("go-down", tr("Find next"), &LogPane::findNext);
    layout->addSpacing(layout->contentsMargins().left() + searchState->margin());
    errorsOnlyButton = addButton(bar, QStringLiteral("dialog-error"), tr("Show errors only"));
    errorsOnlyButton->setObjectName(QStringLiteral("logErrorsOnly"));
    errorsOnlyButton->setCheckable(true);
    connect(errorsOnlyButton, &QToolButton::toggled, this, &LogPane::setErrorsOnly);
    add("go-jump", tr("Next error"), &LogPane::showNextError);
    layout->addSpacing(searchState->margin());
    add("edit-copy", tr("Copy the log"), &LogPane::copy);
    add("edit-clear", tr("Clear the log"), &LogPane::clear);
    add("document-save-as", tr("Save the log"), &LogPane::save);

    connect(searchLine, &QLineEdit::textChanged, this, [this] {
        // Starts at the present match, so that it grows in place while the user types.
        QTextCursor start = view->textCursor();
        start.setPosition(start.selectionStart());
        select(start);
        find({});
    });
    connect(searchLine, &QLineEdit::returnPressed, this, [this] {
        const bool backward = QApplication::keyboardModifiers() & Qt::ShiftModifier;
        backward ? findPrevious() : findNext();
    });
    return bar;
}

QToolButton *LogPane::addButton(QWidget *bar, const QString &iconName, const QString &name)
{
    auto button = new QToolButton(bar);
    button->setIcon(namedIcon(iconName));
    button->setToolTip(name);
    button->setAccessibleName(name);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    bar->layout()->addWidget(button);
    return button;
}

void LogPane::addStatus(const QString &message)
{
    add(message, false);
}

void LogPane::addError(const QString &message)
{
    add(message, true);
}

void LogPane::add(const QString &message, bool isError)
{
    // Skips text that would be dropped at once, and a final line feed, which would add an empty
    // line.
    QString kept = message.right(charactersKept);
    if (kept.endsWith(QLatin1Char('\n'))) {
        kept.chop(1);
    }
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    const QString mark = isError ? QStringLiteral("✖ ") : QStringLiteral("  ");
    incoming.push_back({time + QLatin1Char(' ') + mark + kept, isError});
    incomingCharacters += incoming.back().text.size();
    while (incoming.size() > 1 && incomingCharacters > charactersKept) {
        incomingCharacters -= incoming.front().text.size();
        incoming.pop_front();
        forgetLines();
        droppedNotice->show();
    }
    if (!showTimer.isActive()) {
        showTimer.start();
    }
}

/// Splits the oldest incoming message into lines.
void LogPane::splitNextMessage()
{
    const Message message = std::move(incoming.front());
    incoming.pop_front();
    incomingCharacters -= message.text.size();
    bool startsMessage = true;
    int start = 0;
    for (int i = 0; i <= message.text.size(); ++i) {
        const bool atEnd = i == message.text.size();
        const bool lineEnds = atEnd || endsLine(message.text.at(i));
        if (!lineEnds && i - start < maxLineLength) {
            continue;
        }
        lines.push_back({message.text.mid(start, i - start), message.isError, startsMessage});
        lineCharacters += i - start + 1;
        startsMessage = false;
        const bool carriageReturnFirst
            = !atEnd && message.text.midRef(i, 2) == QLatin1String("\r\n");
        i += carriageReturnFirst ? 1 : 0;
        start = lineEnds ? i + 1 : i;
    }
}

/// Removes the oldest lines until the text is within the limit.
void LogPane::trim()
{
    int blocksToRemove = 0;
    while (!lines.empty() && lineCharacters + incomingCharacters > charactersKept) {
        const Line &oldest = lines.front();
        lineCharacters -= oldest.text.size() + 1;
        if (linesProcessed > 0) {
            --linesProcessed;
            blocksToRemove += isShown(oldest) ? 1 : 0;
        }
        lines.pop_front();
        droppedNotice->show();
    }
    if (blocksToRemove == 0) {
        return;
    }
    blocksShown -= blocksToRemove;
    if (blocksShown == 0) {
        clearView();
        return;
    }
    QTextCursor oldest(view->document());
    oldest.setPosition(view->document()->findBlockByNumber(blocksToRemove).position(),
                       QTextCursor::KeepAnchor);
    oldest.removeSelectedText();
}

/// Shows text that has not been shown yet, as much as one batch may take.
void LogPane::showSome()
{
    QElapsedTimer elapsed;
    elapsed.start();
    const QSignalBlocker blocker(view);
    trim();
    const QTextCursor current = view->textCursor();
    const int anchor = current.anchor();
    const int position = current.position();
    QTextCursor end(view->document());
    end.movePosition(QTextCursor::End);
    end.beginEditBlock();
    while (elapsed.elapsed() < batchMs) {
        if (linesProcessed < lines.size()) {
            showLine(&end, lines.at(linesProcessed));
            ++linesProcessed;
        } else if (!incoming.empty()) {
            splitNextMessage();
        } else {
            break;
        }
    }
    end.endEditBlock();
    moveBack(anchor, position);
    trim();
    if (isBusy()) {
        showTimer.start();
    }
}

bool LogPane::isBusy() const
{
    return linesProcessed < lines.size() || !incoming.empty();
}

/// Restores the user's cursor: inserted text moves a cursor that is at the end.
void LogPane::moveBack(int anchor, int position)
{
    QTextCursor cursor = view->textCursor();
    if (cursor.anchor() == anchor && cursor.position() == position) {
        return;
    }
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    QScrollBar *bar = view->verticalScrollBar();
    const int value = bar->value();
    view->setTextCursor(cursor);
    bar->setValue(value);
}

void LogPane::showLine(QTextCursor *end, const Line &line)
{
    if (!isShown(line)) {
        return;
    }
    QTextCharFormat format;
    if (line.isError) {
        format.setForeground(failureColor(palette()));
    }
    if (blocksShown > 0) {
        end->insertBlock();
    }
    end->insertText(line.text, format);
    const BlockState errorState = line.startsMessage ? ErrorStart : ErrorContinuation;
    end->block().setUserState(line.isError ? errorState : StatusBlock);
    ++blocksShown;
}

/// Fills the view again, after a change of the filter or of how lines are shown.
void LogPane::showAgain()
{
    clearView();
    linesProcessed = 0;
    followsEnd = true;
    showSome();
}

/// Forgets all messages except the incoming ones.
void LogPane::forgetLines()
{
    if (lines.empty()) {
        return;
    }
    lines.clear();
    lineCharacters = 0;
    linesProcessed = 0;
    clearView();
}

void LogPane::clearView()
{
    view->clear();
    blocksShown = 0;
}

bool LogPane::isShown(const Line &line) const
{
    return line.isError || !errorsOnly;
}

void LogPane::setErrorsOnly(bool newErrorsOnly)
{
    errorsOnly = newErrorsOnly;
    errorsOnlyButton->setChecked(errorsOnly);
    showAgain();
}

void LogPane::findNext()
{
    find({});
}

void LogPane::findPrevious()
{
    find(QTextDocument::FindBackward);
}

void LogPane::find(QTextDocument::FindFlags direction)
{
    const QString wanted = searchLine->text();
    QString state;
    if (!wanted.isEmpty()) {
        QTextCursor match = view->document()->find(wanted, view->textCursor(), direction);
        if (match.isNull()) {
            QTextCursor from(view->document());
            from.movePosition(direction ? QTextCursor::End : QTextCursor::Start);
            match = view->document()->find(wanted, from, direction);
            state = direction ? tr("Continued from the end") : tr("Continued from the start");
        }
        if (match.isNull()) {
            state = tr("Not found");
        } else {
            select(match);
        }
    }
    searchState->setText(state);
    searchState->setVisible(!state.isEmpty());
}

void LogPane::showNextError()
{
    const QTextBlock current = view->textCursor().block();
    const bool isCurrentSelected = view->textCursor().hasSelection();
    QTextBlock block = isCurrentSelected ? current.next() : current;
    for (int visited = 0; visited < view->document()->blockCount(); ++visited) {
        if (!block.isValid()) {
            block = view->document()->firstBlock();
        }
        if (block.userState() == ErrorStart) {
            QTextCursor error(block);
            error.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            select(error);
            searchState->hide();
            return;
        }
        block = block.next();
    }
    searchState->setText(tr("No errors"));
    searchState->show();
}

void LogPane::select(const QTextCursor &cursor)
{
    // Set before the view scrolls, or it would scroll back to the end.
    followsEnd = isAtEnd(cursor);
    view->setTextCursor(cursor);
    view->ensureCursorVisible();
}

QString LogPane::text()
{
    while (!incoming.empty()) {
        splitNextMessage();
    }
    trim();
    QStringList all;
    for (const Line &line : lines) {
        all << line.text;
    }
    return all.join(QLatin1Char('\n'));
}

void LogPane::copy()
{
    const QString selected = view->textCursor().selection().toPlainText();
    QApplication::clipboard()->setText(selected.isEmpty() ? view->toPlainText() : selected);
}

void LogPane::clear()
{
    incoming.clear();
    incomingCharacters = 0;
    forgetLines();
    droppedNotice->hide();
    searchState->hide();
}

void LogPane::save()
{
    const QString fileName
        = QFileDialog::getSaveFileName(this, tr("Save the log"), QStringLiteral("loomwright.log"),
                                       tr("Log (*.log *.txt);;All files (*)"));
    if (fileName.isEmpty()) {
        return;
    }
    QString content = text() + QLatin1Char('\n');
    if (!droppedNotice->isHidden()) {
        content.prepend(droppedNotice->text() + QLatin1Char('\n'));
    }
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0 || !file.commit()) {
        showWarning(this, tr("Save the log"),
                    tr("%1 could not be written: %2").arg(fileName, file.errorString()));
    }
}

void LogPane::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        showAgain();
    } else if (event->type() == QEvent::FontChange) {
        updateFont();
    }
}

void LogPane::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // Delayed until the layout has resized the view.
    followTimer.start();
}

void LogPane::updateFont()
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!QFontInfo(fixed).fixedPitch()) {
        // Some platforms have none.
        fixed.setFamily(QStringLiteral("monospace"));
        fixed.setStyleHint(QFont::Monospace);
    }
    fixed.setPointSizeF(QFontInfo(font()).pointSizeF());
    view->setFont(fixed);
    const QList<QToolButton *> buttons = findChildren<QToolButton *>();
    for (QToolButton *button : buttons) {
        // Excludes the actions inside the search field.
        if (button->parentWidget() != searchLine) {
            button->setIconSize(iconSizeFor(this));
        }
    }
}
