#compdef tarn
# Completion of tarn for zsh: tarn itself tells what can come next.
_tarn() {
  local -a found told
  local line
  for line in "${(@f)$(tarn __complete "${(@Q)words[2,CURRENT]}" 2>/dev/null)}"; do
    [[ -n $line ]] || continue
    found+=("${line%%$'\t'*}")
    told+=("${line/$'\t'/  }")
  done
  if (( ! $#found )); then
    _files
  elif [[ $found[1] == *= ]]; then
    compadd -S '' -l -d told -a found
  else
    compadd -l -d told -a found
  fi
}
if [[ $zsh_eval_context[-1] == loadautofunc ]]; then
  _tarn "$@"
else
  compdef _tarn tarn
fi
