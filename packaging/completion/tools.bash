# Completes the command lines of cclng and ccml in bash. Commands, options and the values of
# options are read from what the tool's own --help says, so nothing here has to follow it.

_common_core_tool() {
  local tool="$1" word="$2" before="$3" help commands command="" section pattern values i
  COMPREPLY=()
  help="$("$tool" --help 2>/dev/null)" || return 0
  pattern="^  $(basename -- "$tool") "
  commands="$(sed -n "s/$pattern\([a-z][a-z-]*\).*/\1/p" <<<"$help" | sort -u)"
  for ((i = 1; i < COMP_CWORD; ++i)); do
    [[ ${COMP_WORDS[i]} == -* ]] || { command="${COMP_WORDS[i]}" && break; }
  done
  if [[ -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands --help --version" -- "$word")
    return 0
  fi
  # The paragraph of the command, up to the next command or an empty line.
  section="$(awk -v start="$pattern$command( |$)" -v other="$pattern" '
    $0 ~ start { inside = 1; print; next }
    /^$/ || $0 ~ other { inside = 0 }
    inside { print }' <<<"$help")"
  # "--option=" is three words to readline; so is the value after it.
  [[ $word == = ]] && word=""
  [[ $before == = ]] && before="${COMP_WORDS[COMP_CWORD - 2]}"
  if [[ $before == --* ]]; then
    values="$(grep -oE -e "${before}[ =][a-z]+(\|[a-z]+)+" <<<"$section" | head -n 1)"
    if [[ -n $values ]]; then
      mapfile -t COMPREPLY < <(compgen -W "$(tr '|' ' ' <<<"${values#"$before"?}")" -- "$word")
      return 0
    fi
  fi
  if [[ $word == -* ]]; then
    # Those of the command, and those that have a line of their own and go with every command.
    values="$({ cat <<<"$section" && grep -E '^  --' <<<"$help"; } |
      grep -oE -e '(^|[^[:alnum:]-])--?[a-z][a-z-]*' | grep -oE -e '--?[a-z][a-z-]*' | sort -u)"
    mapfile -t COMPREPLY < <(compgen -W "$values" -- "$word")
    return 0
  fi
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$word")
}

complete -F _common_core_tool cclng ccml
