# Completion of vormel's arguments in fish.
complete -c vormel -s h -l help -f -d 'Show the options and end'
complete -c vormel -s v -l version -f -d 'Show the version and end'
complete -c vormel -a '(__fish_complete_path (commandline -ct) "Text file with links")'
