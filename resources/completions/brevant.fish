# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later

# Files that can be listed, and folders.
function __brevant_paths
    __fish_complete_path (commandline -ct) | string match -ri '^[^\t]*(?:/|\.(?:@BREVANT_KINDS_PATTERN@))(?:\t.*)?$'
end

complete -c brevant -f -a '(__brevant_paths)'
complete -c brevant -l minify -d 'Add the files and start the run'
complete -c brevant -l gapplication-service -d 'Wait for requests from the session bus'
complete -c brevant -s h -l help -d 'Print a short help'
complete -c brevant -l help-all -d 'Print the options of Qt too'
complete -c brevant -s v -l version -d 'Print the version'
