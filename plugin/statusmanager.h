// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

/// The host's relay: through it the plug-in tells the host of messages and events.
///
/// The host creates and owns it and listens to its signals. Everything stands in this header, so
/// that the host and the plug-in each compile a copy and neither needs a symbol of the other; the
/// order of the signals is what makes the two copies fit.
class StatusManager : public QObject
{
    Q_OBJECT

public:
    /// Creates a relay that nobody listens to yet.
    explicit StatusManager(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    /// @name For the plug-in: each sends the signal of the same name.
    /// @{

    /// Sends the signal.
    void relayStatusMessage(const QString &message)
    {
        emit statusMessage(message);
    }
    void relayErrorMessage(const QString &message)
    {
        emit errorMessage(message);
    }
    void relayDataFileChanged()
    {
        emit dataFileChanged();
    }
    void relayTargetDetailsChanged()
    {
        emit targetDetailsChanged();
    }

    /// @}

signals:
    /// Something went wrong. Text for the user, with the line feeds and spaces that it has.
    void errorMessage(QString message);
    /// Progress and reports. Text for the user, with the line feeds and spaces that it has.
    void statusMessage(QString message);
    /// What the target-details page shows has changed.
    void targetDetailsChanged();
    /// A legacy data file has been loaded: the data views are new ones.
    void dataFileChanged();
};
