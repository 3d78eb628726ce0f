// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <functional>

/// Calls a function whenever an object emits a signal; Qt 4 connects signals to slots alone.
class SignalHook : public QObject
{
    Q_OBJECT

public:
    SignalHook(QObject *source, const char *signal, const std::function<void()> &function)
        : action(function)
    {
        connect(source, signal, SLOT(call()));
    }

public slots:
    void call()
    {
        action();
    }

private:
    std::function<void()> action;
};
