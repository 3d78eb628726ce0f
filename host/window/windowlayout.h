// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

class LowerPanes;
class QMainWindow;
class QSplitter;

/// Restores the size and position of @p window, the sizes in @p splitter, and which of @p panes and
/// toolbars are shown, from the last session. At first, the window fits the screen.
void restoreLayout(QMainWindow *window, QSplitter *splitter, LowerPanes *panes);
/// Stores all that for the next session.
void saveLayout(const QMainWindow *window, const QSplitter *splitter, const LowerPanes *panes);
