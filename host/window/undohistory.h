// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QUndoStack>

class Session;

/// Undoes and redoes the user's changes to the values of a session. Opening another project or
/// plug-in clears the history.
class UndoHistory : public QUndoStack
{
    Q_OBJECT

public:
    /// @p imageSession must outlive this object.
    explicit UndoHistory(Session *imageSession, QObject *parent = nullptr);
};
