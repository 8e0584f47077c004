# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Gives the target lcms2::lcms2: Little CMS ships a pkg-config file but no CMake package.
find_path(lcms2_INCLUDE_DIR lcms2.h)
find_library(lcms2_LIBRARY lcms2)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(lcms2 REQUIRED_VARS lcms2_LIBRARY lcms2_INCLUDE_DIR)
if(lcms2_FOUND AND NOT TARGET lcms2::lcms2)
    add_library(lcms2::lcms2 UNKNOWN IMPORTED)
    set_target_properties(lcms2::lcms2 PROPERTIES
        IMPORTED_LOCATION ${lcms2_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${lcms2_INCLUDE_DIR})
endif()
