// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

/// Sets an environment variable and restores it in the destructor.
class TemporaryVariable
{
public:
    /// A null @p value unsets the variable.
    TemporaryVariable(const char *variableName, const QByteArray &value)
        : name(variableName)
        , before(qgetenv(variableName))
    {
        put(value);
    }
    ~TemporaryVariable()
    {
        put(before);
    }
    TemporaryVariable(const TemporaryVariable &) = delete;
    TemporaryVariable &operator=(const TemporaryVariable &) = delete;

private:
    void put(const QByteArray &value) const
    {
        value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }

    const char *name;
    QByteArray before;
};
