// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QUndoStack>

class ImageSession;

/// The steps by which the user has changed the values of a session; it takes them back and does them
/// again. Another project or plug-in starts a new history.
class UndoHistory : public QUndoStack
{
    Q_OBJECT

public:
    /// @p imageSession must outlive this object.
    explicit UndoHistory(ImageSession *imageSession, QObject *parent = nullptr);
};
