# Completion of quellboxctl(1) for bash 4.3 or later: commands, options, their values, directories, and the names of the
# archive's messages. tests/console/documents_test.py compares it with what the program says of itself.

# _quellboxctl_plain WORD - sets "plain" to a word of the command line without its quotes. Nothing of it is run.
_quellboxctl_plain() {
  case $1 in
    [\"\']*) plain=${1:1} plain=${plain%"${1:0:1}"} ;;
    *) IFS= read plain <<<"$1" ;; # which takes the backslashes away
  esac
  [[ $plain != '~' && $plain != '~/'* ]] || plain=$HOME${plain:1}
}

# _quellboxctl_names PROGRAM WORD - offers the messages whose names begin with a word.
_quellboxctl_names() {
  local plain name
  local -a where=() narrowed=() names
  for name in archive program; do
    if [[ -n ${places[$name]} ]]; then
      _quellboxctl_plain "${places[$name]}"
      where+=("--$name" "$plain")
    fi
  done
  _quellboxctl_plain "$2"
  [[ -z $plain ]] || narrowed=(--match "name=$plain")
  mapfile -t names < <("$1" list --names "${narrowed[@]}" "${where[@]}" 2>/dev/null)
  for name in "${names[@]}"; do
    [[ $name == "$plain"* ]] || continue
    # Inside of quotes a name stands as it is.
    [[ $2 == [\"\']* ]] || printf -v name %q "$name"
    COMPREPLY+=("$name")
  done
}

_quellboxctl() {
  local commands='list show unblock delete tolerate deliver-tolerated cleanse stats history undo pickup-test watch'
  local common='--archive --pickup --program --csv --json --help -h'
  local choices='--days --match --min-scl --max-scl --tolerated'
  local list_form='--names --print0'
  local dry_run="--dry-run $list_form"
  local with_value=' --archive --pickup --program --days --match --min-scl --max-scl --sort --limit --keep-days --by
    --top --action --result --text --entry --wait --interval '

  # For bash words also end at "=" and ":", which belong to options and to names. What follows without a blank is put
  # together again.
  local -a line=()
  local rest=$COMP_LINE behind i at=0
  for ((i = 0; i < ${#COMP_WORDS[@]}; i++)); do
    behind=${rest#"${rest%%[![:blank:]]*}"}
    if ((i > 0 && i <= COMP_CWORD)) && [[ $behind == "$rest" ]]; then
      line[-1]+=${COMP_WORDS[i]}
    else
      line+=("${COMP_WORDS[i]}")
    fi
    rest=${behind#"${COMP_WORDS[i]}"}
    ((i != COMP_CWORD)) || at=$((${#line[@]} - 1))
  done

  # What the command was given so far, and the directories that count for it.
  local command= option= word
  local -a given=()
  local -A places=()
  ((at < 2)) || command=${line[1]}
  for ((i = 2; i < at; i++)); do
    word=${line[i]}
    if [[ -n $option ]]; then
      places[${option#--}]=$word
      option=
    elif [[ $word == --*=* ]]; then
      word=${word%%=*}
      places[${word#--}]=${line[i]#*=}
    elif [[ $with_value == *[[:space:]]"$word"[[:space:]]* ]]; then
      option=$word
    elif [[ $word != -?* ]]; then
      given+=("$word")
    fi
  done
  # They may stand behind the cursor as well.
  for ((i = at + 1; i < ${#line[@]}; i++)); do
    case ${line[i]} in
      --archive=* | --program=*) word=${line[i]%%=*} places[${word#--}]=${line[i]#*=} ;;
      --archive | --program) word=${line[i]} places[${word#--}]=${line[i + 1]-} ;;
    esac
  done

  local current=${line[at]} value=${line[at]}
  if [[ -z $option && $current == --*=* ]]; then
    option=${current%%=*}
    value=${current#*=}
  fi
  COMPREPLY=()
  case $option in
    --archive | --pickup)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -d -- "$value")
      return
      ;;
    --sort) mapfile -t COMPREPLY < <(compgen -W 'date to from subject size scl' -- "$value") ;;
    --by) mapfile -t COMPREPLY < <(compgen -W 'day scl domain to subject' -- "$value") ;;
    --action)
      mapfile -t COMPREPLY < <(compgen -W 'unblock delete tolerate deliver-tolerated cleanse whitelist-add
        whitelist-remove pickup-test undo' -- "$value")
      ;;
    --result) mapfile -t COMPREPLY < <(compgen -W 'done failed undone' -- "$value") ;;
    --match)
      [[ $value == *=* ]] || compopt -o nospace
      mapfile -t COMPREPLY < <(compgen -W 'date= to= from= sender= subject= size= name=' -- "$value")
      ;;
  esac
  [[ -z $option ]] || return

  if [[ $current == -?* || ($current == - && $command != unblock && $command != delete) ]]; then
    local options
    case $command in
      '') options='--help -h --version -v' ;;
      list) options="$common $choices --sort --reverse --limit $list_form" ;;
      show) options="$common --raw --tree" ;;
      unblock | delete) options="$common $choices --all -0 $dry_run" ;;
      tolerate) options="$common --replace" ;;
      deliver-tolerated) options="$common --days $dry_run" ;;
      cleanse) options="$common --keep-days $dry_run" ;;
      stats) options="$common $choices --by --top" ;;
      history) options="$common --action --result --text --limit" ;;
      undo) options="$common --entry" ;;
      pickup-test) options="$common --wait" ;;
      watch) options="$common $choices --interval $list_form" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    return
  fi

  case $command in
    '') mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current") ;;
    show) ((${#given[@]} > 0)) || _quellboxctl_names "$1" "$current" ;;
    unblock | delete) _quellboxctl_names "$1" "$current" ;;
    tolerate) ((${#given[@]} > 0)) || mapfile -t COMPREPLY < <(compgen -W 'list add remove test' -- "$current") ;;
  esac
  # Of a word that bash has divided, only the last part is replaced.
  local whole=${current%"${current##*[=:]}"}
  if [[ -n $whole && $current != [\"\']* && $COMP_WORDBREAKS == *:* ]]; then
    COMPREPLY=("${COMPREPLY[@]#"$whole"}")
  fi
}
complete -F _quellboxctl quellboxctl
