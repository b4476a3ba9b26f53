# Completion of tarn for fish: tarn itself tells what can come next.
function __tarn_complete
    set -l words (commandline -opc) (commandline -ct)
    set -l found (tarn __complete $words[2..] 2>/dev/null)
    if test (count $found) -gt 0
        printf '%s\n' $found
    else
        __fish_complete_path (commandline -ct)
    end
end
complete -c tarn -f -a '(__tarn_complete)'
