// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Opening files without blocking the host.

class QFile;

// The plug-in runs on the host's GUI thread. Opening a FIFO with QFile alone would block the host
// until another process opens the other end.

/// Opens the file that @p file names for reading; FIFOs and devices are rejected.
/// @return whether the file is open
bool openForReading(QFile *file);

/// Creates or truncates the file that @p file names and opens it for writing; FIFOs and devices are
/// rejected.
/// @return whether the file is open
bool openForWriting(QFile *file);
