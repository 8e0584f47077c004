# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later

# ctemplate brings no files for CMake. Patchloom needs its variant without threads.
find_path(ctemplate_INCLUDE_DIR ctemplate/template.h)
find_library(ctemplate_LIBRARY ctemplate_nothreads)
mark_as_advanced(ctemplate_INCLUDE_DIR ctemplate_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(ctemplate REQUIRED_VARS ctemplate_LIBRARY ctemplate_INCLUDE_DIR)

if(ctemplate_FOUND AND NOT TARGET ctemplate::ctemplate)
    add_library(ctemplate::ctemplate UNKNOWN IMPORTED)
    set_target_properties(ctemplate::ctemplate PROPERTIES
        IMPORTED_LOCATION ${ctemplate_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${ctemplate_INCLUDE_DIR})
endif()
