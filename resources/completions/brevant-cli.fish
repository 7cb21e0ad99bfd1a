# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later

# Files that can be listed, and folders.
function __brevant_cli_paths
    __fish_complete_path (commandline -ct) | string match -ri '^[^\t]*(?:/|\.(?:@BREVANT_KINDS_PATTERN@))(?:\t.*)?$'
end

# KEY= for each setting, then its values.
function __brevant_cli_settings
    set -l texts (string match -v 'selected*' @BREVANT_TEXT_SETTINGS@)
    set -l switches @BREVANT_BOOLEAN_SETTINGS@
    set -l encodings utf-8 gb2312 gbk gb18030 big5 big5-hkscs shift-jis iso-2022-jp iso-2022-kr \
        iso-8859-1 iso-8859-15
    set -l folder (commandline -ct | string match -r 'selectedFolderKeyString=(.*)')[2]
    printf '%s\n' $texts= $switches={true,false} selectedEncodingKeyString=$encodings
    printf 'selectedFolderKeyString=%s\n' '' (__fish_complete_directories "$folder" '')
end

# The profiles that are named where one is asked for that is not there; plain words only.
function __brevant_cli_profiles
    command -q brevant-cli; or return
    brevant-cli --show-settings --profile ' ' 2>&1 >/dev/null |
        sed -n 's/.* has no profile " ", but these: //; T; s/, /\n/g; p' | grep -x '[[:alnum:]._-]*'
end

complete -c brevant-cli -f -a '(__brevant_cli_paths)'
complete -c brevant-cli -l exclude -r -F -d 'Leave out what matches, as in a .gitignore'
complete -c brevant-cli -l include -r -F -d 'Take only files that match'
complete -c brevant-cli -l gitignore -d 'Leave out what git ignores'
complete -c brevant-cli -l files-from -r -F -d 'Take the paths in a file too'
complete -c brevant-cli -s 0 -d 'Paths in that file end with zero bytes'
complete -c brevant-cli -l sort -d 'Order the files by path'
complete -c brevant-cli -l changed -d 'Take only files whose outputs are missing or out of date'
complete -c brevant-cli -l shard -x -a '1/2 2/2' -d 'Take one of several parts'
complete -c brevant-cli -l set -x -a '(__brevant_cli_settings)' -d 'A setting for this run only'
complete -c brevant-cli -l settings -r -k -a '(__fish_complete_suffix .json)' -d 'Read the settings from a file'
complete -c brevant-cli -l no-user-settings -d 'Do not read the settings of the user'
complete -c brevant-cli -l profile -x -a '(__brevant_cli_profiles)' -d 'Lay a profile of brevant.json over it'
complete -c brevant-cli -l no-project -d 'Do not look for a brevant.json'
complete -c brevant-cli -l show-settings -d 'Print each setting and where it comes from, run nothing'
complete -c brevant-cli -l init -d 'Write a brevant.json into this folder, run nothing'
complete -c brevant-cli -l out-dir -x -a '(__fish_complete_directories)' -d 'Write into a folder, where trees are mirrored'
complete -c brevant-cli -l copy-rest -d 'Copy what is not minified there too'
complete -c brevant-cli -l keep-times -d 'Give each output the time of its source'
complete -c brevant-cli -l suffix -x -a '.min -min' -d 'Put a text before the extension, and not .min'
complete -c brevant-cli -l no-suffix -d 'Put nothing before the extension'
complete -c brevant-cli -l gzip -d 'Make gzip copies too'
complete -c brevant-cli -l brotli -d 'Make Brotli copies too'
complete -c brevant-cli -l source-maps -d 'Make source maps too'
complete -c brevant-cli -l stdin -x -a '@BREVANT_KINDS_WORDS@ @BREVANT_EXTRA_KINDS@' -d 'Minify standard input'
complete -c brevant-cli -l compressors -x -a 'classic modern' -d 'Use that family of compressors'
complete -c brevant-cli -l jobs -x -a '(seq (nproc))' -d 'Run up to so many compressors at once'
complete -c brevant-cli -l timeout -x -a '10 60 600' -d 'End a compressor that works longer on a file'
complete -c brevant-cli -l fail-fast -d 'Begin no other file after one has failed'
complete -c brevant-cli -l watch -d 'Then wait, and minify what changes'
complete -c brevant-cli -l delete -d 'Delete outputs when their sources go'
complete -c brevant-cli -l also -x -a '(__fish_append , @BREVANT_EXTRA_KINDS@)' -d 'Take files of more kinds too'
complete -c brevant-cli -l all -d 'Search all folders, and take outputs of other files too'
complete -c brevant-cli -l list -d 'Print each file and its output, run nothing'
complete -c brevant-cli -l print0 -d 'Print the files alone, with zero bytes between'
complete -c brevant-cli -l dry-run -d 'Print each command line, run nothing'
complete -c brevant-cli -l check -d 'Warn of what the classic compressors have damaged'
complete -c brevant-cli -l report -r -F -d 'Write a report of the run'
complete -c brevant-cli -l report-format -x -a 'json junit github markdown' -d 'The format of the report'
complete -c brevant-cli -l quiet -d 'Print failures only'
complete -c brevant-cli -l version -d 'Print the version'
complete -c brevant-cli -s h -l help -d 'Print a short help'
