// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include <QLabel>
#include <QObject>
#include <QtPlugin>

/// The least that a plug-in with a page can be: what loading the real one is measured against.
class EmptyPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.loomwright.empty")

public:
    EmptyPlugin()
        : label(QStringLiteral("empty"))
    {
    }

private:
    QLabel label;
};

#include "emptyplugin.moc"
