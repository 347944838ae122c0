# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# bash completion for lumenscribe-cli: the commands compare and clean in first place, its
# options (as its --help lists them), then files and folders; after "--" only files and
# folders, and after -o a file or folder to write to.

_lumenscribe_cli() {
  local cur prev words cword
  _init_completion || return

  local i
  for ((i = 1; i < cword; i++)); do
    if [[ ${words[i]} == -- ]]; then
      _filedir
      return
    fi
  done

  if [[ $prev == -o || $prev == --output ]]; then
    _filedir
    return
  fi
  if [[ $cur == -* ]]; then
    COMPREPLY=($(compgen -W '$(_parse_help "$1")' -- "$cur"))
    [[ ${COMPREPLY-} == *= ]] && compopt -o nospace
    return
  fi
  _filedir
  if ((cword == 1)); then
    COMPREPLY+=($(compgen -W 'compare clean' -- "$cur"))
  fi
} &&
  complete -F _lumenscribe_cli lumenscribe-cli
