// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/icons.h"

#include <QBuffer>
#include <QFile>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QStyle>
#include <QWidget>

/// Resources of a static library must be registered explicitly, outside of any namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(window);
}

namespace {

const char colorPlaceholder[] = "currentColor";

QColor textColor(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
        return palette.color(QPalette::HighlightedText);
    default:
        return palette.color(QPalette::ButtonText);
    }
}

/// Draws a one-colour SVG in the current text colour.
class TextColorIconEngine : public QIconEngine
{
public:
    explicit TextColorIconEngine(const QString &svgFile)
        : fileName(svgFile)
    {
    }

    QIconEngine *clone() const override
    {
        return new TextColorIconEngine(fileName);
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const QSize size = rect.size() * painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap(size, mode, state));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        Q_UNUSED(state)
        const QString color = textColor(mode).name();
        const QString key = QStringLiteral("%1 %2 %3x%4")
                                .arg(fileName, color)
                                .arg(size.width())
                                .arg(size.height());
        QPixmap cached;
        if (!QPixmapCache::find(key, &cached)) {
            cached = render(size, color);
            QPixmapCache::insert(key, cached);
        }
        return cached;
    }

private:
    QPixmap render(const QSize &size, const QString &color) const
    {
        QFile file(fileName);
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        QByteArray svg = file.readAll().replace(colorPlaceholder, color.toLatin1());
        QBuffer buffer(&svg);
        QImageReader reader(&buffer, "svg");
        reader.setScaledSize(size);
        return QPixmap::fromImageReader(&reader);
    }

    QString fileName;
};

} // namespace

QIcon namedIcon(const QString &name)
{
    registerResources();
    QIcon themed = QIcon::fromTheme(name);
    const QString file = QStringLiteral(":/icons/%1.svg").arg(name);
    if (!themed.isNull() || !QFile::exists(file)) {
        return themed;
    }
    return QIcon(new TextColorIconEngine(file));
}

QIcon applicationIcon()
{
    registerResources();
    return QIcon(QStringLiteral(":/loomwright.svg"));
}

QSize iconSizeFor(const QWidget *widget)
{
    const int styleSize = widget->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, widget);
    const int size = qMax(styleSize, widget->fontMetrics().height());
    return {size, size};
}
