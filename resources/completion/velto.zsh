#compdef velto

_velto() {
  if ((CURRENT > 2)); then
    case $words[2] in
      completion)
        ((CURRENT == 3)) && compadd bash zsh
        return
        ;;
      history)
        _arguments '--print-url[print the URL and open nothing]' '--help[print the usage]' '*: :'
        return
        ;;
      import-safari)
        _arguments '--from=[from the files in this folder]:folder:_files -/' '--sync[bring sign-ins in step with Safari]' \
          '--print-url[print the URL and open nothing]' '--help[print the usage]' '*: :'
        return
        ;;
      layout | layouts)
        _velto_layouts
        return
        ;;
    esac
  fi
  _arguments \
    '--port=[a port of this computer]:port (1 to 65535): ' \
    '--size=[width and height]:size (such as 420x760): ' \
    '--width=[width in points]:width: ' \
    '--height=[height in points]:height: ' \
    '--x=[distance from the left of the visible area]:x: ' \
    '--y=[distance from the top of the visible area]:y: ' \
    '--top-left[place at the top left of the visible area]' \
    '--zoom=[zoom of the page]:zoom (percent or factor):(50 75 100 125 150 200 300)' \
    '--collapsed-controls[start with the control bar collapsed]' \
    '--reuse[raise the window that already shows this page]' \
    '--background[leave the other applications in front]' \
    '--on-top[keep the window above all others]' \
    '--no-focus[leave the keyboard where it is]' \
    '--incognito[keep nothing of this window on disk]' \
    '--print-url[print the URL and open nothing]' \
    '(- *)--help[print the usage]' \
    '(- *)--version[print the version]' \
    '1:target:_velto_targets'
}

_velto_layouts() {
  local -a verbs
  verbs=(
    'list:list the layouts'
    'names:list the short names'
    'open:open one'
    'pick:ask which one to open'
    'rename:give one another name'
    'save:save the open windows'
    'show:show the window with all layouts'
  )
  if ((CURRENT == 3)); then
    _describe -t commands 'command of layouts' verbs
    return
  fi
  local -a options
  options=('--print-url[print the URL and open nothing]' '--help[print the usage]')
  case $words[3] in
    list) options+=('--json[as JSON]') ;;
    open)
      options+=('--copy[beside those that are open]' '--exact[at the saved places]' '3:layout:_velto_layout_names')
      ;;
    rename) options+=('3:layout:_velto_layout_names') ;;
  esac
  _arguments $options '*: :'
}

_velto_layout_names() {
  compadd -- ${(f)"$(velto layouts names 2>/dev/null)"}
}

_velto_targets() {
  local -a commands
  commands=(
    'completion:print the completion of this command for a shell'
    'history:show the pages that were visited'
    "import-safari:import Safari's cookies and history"
    'layouts:save, open and list layouts'
  )
  if ((CURRENT == 2)); then
    _describe -t commands command commands
    _velto_layout_names
  fi
  if [[ $PREFIX == */* ]]; then
    _files
  fi
}

if [[ ${funcstack[1]-} == _velto ]]; then
  _velto "$@"
else
  (($+functions[compdef])) || { autoload -Uz compinit && compinit }
  compdef _velto velto
fi
