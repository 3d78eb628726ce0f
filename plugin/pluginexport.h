// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QtPlugin>

// Qt 5 exports a plug-in through metadata inside the root class, Qt 4 through a macro in one source
// file. Each macro below is empty for the other version.
#if QT_VERSION >= 0x050000
#define ZORV_PLUGIN_METADATA(identifier) Q_PLUGIN_METADATA(IID identifier)
#define ZORV_EXPORT_PLUGIN(library, rootClass)
#else
#define ZORV_PLUGIN_METADATA(identifier)
// Q_EXPORT_PLUGIN2 exports nothing with a Qt 4 that was built without symbol visibility.
#define ZORV_EXPORT_PLUGIN(library, rootClass)                                                     \
    _Pragma("GCC visibility push(default)") Q_EXPORT_PLUGIN2(library, rootClass)                   \
        _Pragma("GCC visibility pop")
#endif
