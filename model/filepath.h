// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QMetaType>
#include <QString>

/// The value of a cell that names a file, with the rules for choosing and checking that file.
///
/// Travels in a QVariant under the type name "FilePath". The host's cell editors read and return
/// it, so the fields and their order are part of the interface with the host. An editor changes
/// @c fileName and returns all other fields unchanged.
struct FilePath {
    QString fileName;              ///< The chosen path; empty when none is chosen.
    QString fileFilter;            ///< Filter text for a file dialog; empty for none.
    bool broadcastChanges = false; ///< Whether a change is announced under @c broadcastName.
    QString broadcastName;         ///< The name under which a change is announced.
    bool isRequired = true;        ///< Whether a file must be chosen.
    int exactSize = 0;             ///< Required size in bytes; 0 for any size.
    int expectedSize = 0;          ///< Equals @c exactSize if a size is required.
    bool isInput = true;           ///< False for a file that the build writes.
};

Q_DECLARE_METATYPE(FilePath)
