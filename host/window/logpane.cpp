// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/logpane.h"

#include "host/window/failurecolor.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QTextDocumentFragment>
#include <QTime>

namespace {

const int showIntervalMs = 50;
/// A longer line would keep the text layout busy for seconds.
const int longestLine = 4096;

QString inShortLines(const QString &text)
{
    QStringList lines;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        int start = 0;
        do {
            lines << line.mid(start, longestLine);
            start += longestLine;
        } while (start < line.size());
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

LogPane::LogPane(QWidget *parent)
    : QWidget(parent)
    , view(new QPlainTextEdit(this))
{
    auto title = new QLabel(tr("&Log"), this);
    title->setBuddy(view);
    auto header = new QHBoxLayout;
    header->addWidget(title);
    header->addStretch();
    const auto addButton = [this, header](const QString &text, const QString &name, auto action) {
        auto button = new QPushButton(text, this);
        button->setAccessibleName(name);
        connect(button, &QPushButton::clicked, this, action);
        header->addWidget(button);
    };
    addButton(tr("Cop&y"), tr("Copy the log"), &LogPane::copy);
    addButton(tr("Cl&ear"), tr("Clear the log"), &LogPane::clear);
    addButton(tr("Sa&ve…"), tr("Save the log"), &LogPane::save);
    auto layout = new QVBoxLayout(this);
    layout->addLayout(header);
    layout->addWidget(view);

    view->setObjectName(QStringLiteral("log"));
    view->setAccessibleName(tr("Log"));
    view->setReadOnly(true);
    view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    view->setUndoRedoEnabled(false);
    view->setTabChangesFocus(true);

    showTimer.setSingleShot(true);
    showTimer.setInterval(showIntervalMs);
    connect(&showTimer, &QTimer::timeout, this, &LogPane::showPending);
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
    // What would be dropped at once is not even kept, and an ended last line makes no empty one.
    QString kept = message.right(charactersKept);
    if (kept.endsWith(QLatin1Char('\n'))) {
        kept.chop(1);
    }
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    const QString mark = isError ? QStringLiteral("✖ ") : QStringLiteral("  ");
    pending.append({time + QLatin1Char(' ') + mark + kept, isError});
    pendingCharacters += pending.last().text.size();
    while (pending.size() > 1 && pendingCharacters > charactersKept) {
        pendingCharacters -= pending.first().text.size();
        pending.removeFirst();
    }
    if (!showTimer.isActive()) {
        showTimer.start();
    }
}

void LogPane::showPending()
{
    const bool isAtEnd
        = view->verticalScrollBar()->value() >= view->verticalScrollBar()->maximum() - 1;
    QTextCursor end(view->document());
    end.movePosition(QTextCursor::End);
    end.beginEditBlock();
    for (const Entry &entry : std::exchange(pending, {})) {
        QTextCharFormat format;
        if (entry.isError) {
            format.setForeground(failureColor(palette()));
        }
        if (!view->document()->isEmpty()) {
            end.insertBlock();
        }
        end.insertText(inShortLines(entry.text), format);
    }
    end.endEditBlock();
    pendingCharacters = 0;
    trim();
    if (isAtEnd) {
        view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    }
}

/// Takes the oldest lines away until little enough is kept.
void LogPane::trim()
{
    const int excess = view->document()->characterCount() - charactersKept;
    if (excess <= 0) {
        return;
    }
    QTextCursor oldest(view->document());
    oldest.setPosition(excess, QTextCursor::KeepAnchor);
    oldest.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    oldest.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    oldest.removeSelectedText();
}

QString LogPane::text()
{
    showPending();
    return view->toPlainText();
}

void LogPane::copy()
{
    const QString selected = view->textCursor().selection().toPlainText();
    QApplication::clipboard()->setText(selected.isEmpty() ? text() : selected);
}

void LogPane::clear()
{
    pending.clear();
    pendingCharacters = 0;
    view->clear();
}

void LogPane::save()
{
    const QString fileName
        = QFileDialog::getSaveFileName(this, tr("Save the log"), QStringLiteral("loomwright.log"),
                                       tr("Log (*.log *.txt);;All files (*)"));
    if (fileName.isEmpty()) {
        return;
    }
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(text().toUtf8() + '\n') < 0
        || !file.commit()) {
        QMessageBox::warning(this, tr("Save the log"),
                             tr("%1 could not be written: %2").arg(fileName, file.errorString()));
    }
}
