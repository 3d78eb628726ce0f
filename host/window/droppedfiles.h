// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QMimeData;

/// The local files and folders in @p data; none when it holds anything else.
QStringList droppedFiles(const QMimeData *data);
