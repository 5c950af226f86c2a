# Completion of zvhost's command line for bash.

_zvhost()
{
    local cur prev words cword split
    _init_completion -s || return

    case $prev in
        --style)
            COMPREPLY=($(compgen -W "Light Dark" -- "$cur"))
            return
            ;;
        --new)
            COMPREPLY=($(compgen -W "testplan schematic script text" -- "$cur"))
            return
            ;;
        --modules)
            _filedir -d
            return
            ;;
        --screenshot)
            _filedir png
            return
            ;;
        --run)
            _filedir
            return
            ;;
        --library | --load)
            _filedir so
            return
            ;;
        -e | --types | --filter)
            return
            ;;
    esac
    $split && return

    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "-h --help --help-all -v --version --style --new --screenshot -e --run --list
            --library --load --modules --files --types --filter" -- "$cur"))
        return
    fi
    _filedir
} && complete -F _zvhost zvhost
