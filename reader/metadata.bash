# Bash completion for metadata. The program itself lists the completions.
# shellcheck shell=bash
_metadata() {
  local IFS=$'\n' words
  words=$("${COMP_WORDS[0]}" complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
  # shellcheck disable=SC2207  # one line, one word
  COMPREPLY=($(compgen -W "$words" -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -o default -F _metadata metadata
