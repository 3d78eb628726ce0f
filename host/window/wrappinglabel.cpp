// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/wrappinglabel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QPainter>
#include <QTextLayout>
#include <QtMath>

namespace {

const int minCharacters = 20;
const int usualCharacters = 60;

} // namespace

WrappingLabel::WrappingLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    auto copyAction = new QAction(tr("&Copy"), this);
    connect(copyAction, &QAction::triggered, this,
            [this] { QApplication::clipboard()->setText(text()); });
    addAction(copyAction);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

/// Lays out the text for @p width, draws it if there is a painter, and returns its height.
int WrappingLabel::layOut(int width, QPainter *painter) const
{
    QString shown = text();
    QTextLayout layout(shown.replace(QLatin1Char('\n'), QChar::LineSeparator), font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    qreal height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    if (painter) {
        layout.draw(painter, contentsRect().topLeft());
    }
    return qCeil(height);
}

QSize WrappingLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * minCharacters, fontMetrics().height()};
}

QSize WrappingLabel::sizeHint() const
{
    const int width = fontMetrics().averageCharWidth() * usualCharacters;
    return {width, layOut(width, nullptr)};
}

int WrappingLabel::heightForWidth(int width) const
{
    return layOut(width, nullptr);
}

void WrappingLabel::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    layOut(contentsRect().width(), &painter);
}
