# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT

option(LOOMWRIGHT_SANITIZE "Build with the address and undefined behaviour sanitizers" OFF)

option(LOOMWRIGHT_FUZZ "Instrument for the fuzzers (with clang)" OFF)

# Linked by every target: warnings, sanitizers, and include paths relative to the top directory.
add_library(loomwright-settings INTERFACE)
target_include_directories(loomwright-settings INTERFACE
    ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR}/generated)
target_compile_options(loomwright-settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    -Wformat=2 -Wnull-dereference)
if(LOOMWRIGHT_SANITIZE)
    target_compile_options(loomwright-settings INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(loomwright-settings INTERFACE -fsanitize=address,undefined)
endif()

if(LOOMWRIGHT_FUZZ)
    target_compile_options(loomwright-settings INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer)
    target_link_options(loomwright-settings INTERFACE -fsanitize=address,undefined)
endif()

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# Harden release builds like Debian packages, unless the compiler or the flags of a distribution do.
include(CheckCXXSymbolExists)
include(CMakePushCheckState)
cmake_push_check_state()
set(CMAKE_REQUIRED_FLAGS -O2) # some compilers define it only when they optimize
check_cxx_symbol_exists(_FORTIFY_SOURCE cstddef LOOMWRIGHT_IS_HARDENED)
cmake_pop_check_state()
if(NOT LOOMWRIGHT_IS_HARDENED)
    target_compile_options(loomwright-settings INTERFACE
        $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2 -fstack-protector-strong>)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i.86")
        target_compile_options(loomwright-settings INTERFACE $<$<CONFIG:Release>:-fcf-protection>)
    endif()
    target_link_options(loomwright-settings INTERFACE $<$<CONFIG:Release>:LINKER:-z,relro,-z,now>)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
