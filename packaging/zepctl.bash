# Completion of zepctl's commands, options, devices and files for bash.

_zepctl_words() { mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur"); }

_zepctl_files() {  # extensions, as in "ops|omn"
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(
    compgen -d -- "$cur"
    compgen -f -- "$cur" | grep -iE "\.($1)\$"
  )
}

_zepctl_devices() {
  local number=""
  [[ $cur == [1-4]=* ]] && number=${cur%%=*}= cur=${cur#*=}
  local devices
  devices=$(compgen -G '/dev/ttyUSB*'; compgen -G '/dev/ttyACM*'; compgen -G '/dev/serial/by-id/*'
            compgen -G '/dev/ttyS[0-9]'
            echo sim:conventional sim:trunked sim:conventional2 sim:model31 sim:torvik)
  mapfile -t COMPREPLY < <(compgen -P "$number" -W "$devices" -- "$cur")
}

# Sets command to the words of the command that were typed already, as "firmware write".
_zepctl_command() {
  local at takes_value='-p|--port|--trace|--application-folder|--string-table|--language'
  command=""
  for ((at = 1; at < cword; ++at)); do
    if [[ ${words[at]} =~ ^($takes_value)$ ]]; then
      ((++at))
    elif [[ ${words[at]} != -* ]]; then
      command+="${command:+ }${words[at]}"
      case $command in
        firmware | convert | data) ;;
        *) return ;;
      esac
    fi
  done
}

_zepctl() {
  local cur prev words cword command
  if declare -F _init_completion > /dev/null; then
    _init_completion -n := || return
  else
    words=("${COMP_WORDS[@]}") cword=$COMP_CWORD
    cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  fi
  _zepctl_command

  case $prev in
    -p | --port) _zepctl_devices ;;
    --language) _zepctl_words "en fr es zh" ;;
    --string-table) _zepctl_words 'ZEP Vorn\ PMR\ II Torvik' ;;
    --application-folder | --database-folder | --calibration-folder)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$cur") ;;
    --trace) compopt -o default; COMPREPLY=() ;;
    --calibration) _zepctl_files ocs ;;
    --data | --defaults) _zepctl_files "ops|omn" ;;
    --image) _zepctl_files bin ;;
    *)
      if [[ $cur == -* ]]; then
        local own=""
        case $command in
          read) own="--calibration --auto --database-folder --calibration-folder" ;;
          "firmware write") own="--at-once --save-data --data" ;;
          upgrade) own="--image --defaults" ;;
          "convert personality") own="--from --to --defaults --dry-run" ;;
          "convert calibration") own="--from --to --dry-run" ;;
        esac
        _zepctl_words "$own -p --port --yes --no --json --quiet --trace --application-folder
          --string-table --language --inhouse -h --help --version"
        return
      fi
      case $command in
        "") _zepctl_words "ports identify read program firmware upgrade convert data" ;;
        firmware) _zepctl_words "check write read" ;;
        convert) _zepctl_words "personality calibration" ;;
        data) _zepctl_words "check show diff" ;;
        "firmware "*) _zepctl_files bin ;;
        read) _zepctl_files "ops|omn" ;;
        "convert calibration") _zepctl_files ocs ;;
        "convert personality") _zepctl_files "ops|omn" ;;
        program | "data "*) _zepctl_files "ops|omn|ocs" ;;
      esac ;;
  esac
  # The colon separates words for readline: what stands before it is there already.
  declare -F __ltrim_colon_completions > /dev/null && __ltrim_colon_completions "$cur"
}

complete -F _zepctl zepctl
