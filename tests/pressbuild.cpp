// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT
// Part of the second target's plug-in in the tests: does in the window what a user would do.

#include <QAction>
#include <QApplication>
#include <QTimer>
#include <QWidget>

namespace {

void pressBuild()
{
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        for (QAction *action : window->findChildren<QAction *>()) {
            if (action->text().remove('&') == "Build") {
                action->trigger();
            }
        }
    }
}

/// Called when the plug-in is loaded into a running program.
void pressBuildSoon()
{
    if (qEnvironmentVariableIsSet("SECOND_TARGET_BUILDS")) {
        QTimer::singleShot(0, pressBuild);
    }
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(pressBuildSoon)
