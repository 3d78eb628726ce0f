// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/marks.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace {

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

QColor successColor(const QPalette &palette)
{
    return isDark(palette) ? QColor(129, 199, 132) : QColor(27, 118, 47);
}

QColor warningColor(const QPalette &palette)
{
    return isDark(palette) ? QColor(255, 183, 77) : QColor(176, 92, 0);
}

/// Drawn for the current size and palette, since no bitmap fits every font and background. The
/// states differ in shape as well as in colour.
class MarkEngine : public QIconEngine
{
public:
    explicit MarkEngine(RowState rowState)
        : state(rowState)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QApplication::palette();
        const QColor &text = palette.color(QPalette::PlaceholderText);
        const qreal side = qMin(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.center().x() + 0.5, rect.center().y() + 0.5);
        painter->scale(side / 16, side / 16);
        switch (state) {
        case RowState::Plain:
            break;
        case RowState::Good:
            painter->setPen(pen(successColor(palette), mode));
            painter->drawPolyline(QPolygonF({{-5, 0}, {-2, 4}, {5, -4}}));
            break;
        case RowState::Newer:
            painter->setPen(pen(warningColor(palette), mode));
            painter->drawPolyline(QPolygonF({{-4, 1}, {0, -5}, {4, 1}}));
            painter->drawLine(QPointF(0, -4), QPointF(0, 6));
            break;
        case RowState::Missing:
            painter->setPen(pen(text, mode));
            painter->drawEllipse(QPointF(0, 0), 5, 5);
            break;
        case RowState::Warning:
            painter->setPen(pen(warningColor(palette), mode));
            painter->drawPolygon(QPolygonF({{-6, 5}, {0, -6}, {6, 5}}));
            painter->drawLine(QPointF(0, -1), QPointF(0, 2));
            break;
        case RowState::Problem:
            painter->setPen(pen(failureColor(palette), mode));
            painter->drawLine(QPointF(-4, -4), QPointF(4, 4));
            painter->drawLine(QPointF(-4, 4), QPointF(4, -4));
            break;
        }
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State iconState) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, iconState);
        return picture;
    }

    QIconEngine *clone() const override
    {
        return new MarkEngine(*this);
    }

private:
    static QPen pen(const QColor &color, QIcon::Mode mode)
    {
        const bool selected = mode == QIcon::Selected;
        return QPen(selected ? QApplication::palette().color(QPalette::HighlightedText) : color, 2,
                    Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    }

    RowState state;
};

} // namespace

QIcon markIcon(RowState state)
{
    return QIcon(new MarkEngine(state));
}

QColor failureColor(const QPalette &palette)
{
    return isDark(palette) ? QColor(255, 138, 128) : QColor(176, 0, 32);
}
