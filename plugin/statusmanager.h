// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

/// Relays the plug-in's messages and events to the host, which creates and owns it and connects to
/// its signals.
///
/// The class is defined in this header, so that host and plug-in each compile a copy and neither
/// needs a symbol of the other. The order of the signals must be the same in both copies.
class StatusManager : public QObject
{
    Q_OBJECT

public:
    /// Creates a relay; connect to it before ILoomwrightPlugin::registerStatusManager().
    explicit StatusManager(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    /// @name For the plug-in
    /// @{

    /// Emits statusMessage().
    void relayStatusMessage(const QString &message)
    {
        emit statusMessage(message);
    }
    /// Emits errorMessage().
    void relayErrorMessage(const QString &message)
    {
        emit errorMessage(message);
    }
    /// Emits dataFileChanged().
    void relayDataFileChanged()
    {
        emit dataFileChanged();
    }
    /// Emits targetDetailsChanged().
    void relayTargetDetailsChanged()
    {
        emit targetDetailsChanged();
    }

    /// @}

signals:
    /// An error. Text for the user; its line feeds and leading and trailing spaces are significant.
    void errorMessage(QString message);
    /// Progress or a report. Text for the user, with significant line feeds and spaces as well.
    void statusMessage(QString message);
    /// The content of the target-details page has changed.
    void targetDetailsChanged();
    /// A legacy data file has been loaded; earlier data views have been deleted.
    void dataFileChanged();
};
