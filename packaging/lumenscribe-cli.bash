# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# bash completion for lumenscribe-cli: its options (as its --help lists them), then files
# and folders; after "--" only files and folders.

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

  if [[ $cur == -* ]]; then
    COMPREPLY=($(compgen -W '$(_parse_help "$1")' -- "$cur"))
    return
  fi
  _filedir
} &&
  complete -F _lumenscribe_cli lumenscribe-cli
