# shellcheck shell=bash
_velto() {
  local current=${COMP_WORDS[COMP_CWORD]} previous='' words=''
  ((COMP_CWORD > 0)) && previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  case $previous in
    --port | --size | --width | --height | --x | --y | =) return ;;
    --from)
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return
      ;;
    --zoom) words='50 75 100 125 150 200 300' ;;
    *)
      case ${COMP_WORDS[1]} in
        completion) ((COMP_CWORD == 2)) && words='bash zsh' ;;
        history) ((COMP_CWORD > 1)) && words='--print-url --help' ;;
        import-safari) ((COMP_CWORD > 1)) && words='--from --sync --print-url --help' ;;
        layout | layouts) ((COMP_CWORD > 1)) && _velto_layouts && return ;;
      esac
      ;;
  esac
  if [[ -z $words && $current == -* ]]; then
    words='--port --size --width --height --x --y --top-left --zoom --collapsed-controls --reuse
      --background --on-top --no-focus --incognito --print-url --help --version'
  elif [[ -z $words && ${COMP_WORDS[1]} != completion ]]; then
    ((COMP_CWORD == 1)) && words="completion history import-safari layouts $(_velto_layout_names)"
    [[ $current == */* ]] && compopt -o default 2>/dev/null
  fi
  local IFS=$' \t\n'
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

# compgen runs what its words ask for, so nothing but plain short names may get there.
_velto_layout_names() {
  velto layouts names 2>/dev/null | LC_ALL=C grep -xE '[a-z0-9-]+'
}

_velto_layouts() {
  case $COMP_CWORD:${COMP_WORDS[2]} in
    2:*) words='list names open pick rename save show' ;;
    3:rename) words=$(_velto_layout_names) ;;
    *:open) words="$(_velto_layout_names) --copy --exact" ;;
    *:list) words=--json ;;
  esac
  [[ $current == -* ]] && words+=' --print-url --help'
  local IFS=$' \t\n'
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _velto velto
