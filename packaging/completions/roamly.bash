# Completion of roamly's commands, options, settings and files for bash.

_roamly() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]-} position=$COMP_CWORD
    local commands="make new import sources remove-source select deselect place title move remove music set
        settings export inspect --help --version"
    local inspections="project timeline state frame metadata"
    local project_keys="photoDuration kenBurnsEnabled captionsEnabled aiCaptionsEnabled chapterStyle aiProvider
        captionPrompt"
    local keys="photoDuration kenBurnsEnabled chapterStyle captionsEnabled aiCaptionsEnabled exportResolution
        exportCodec defaultAIProvider ollamaBaseURL ollamaModel openRouterModel captionPrompt"
    local options="--json --help" kind=project
    COMPREPLY=()

    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
        return
    fi
    if [[ $command == inspect ]]; then
        if ((COMP_CWORD == 2)); then
            mapfile -t COMPREPLY < <(compgen -W "$inspections --help" -- "$word")
            return
        fi
        command="inspect ${COMP_WORDS[2]}"
        position=$((COMP_CWORD - 1))
    fi

    case $previous in
    --resolution) _roamly_words "p1080 p2160"; return ;;
    --codec) _roamly_words "h264 hevc"; return ;;
    -o | --output | --music) _roamly_files; return ;;
    --project) _roamly_projects; return ;;
    --at | --size | --to | --city | --country) return ;;
    esac

    case $command in
    make) options+=" --output --music --project --resolution --codec"; kind=folder ;;
    import) ((position > 2)) && kind=folder ;;
    place) options+=" --city --country --clear" ;;
    move) options+=" --to" ;;
    music) options+=" --none"; ((position > 2)) && kind=file ;;
    set)
        options+=" --unset --yes"
        ((position == 3)) && { _roamly_words "$project_keys"; return; }
        ((position == 4)) && kind=value
        ;;
    settings)
        options+=" --unset"
        ((position == 2)) && { _roamly_words "$keys $options"; return; }
        kind=value
        ;;
    export) options+=" --output --resolution --codec" ;;
    "inspect state") options+=" --at" ;;
    "inspect frame") options+=" --at --size --output" ;;
    "inspect metadata") kind=file ;;
    esac

    if [[ $word == -* ]]; then
        _roamly_words "$options"
    elif [[ $kind == value ]]; then
        case $previous in
        *Enabled) _roamly_words "true false" ;;
        chapterStyle) _roamly_words "card overlay" ;;
        aiProvider | defaultAIProvider) _roamly_words "apple ollama openRouter" ;;
        exportResolution) _roamly_words "p1080 p2160" ;;
        exportCodec) _roamly_words "h264 hevc" ;;
        esac
    elif [[ $kind == folder ]]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
    elif [[ $kind == file ]]; then
        _roamly_files
    elif ((position == 2)); then
        _roamly_projects
    fi
}

_roamly_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$word")
}

_roamly_files() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
}

# Projects, and the folders on the way to them.
_roamly_projects() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -X '!*.roamly' -- "$word"; compgen -d -- "$word")
}

complete -F _roamly roamly
