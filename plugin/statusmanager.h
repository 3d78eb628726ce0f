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
    explicit StatusManager(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

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

signals:
    void errorMessage(QString message);
    void statusMessage(QString message);
    void targetDetailsChanged();
    void dataFileChanged();
};
