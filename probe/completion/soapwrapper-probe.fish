# Completion of soapwrapper-probe in fish. The program itself says what may stand at the cursor.
function __soapwrapper_probe_complete
    set -l words (commandline -opc)
    set -l current (commandline -ct)
    set -l program (string replace -r '^~/' "$HOME/" -- $words[1])
    set -l lines ($program complete words $words[2..-1] "$current" 2> /dev/null)
    if test "$lines[1]" = files
        set -l option (string match -r '^--[^=]*=' -- $current)
        for path in (__fish_complete_path (string replace -r '^--[^=]*=' '' -- "$current"))
            echo -- $option$path
        end
    else if set -q lines[2]
        printf '%s\n' $lines[2..-1]
    end
end
complete -c soapwrapper-probe -f -a '(__soapwrapper_probe_complete)'
