# Completion of facetor-cli for bash. Source this file, or install it as
# /usr/share/bash-completion/completions/facetor-cli. In zsh: autoload bashcompinit && bashcompinit
# first.

_facetor_cli() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= i
    local commands="info check convert render scene"
    local common="--help --version --quiet"
    local light="--light --light-color --ambient --background --angle"
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        -*) ;;
        *)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done

    # What follows an option that takes a word.
    case $before in
    --textures)
        _facetor_cli_files "$word" mxt
        return
        ;;
    --view)
        COMPREPLY=($(compgen -W "forward back left right top bottom" -- "$word"))
        return
        ;;
    --draw)
        COMPREPLY=($(compgen -W "full flat wire" -- "$word"))
        return
        ;;
    --select)
        COMPREPLY=($(compgen -W "all none" -- "$word"))
        return
        ;;
    --scale | --size | --camera | --rotate | --view-scale | --angle | --light | --light-color | \
        --ambient | --background | --picked | --repeat)
        return # a number
        ;;
    esac

    if [[ $word == -* ]]; then
        case $command in
        info) common+=" --json" ;;
        convert) common+=" --scale" ;;
        render)
            common+=" --textures --size --no-fit --camera --rotate --view --view-scale --parallel"
            common+=" --draw --picked --select --repeat $light"
            ;;
        scene) common+=" $light" ;;
        esac
        COMPREPLY=($(compgen -W "$common" -- "$word"))
        return
    fi

    case $command in
    "") COMPREPLY=($(compgen -W "$commands" -- "$word")) ;;
    info | check) _facetor_cli_files "$word" mx3 mxt sal ;;
    convert) _facetor_cli_files "$word" mx3 mxt mdl txr sal ;;
    render) _facetor_cli_files "$word" mx3 png ;;
    scene) _facetor_cli_files "$word" sal ;;
    esac
}

# _facetor_cli_files WORD EXTENSION...: folders, and files of these kinds in any case.
_facetor_cli_files() {
    local word=$1 path kind lower
    shift
    compopt -o filenames 2>/dev/null
    while IFS= read -r path; do
        if [[ -d $path ]]; then
            COMPREPLY+=("$path")
            continue
        fi
        lower=${path,,}
        for kind; do
            [[ $lower == *."$kind" ]] && COMPREPLY+=("$path")
        done
    done < <(compgen -f -- "$word")
}

complete -F _facetor_cli facetor-cli
