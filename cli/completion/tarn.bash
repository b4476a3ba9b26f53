# Completion of tarn for bash: tarn itself tells what can come next.
_tarn() {
  local line=() piece i word tail IFS=$'\n'
  for ((i = 1; i <= COMP_CWORD; i++)); do # bash breaks words at = and :, tarn's words have them inside
    piece=${COMP_WORDS[i]}
    if ((i > 1)) && [[ $piece == [=:]* || ${COMP_WORDS[i - 1]} == *[=:] && ${COMP_WORDS[i - 1]} != -* ]]; then
      line[-1]+=$piece
    else
      line+=("$piece")
    fi
  done
  line=("${line[@]//[\"\'\\]/}")
  word=${line[-1]}
  tail=${word##*[=:]} # what the shell will replace
  COMPREPLY=()
  for piece in $(tarn __complete "${line[@]}" 2>/dev/null); do
    piece=${piece%%$'\t'*}
    COMPREPLY+=("${piece#"${word%"$tail"}"}")
  done
  [[ ${#COMPREPLY[@]} -gt 0 && ${COMPREPLY[0]} == *= ]] && compopt -o nospace 2>/dev/null
}
complete -o default -o filenames -F _tarn tarn
