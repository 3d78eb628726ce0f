# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

# Finds the Qt version given by ZORV_QT and provides it as one target, zorv-qt.

add_library(zorv-qt INTERFACE)
if(ZORV_QT EQUAL 5)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Xml)
    target_link_libraries(zorv-qt INTERFACE Qt5::Core Qt5::Gui Qt5::Widgets Qt5::Xml)
    # Text without an explicit encoding is Latin-1 in Qt 4 and UTF-8 in Qt 5, and Qt 4's foreach
    # leaves its loop early with current compilers. So neither may be used.
    set(ZORV_QT_DEFINITIONS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
    # Qt 4's resource compiler writes this format, which both versions can read.
    set(ZORV_RCC_OPTIONS --format-version 1)
elseif(ZORV_QT EQUAL 4)
    find_package(Qt4 4.6 REQUIRED COMPONENTS QtCore QtGui QtXml)
    target_link_libraries(zorv-qt INTERFACE Qt4::QtCore Qt4::QtGui Qt4::QtXml)
    # In every build type: the plug-in must be recorded as a release build, like the Workbench's Qt,
    # and Qt 4's debug code for connections is not valid C++11.
    target_compile_definitions(zorv-qt INTERFACE QT_NO_DEBUG)
    set(ZORV_QT_DEFINITIONS)
    set(ZORV_RCC_OPTIONS)
else()
    message(FATAL_ERROR "ZORV_QT must be 5 or 4, not '${ZORV_QT}'")
endif()
