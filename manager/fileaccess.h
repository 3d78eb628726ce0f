// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Opening files without blocking the host.

#include <QString>

class QFile;

// The plug-in runs on the host's GUI thread. Opening a FIFO with QFile alone would block the host
// until another process opens the other end.

/// Opens the file that @p file names for reading; FIFOs and devices are refused.
/// @return whether the file is open
bool openForReading(QFile *file);

/// Creates or truncates the file at @p path and opens it for writing, without blocking. A FIFO that
/// no process reads is refused.
/// @return a file descriptor whose writes do not block either, for the caller to close; negative
/// when the file cannot be opened
int openForWriting(const QString &path);
