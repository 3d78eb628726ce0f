// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QMimeData;

/// The local files and folders in @p data; empty if it contains anything else.
QStringList droppedFiles(const QMimeData *data);
