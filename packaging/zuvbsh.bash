# Completion of the options of zuvbsh, for bash. A name may be cut short and be written in any case.

# Prints the name of the option that a word stands for and that takes a value.
_zuvbsh_option_with_value()
{
    local key=${1#-} name
    [[ $1 = -* ]] || return
    for name in domainId timeout cmdFile; do
        if [[ ${name,,} = "${key,,}"* ]]; then
            echo "$name"
            return
        fi
    done
}

_zuvbsh()
{
    local word=${COMP_WORDS[COMP_CWORD]} option= option_words='-domainId -timeout -cmdFile -help'
    # A word behind an option with a value is that value, also if it begins with a dash.
    local index
    for ((index = 1; index < COMP_CWORD; ++index)); do
        if [[ -n $option ]]; then
            option=
        else
            option=$(_zuvbsh_option_with_value "${COMP_WORDS[index]}")
        fi
    done
    COMPREPLY=()
    case $option in
        cmdFile)
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            compopt -o filenames 2>/dev/null
            ;;
        '')
            mapfile -t COMPREPLY < <(compgen -W "$option_words" -- "$word")
            ;;
    esac
    return 0
}

complete -F _zuvbsh zuvbsh
