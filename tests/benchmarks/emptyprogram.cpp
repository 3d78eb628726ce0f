// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QLabel>

/// The least that a Qt program with a widget can be: what starting the terminal host is measured
/// against.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QLabel label(QStringLiteral("empty"));
    return label.text().isEmpty() ? 1 : 0;
}
