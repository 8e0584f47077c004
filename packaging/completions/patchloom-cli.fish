# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Completions of patchloom-cli for fish.

# What the program lists, the user's own included.
function __patchloom_cli_choices
    patchloom-cli list $argv[1] 2>/dev/null | sed -n -e 1d -e '/^Lengths are/d' -e 's/ .*//p'
end

set -l commands chart convert describe list table
set -l none "not __fish_seen_subcommand_from $commands"
set -l chart "__fish_seen_subcommand_from chart"
set -l convert "__fish_seen_subcommand_from convert"
set -l describe "__fish_seen_subcommand_from describe"
set -l list "__fish_seen_subcommand_from list"
set -l table "__fish_seen_subcommand_from chart convert describe"
set -l maker "__fish_seen_subcommand_from table"

complete -c patchloom-cli -s h -l help -d "Print help"

complete -c patchloom-cli -n $none -f
complete -c patchloom-cli -n $none -l version -d "Print the version"
complete -c patchloom-cli -n $none -a chart -d "Make a chart"
complete -c patchloom-cli -n $none -a convert -d "Turn any table into the plain table"
complete -c patchloom-cli -n $none -a describe -d "Tell what is in a table"
complete -c patchloom-cli -n $none -a list -d "List devices and papers"
complete -c patchloom-cli -n $none -a table -d "Make a table"

complete -c patchloom-cli -n $table -l scale -x -a "1 100 255 65535" -d "What the largest value stands for"
complete -c patchloom-cli -n $table -l space -x -a "cmyk rgb" -d "What the columns are"
complete -c patchloom-cli -n $table -l table -x -d "Which of the file's tables"

complete -c patchloom-cli -n $chart -s d -l device -x -a "(__patchloom_cli_choices devices)" -d "The instrument"
complete -c patchloom-cli -n $chart -s p -l paper -x -a "(__patchloom_cli_choices papers)" -d "The paper"
complete -c patchloom-cli -n $chart -s m -l margins -x -d "Margins in mm: top,right,bottom,left"
complete -c patchloom-cli -n $chart -s s -l patch -x -d "Patch size in mm"
complete -c patchloom-cli -n $chart -s n -l name -x -d "The chart's name"
complete -c patchloom-cli -n $chart -s f -l format -x -a "eps tiff pdf eps,tiff eps,pdf" -d "The sheets' formats"
complete -c patchloom-cli -n $chart -l resolution -x -a "300 600 1200" -d "Dots per inch of TIFF sheets"
complete -c patchloom-cli -n $chart -l compression -x -a "none lzw deflate" -d "How TIFF sheets are packed"
complete -c patchloom-cli -n $chart -l scale-mark -d "Draw lines of exactly 100 mm"
complete -c patchloom-cli -n $chart -s o -l output -x -a "(__fish_complete_directories)" -d "Where the folder goes"
complete -c patchloom-cli -n $chart -l clip -d "Cut the sheets down to the patches"
complete -c patchloom-cli -n $chart -l gaps -x -a "auto never always" -d "Gaps along the scan"
complete -c patchloom-cli -n $chart -l order -x -a "standard best" -d "How patches are ordered"
complete -c patchloom-cli -n $chart -l effort -x -d "How much work the best order takes"
complete -c patchloom-cli -n $chart -l force -d "Replace a chart folder of that name"
complete -c patchloom-cli -n $chart -l lenient -d "Take what the window takes"
complete -c patchloom-cli -n $chart -l presets -r -F -d "Devices and papers of your own"
complete -c patchloom-cli -n $chart -l json -d "Print JSON instead of the summary"
complete -c patchloom-cli -n $chart -s q -l quiet -d "Print nothing on standard output"

complete -c patchloom-cli -n $convert -s o -l output -r -F -d "Where the plain table goes"
complete -c patchloom-cli -n $convert -l ids -r -F -d "Where the rows' identifiers go"
complete -c patchloom-cli -n $convert -l force -d "Replace files that are there"

complete -c patchloom-cli -n $describe -l json -d "Print JSON instead of the description"

complete -c patchloom-cli -n $list -f -a "devices papers"
complete -c patchloom-cli -n $list -l presets -r -F -d "Devices and papers of your own"
complete -c patchloom-cli -n $list -l json -d "Print JSON instead of the lists"

complete -c patchloom-cli -n $maker -f
complete -c patchloom-cli -n $maker -l space -x -a "cmyk rgb" -d "What the patches are"
complete -c patchloom-cli -n $maker -l patches -x -d "How many patches"
complete -c patchloom-cli -n $maker -l fit -x -d "As many as fill so many sheets"
complete -c patchloom-cli -n $maker -s o -l output -r -F -d "Where the table goes"
complete -c patchloom-cli -n $maker -l ink-limit -x -d "Largest sum of inks"
complete -c patchloom-cli -n $maker -l profile -r -F -d "The printer's ICC profile"
complete -c patchloom-cli -n $maker -l whites -x -d "Repeats of the paper"
complete -c patchloom-cli -n $maker -l neutrals -x -d "Steps of each grey axis"
complete -c patchloom-cli -n $maker -l ramps -x -d "Steps of each ink and overprint"
complete -c patchloom-cli -n $maker -l include -r -F -d "Patches that must be in"
complete -c patchloom-cli -n $maker -l round -x -a "1 0.1 8bit" -d "Steps of the values"
complete -c patchloom-cli -n $maker -l neutral-weight -x -d "How much closer near the neutrals"
complete -c patchloom-cli -n $maker -l seed -x -d "Another number, another table"
complete -c patchloom-cli -n $maker -s d -l device -x -a "(__patchloom_cli_choices devices)" -d "The instrument"
complete -c patchloom-cli -n $maker -s p -l paper -x -a "(__patchloom_cli_choices papers)" -d "The paper"
complete -c patchloom-cli -n $maker -s m -l margins -x -d "Margins in mm: top,right,bottom,left"
complete -c patchloom-cli -n $maker -s s -l patch -x -d "Patch size in mm"
complete -c patchloom-cli -n $maker -l presets -r -F -d "Devices and papers of your own"
complete -c patchloom-cli -n $maker -l force -d "Replace a file that is there"
complete -c patchloom-cli -n $maker -l json -d "Print JSON instead of the summary"
