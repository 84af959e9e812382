# fish completion for webarchive(1)

set -l commands list cat check extract create

function __webarchive_archive
    __fish_complete_suffix .webarchive
end

complete -c webarchive -f
complete -c webarchive -l help -s h -d 'Say how it is used'
complete -c webarchive -n "not __fish_seen_subcommand_from $commands" -l version -d 'Say the version'
complete -c webarchive -n "not __fish_seen_subcommand_from $commands" -a list -d 'List the resources of a web archive'
complete -c webarchive -n "not __fish_seen_subcommand_from $commands" -a cat -d 'Write the bytes of a resource'
complete -c webarchive -n "not __fish_seen_subcommand_from $commands" -a check -d 'Say whether a file is a web archive'
complete -c webarchive -n "not __fish_seen_subcommand_from $commands" -a extract -d 'Write files that a browser opens'
complete -c webarchive -n "not __fish_seen_subcommand_from $commands" -a create -d 'Make a web archive of a saved page'
complete -c webarchive -n '__fish_seen_subcommand_from list cat check extract' -k -a '(__webarchive_archive)'
complete -c webarchive -n '__fish_seen_subcommand_from create' -F
complete -c webarchive -n '__fish_seen_subcommand_from list check' -l json -d 'Write JSON'
complete -c webarchive -n '__fish_seen_subcommand_from cat' -l frame -x -d 'Look only in this frame'
complete -c webarchive -n '__fish_seen_subcommand_from check' -l strict -d 'Fail, too, if a part is left out'
complete -c webarchive -n '__fish_seen_subcommand_from extract' -l force -d 'Replace files in the folder'
complete -c webarchive -n '__fish_seen_subcommand_from extract' -l mhtml -d 'Write one MHTML file'
complete -c webarchive -n '__fish_seen_subcommand_from create' -l root -x -a '(__fish_complete_directories)' -d 'Widen what the page may refer to'
complete -c webarchive -n '__fish_seen_subcommand_from create' -l url -x -d 'The address of the page'
complete -c webarchive -n '__fish_seen_subcommand_from create' -l strict -d 'Write nothing if a file is missing'
complete -c webarchive -n '__fish_seen_subcommand_from create' -l xml -d 'Write an XML property list'
