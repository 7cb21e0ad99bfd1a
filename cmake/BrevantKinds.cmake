# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later

# The extensions of all kinds, for the completions and the menus of file managers: read from the one table that has them.
# The extra ones, which the terminal alone accepts, are apart.
set(kinds_table "${CMAKE_SOURCE_DIR}/queue/FileKind.cpp")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${kinds_table}")
file(STRINGS "${kinds_table}" BREVANT_KINDS REGEX "^ +FileKind{u\"")
set(BREVANT_EXTRA_KINDS ${BREVANT_KINDS})
list(FILTER BREVANT_KINDS EXCLUDE REGEX ", extra}")
list(FILTER BREVANT_EXTRA_KINDS INCLUDE REGEX ", extra}")
foreach(kinds BREVANT_KINDS BREVANT_EXTRA_KINDS)
    list(TRANSFORM ${kinds} REPLACE "^ +FileKind{u\"([^\"]+)\".*" "\\1")
endforeach()
if(NOT BREVANT_KINDS OR NOT BREVANT_EXTRA_KINDS)
    message(FATAL_ERROR "no row of the table in ${kinds_table} looks as it is read here")
endif()
list(JOIN BREVANT_KINDS " " BREVANT_KINDS_WORDS)
list(JOIN BREVANT_KINDS "|" BREVANT_KINDS_PATTERN)
list(JOIN BREVANT_EXTRA_KINDS " " BREVANT_EXTRA_KINDS)
