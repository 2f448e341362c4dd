#!/usr/bin/env bash
# Makes the transcripts of docs/protocol.md anew: runs the commands that stand there on simulated radios.
#
#   scripts/transcripts.sh               builds what it needs and writes the transcripts into the document
#   scripts/transcripts.sh --check BIN   fails when they differ from those in it; the programs are in BIN
#
# A transcript is a fenced block under a line that says how it comes about:
#
#   <!-- transcript: text, 4 lines from "> ^" of: zepctl -p sim:torvik,unpaced identify -->
#
# It begins at the first line of the wire that begins so. "text" shows characters, a carriage return as ␍ and the end of
# the line; "hex" shows bytes, 16 in a line, and of many that go the same way the first and the last 16.
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

document=$PWD/docs/protocol.md
if [ "${1-}" = --check ]; then
  bin=$(cd "$2" && pwd)
else
  need "${build_packages[@]}"
  build release zepctl zepsim
  bin=$PWD/build/release/bin
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export XDG_CONFIG_HOME=$work XDG_DATA_HOME=$work XDG_STATE_HOME=$work
"$bin/zepsim" --samples . > /dev/null

# shown text|hex < TRACE: what went over the wire, as the document shows it.
shown() {
  awk -v mode="$1" '
    BEGIN { for (i = 32; i < 127; ++i) character[sprintf("%02X", i)] = sprintf("%c", i) }
    function printable(byte) { return byte in character ? character[byte] : "." }
    function hex_line(from,    i, bytes, characters) {
      for (i = from; i < from + 16 && i < size; ++i) {
        bytes = bytes " " run[i]
        characters = characters printable(run[i])
      }
      printf "%s%-48s  %s\n", direction, bytes, characters
    }
    function hex_lines(    i) {
      if (size > 48) { hex_line(0); print "  ... " size - 32 " bytes ..."; hex_line(size - 16) }
      else for (i = 0; i < size; i += 16) hex_line(i)
    }
    function text_lines(    i, line) {
      for (i = 0; i < size; ++i) {
        line = line (run[i] == "0D" ? "␍" : printable(run[i]))
        if (run[i] == "0D" || i == size - 1) { print direction " " line; line = "" }
      }
    }
    function end_run() { if (mode == "text") text_lines(); else hex_lines(); size = 0 }
    $3 ~ /^[<>]$/ {
      if ($3 != direction) end_run()
      direction = $3
      count = split(substr($0, 21, 48), bytes, " ")
      for (at = 1; at <= count; ++at) run[size++] = bytes[at]
    }
    $3 ~ /,n,8,1$/ { end_run(); print "  " $3 }
    END { end_run() }'
}

# trace COMMAND: the trace of a command, which runs once however many transcripts are of it.
trace() { printf 'trace-%s' "$(cksum <<< "$1" | cut -d ' ' -f 1)"; }

pattern='^<!-- transcript: (text|hex), ([0-9]+) lines from "(.*)" of: zepctl (.*) -->$'
mapfile -t commands < <(sed -nE "s/$pattern/\\4/p" "$document" | sort -u)
for command in "${commands[@]}"; do
  # A radio that does not answer ends its command with an error.
  # shellcheck disable=SC2086
  ("$bin/zepctl" --application-folder . --yes --trace "$(trace "$command")" $command > /dev/null 2>&1 || true) &
done
wait

# A transcript ends with its fence; all other lines stay.
while IFS= read -r line; do
  printf '%s\n' "$line"
  [[ $line =~ $pattern ]] || continue
  mode=${BASH_REMATCH[1]} count=${BASH_REMATCH[2]} from=${BASH_REMATCH[3]} command=${BASH_REMATCH[4]}
  printf '```text\n'
  shown "$mode" < "$(trace "$command")" > shown
  awk -v from="$from" -v count="$count" 'index($0, from) == 1 { found = 1 } found && count-- > 0' shown | tee excerpt
  [ "$(wc -l < excerpt)" = "$count" ] || printf '(%s lines are not there)\n' "$count"
  printf '```\n'
  read -r fence
  while IFS= read -r fence && [ "$fence" != '```' ]; do :; done
done < "$document" > new

if [ "${1-}" = --check ]; then
  diff -u "$document" new || fail "docs/protocol.md is not what the radios say: please run scripts/transcripts.sh"
else
  cat new > "$document"
fi
