# bash completion for emp-window; made from the grammar of its arguments by tools/manual
_emp_window_offer() {
  mapfile -t COMPREPLY < <(compgen "$@" -- "$word")
}
_emp_window() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} sub='' at
  # --NAME=VALUE comes as three words.
  [[ $before != = ]] || before=${COMP_WORDS[COMP_CWORD - 2]}
  [[ $word != = ]] || word=
  for ((at = 1; at < COMP_CWORD; at++)); do
    case ${COMP_WORDS[at]} in
      --allow-host | --allow-origin | --encoding | --files | --format | --junit | --listen | --log | --max-sessions | --record | --snapshot | --state | --token)
        [[ ${COMP_WORDS[at + 1]-} != = ]] || ((at++))
        ((at++)) ;;
      -*) ;;
      *)
        sub=${COMP_WORDS[at]}
        break ;;
    esac
  done
  case $sub:$before in
    :--state | shell:--state | exec:--state | import:--state | export:--state | scan:--state | serve:--files | serve:--state | demo:--files | demo:--state)
      _emp_window_offer -d && compopt -o filenames 2>/dev/null
      return ;;
    :--log | shell:--log | exec:--log | import:--log | export:--log | scan:--log | serve:--log | demo:--log)
      _emp_window_offer -W '0 1 2 3'
      return ;;
    check:--junit | serve:--token | serve:--record | serve:--snapshot | demo:--token | demo:--record | demo:--snapshot)
      _emp_window_offer -f && compopt -o filenames 2>/dev/null
      return ;;
    import:--format)
      _emp_window_offer -W 'vdr dvbv5 zap lamedb m3u json'
      return ;;
    import:--encoding | serve:--listen | serve:--allow-origin | serve:--allow-host | serve:--max-sessions | demo:--listen | demo:--allow-origin | demo:--allow-host | demo:--max-sessions)
      COMPREPLY=()
      return ;;
    export:--format)
      _emp_window_offer -W 'vdr dvbv5 m3u json'
      return ;;
  esac
  case $sub in
    '') _emp_window_offer -W 'shell exec check import export scan serve demo -h --help --version --state --log' ;;
    shell) _emp_window_offer -W '-h --help --state --log' ;;
    exec) _emp_window_offer -W '-h --help --raw --state --log' ;;
    check) if [[ $word == -* ]]; then _emp_window_offer -W '-h --help --update --junit'; else _emp_window_offer -f && compopt -o filenames 2>/dev/null; fi ;;
    import) if [[ $word == -* ]]; then _emp_window_offer -W '-h --help --format --encoding --add --state --log'; else _emp_window_offer -f && compopt -o filenames 2>/dev/null; fi ;;
    export) _emp_window_offer -W '-h --help --format --state --log' ;;
    scan) if [[ $word == -* ]]; then _emp_window_offer -W '-h --help --json --import --add --state --log'; else _emp_window_offer -f && compopt -o filenames 2>/dev/null; fi ;;
    serve) _emp_window_offer -W '-h --help --listen --allow-origin --allow-host --token --fresh --record --files --until-eof --no-wait --max-sessions --snapshot --state --log' ;;
    demo) _emp_window_offer -W '-h --help --listen --allow-origin --allow-host --token --fresh --record --files --until-eof --no-wait --max-sessions --snapshot --state --log' ;;
  esac
}
complete -F _emp_window emp-window
