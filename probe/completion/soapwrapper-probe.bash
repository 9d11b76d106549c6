# Completion of soapwrapper-probe in bash. The program itself says what may stand at the cursor; it is given the
# line as it was typed, since bash has split it at colons, which names of servers have.
_soapwrapper_probe()
{
    local program=${1/#'~/'/"$HOME/"}
    mapfile -t COMPREPLY < <("$program" complete bash "${COMP_LINE:0:COMP_POINT}" "$2" 2> /dev/null)
    case ${COMPREPLY[0]-} in
    files) compopt -o default ;;
    open) compopt -o nospace ;;
    esac
    COMPREPLY=("${COMPREPLY[@]:1}")
}
complete -F _soapwrapper_probe soapwrapper-probe
