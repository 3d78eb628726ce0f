// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/standardlocations.h"

#include <QtGlobal>

#if QT_VERSION >= 0x050000
#include <QStandardPaths>

QString documentsLocation()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString temporaryLocation()
{
    return QStandardPaths::writableLocation(QStandardPaths::TempLocation);
}
#else
#include <QDesktopServices>

QString documentsLocation()
{
    return QDesktopServices::storageLocation(QDesktopServices::DocumentsLocation);
}

QString temporaryLocation()
{
    return QDesktopServices::storageLocation(QDesktopServices::TempLocation);
}
#endif
