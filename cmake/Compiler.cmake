# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Link to patchloom_compiler in every target of ours: third-party code stays free of these flags.
add_library(patchloom_compiler INTERFACE)

# A fused multiply-add rounds once where the arrangement counts on two roundings: it would change charts.
target_compile_options(patchloom_compiler INTERFACE
    -ffp-contract=off
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wdouble-promotion)

# Clang 14 also warns where a default comparison is used.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(patchloom_compiler INTERFACE -Wzero-as-null-pointer-constant)
endif()

# GCC 12 warns of overlaps in std::string's operator+ that are not there (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(patchloom_compiler INTERFACE -Wno-restrict)
endif()

if(PATCHLOOM_WARNINGS_AS_ERRORS)
    target_compile_options(patchloom_compiler INTERFACE -Werror)
endif()

if(PATCHLOOM_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(patchloom_compiler INTERFACE ${sanitizers})
    target_link_options(patchloom_compiler INTERFACE ${sanitizers})
endif()

if(PATCHLOOM_FUZZ)
    target_compile_options(patchloom_compiler INTERFACE -fsanitize=fuzzer-no-link)
endif()
