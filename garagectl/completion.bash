# Completion of garagectl for bash.
_garagectl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command= word
    local rows="--format --output" filter="--car --model --operation" always="--database --lang --help"
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case $word in
        due | forecast | explain | history | report | doctor | audit | backup) command=$word && break ;;
        esac
    done
    case $previous in
    --database | --output | --check) mapfile -t COMPREPLY < <(compgen -f -- "$current") && return ;;
    --lang) mapfile -t COMPREPLY < <(compgen -W "ru en" -- "$current") && return ;;
    --state) mapfile -t COMPREPLY < <(compgen -W "open due soon ok never" -- "$current") && return ;;
    --sort) mapfile -t COMPREPLY < <(compgen -W "state share car operation last" -- "$current") && return ;;
    --fail-if) mapfile -t COMPREPLY < <(compgen -W "due soon" -- "$current") && return ;;
    --format)
        local formats="table csv json"
        [[ $command = explain || $command = backup ]] && formats="text json"
        mapfile -t COMPREPLY < <(compgen -W "$formats" -- "$current") && return
        ;;
    esac
    local words
    case $command in
    due) words="$filter --state --soon --sort --fail-if $rows $always" ;;
    forecast) words="$filter --days --until $rows $always" ;;
    explain) words="--model $rows $always" ;;
    history) words="$filter --from --to --open $rows $always" ;;
    report)
        words="$filter --soon --days --weeks --records $always"
        [[ $current != -* ]] && mapfile -t COMPREPLY < <(compgen -f -- "$current") && return
        ;;
    doctor) words="$rows $always" ;;
    audit)
        [[ $current = -* ]] || { mapfile -t COMPREPLY < <(compgen -f -- "$current") && return; }
        words="$rows $always"
        ;;
    backup)
        [[ $current = -* ]] || { mapfile -t COMPREPLY < <(compgen -d -- "$current") && return; }
        words="--keep --check $rows $always"
        ;;
    *) words="due forecast explain history report doctor audit backup --version $always" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _garagectl garagectl
