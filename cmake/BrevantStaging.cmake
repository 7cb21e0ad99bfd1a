# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later

# Run by cpack over what is about to be packed, to have it as Debian has it.
set(usr "${CPACK_TEMPORARY_DIRECTORY}/usr")

file(GLOB_RECURSE modules "${usr}/lib/*.so")
execute_process(COMMAND_ERROR_IS_FATAL ANY
    COMMAND strip --strip-unneeded --remove-section=.comment --remove-section=.note
        "${usr}/bin/brevant" "${usr}/bin/brevant-cli" "${usr}/libexec/brevant/brevant-markup" ${modules})

file(GLOB_RECURSE pages "${usr}/share/man/*.[1-9]")
if(pages)
    execute_process(COMMAND gzip -9nf ${pages} COMMAND_ERROR_IS_FATAL ANY)
endif()

# Root's own menus are trusted by KDE as they are.
file(CHMOD "${usr}/share/kio/servicemenus/org.brevant.Brevant-minify.desktop"
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
