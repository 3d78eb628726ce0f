// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/windowlayout.h"

#include "host/window/lowerpanes.h"

#include <QMainWindow>
#include <QScreen>
#include <QSettings>
#include <QSplitter>

namespace {

const QLatin1String geometryKey("layout/geometry");
const QLatin1String stateKey("layout/state");
const QLatin1String splitterKey("layout/splitter");
/// Version of the layout of toolbars; a state of another version is not restored.
const int layoutVersion = 4;

/// In characters, so that it grows with the font.
const int initialColumns = 150;
const int initialLines = 45;

void fitScreen(QMainWindow *window)
{
    const QFontMetrics metrics = window->fontMetrics();
    const QSize wanted(metrics.averageCharWidth() * initialColumns,
                       metrics.height() * initialLines);
    // The window's frame is unknown until it is shown.
    const QSize available = window->screen()->availableSize() * 9 / 10;
    window->resize(wanted.boundedTo(available));
}

} // namespace

void restoreLayout(QMainWindow *window, QSplitter *splitter, LowerPanes *panes)
{
    const QSettings settings;
    if (!window->restoreGeometry(settings.value(geometryKey).toByteArray())) {
        fitScreen(window);
    }
    window->restoreState(settings.value(stateKey).toByteArray(), layoutVersion);
    splitter->restoreState(settings.value(splitterKey).toByteArray());
    panes->restoreLayout(settings);
}

void saveLayout(const QMainWindow *window, const QSplitter *splitter, const LowerPanes *panes)
{
    QSettings settings;
    settings.setValue(geometryKey, window->saveGeometry());
    settings.setValue(stateKey, window->saveState(layoutVersion));
    settings.setValue(splitterKey, splitter->saveState());
    panes->saveLayout(&settings);
}
