# Completion of facetor-cli for bash. Source this file, or install it as
# /usr/share/bash-completion/completions/facetor-cli. In zsh: autoload bashcompinit && bashcompinit
# first.

_facetor_cli() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= i
    local commands="info check convert render scene report"
    local common="--help --version --quiet --json"
    local output="--to --if-changed --depfile"
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
    --to)
        COMPREPLY=($(compgen -W "mx3 mxt mdl txr sal obj glb png" -- "$word"))
        return
        ;;
    --order)
        _facetor_cli_files "$word" json
        return
        ;;
    --compare)
        _facetor_cli_files "$word" png
        return
        ;;
    --depfile)
        _facetor_cli_files "$word" d
        return
        ;;
    --header)
        _facetor_cli_files "$word" h
        return
        ;;
    --assets)
        COMPREPLY=($(compgen -d -- "$word"))
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
    --into)
        _facetor_cli_files "$word" mxt
        return
        ;;
    --onto)
        _facetor_cli_files "$word" mx3
        return
        ;;
    --dither)
        COMPREPLY=($(compgen -W "none ordered diffuse" -- "$word"))
        return
        ;;
    --up)
        COMPREPLY=($(compgen -W "y z" -- "$word"))
        return
        ;;
    --select)
        COMPREPLY=($(compgen -W "all none" -- "$word"))
        return
        ;;
    --scale | --max-texture | --first | --size | --camera | --rotate | --view-scale | --angle | --light | --light-color | \
        --ambient | --background | --picked | --repeat | --zoom | --turn)
        return # a number
        ;;
    esac

    if [[ $word == -* ]]; then
        case $command in
        check) common+=" --target --strict --scale" ;;
        convert) common+=" --scale --up --keep-triangles --textures --max-texture --dither --onto --fit --first --numbered --transparent --into --assets --c-names --header $output" ;;
        render)
            common+=" --textures --size --no-fit --camera --rotate --view --view-scale --parallel"
            common+=" --draw --picked --select --repeat --order --first --zoom --transparent --turn --compare --overdraw $light $output"
            ;;
        scene) common+=" $light $output" ;;
        report) common+=" --scale $output" ;;
        esac
        COMPREPLY=($(compgen -W "$common" -- "$word"))
        return
    fi

    case $command in
    "") COMPREPLY=($(compgen -W "$commands" -- "$word")) ;;
    info | check) _facetor_cli_files "$word" mx3 mxt sal ;;
    convert) _facetor_cli_files "$word" mx3 mxt mdl txr sal obj gltf glb png bmp tga jpg jpeg gif ;;
    render) _facetor_cli_files "$word" mx3 png ;;
    scene) _facetor_cli_files "$word" sal ;;
    report) _facetor_cli_files "$word" mx3 mxt html ;;
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
