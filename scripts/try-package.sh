#!/usr/bin/env bash
# Builds the Debian package and tries it: what is in it, then the programs as they are installed, then that removing it
# leaves nothing. As root in a container the package is really installed for a moment; elsewhere, or when it is installed
# already, it is unpacked into a folder and runs from there. Nothing is left behind but build/release.
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

need "${build_packages[@]}" dpkg-dev lintian desktop-file-utils groff-base xvfb xauth x11-utils
build release zep_installed

scratch=$(mktemp -d)
installed=no
clean_up() {
  [ "$installed" = no ] || dpkg --purge zepdlca > /dev/null || true
  rm -rf "$scratch"
}
trap clean_up EXIT

# expect WHAT COMMAND...: the command must succeed; its output is shown when it does not.
expect() {
  local what=$1
  shift
  "$@" > "$scratch/output" 2>&1 || fail "FAILED: $what: $* $(printf '\n'; cat "$scratch/output")"
  printf '   %s\n' "$what"
}

# says TEXT COMMAND...: the command must succeed, with TEXT in its output.
says() {
  local text=$1
  shift
  "$@" > "$scratch/said" 2>&1 && grep -qF -- "$text" "$scratch/said" || { cat "$scratch/said"; return 1; }
}

step "Packing"
quietly cpack -G DEB --config build/release/CPackConfig.cmake -B "$scratch/packing"
package=$(echo "$scratch"/packing/*.deb)
version=$(dpkg-deb -f "$package" Version)
ls -sh "$package" | sed "s|$scratch/packing/||"
dpkg-deb -f "$package" Depends

step "What is in it"
tree=$scratch/tree
dpkg-deb -x "$package" "$tree"
share=$tree/usr/share
for file in bin/{zepdlca,zepctl,zepsim} share/man/man1/{zepdlca,zepctl,zepsim}.1.gz \
  share/bash-completion/completions/zepctl share/applications/zepdlca.desktop share/zepdlca/ZEPDLCA.mld \
  share/zepdlca/images/splash.png share/zepdlca/images/zepdlca-32.png \
  share/icons/hicolor/{16x16,24x24,32x32,48x48,64x64,128x128,256x256}/apps/zepdlca.png \
  share/icons/hicolor/scalable/apps/zepdlca.svg share/doc/zepdlca/{copyright,changelog.gz,README.Debian}; do
  [ -s "$tree/usr/$file" ] || fail "FAILED: the package has no /usr/$file"
done
warnings_of_manual() { ! zcat "$1" | groff -man -Tutf8 -K utf8 -ww -z 2>&1 | grep .; }
for manual in "$share"/man/man1/*.gz; do expect "manual page $(basename "$manual" .gz)" warnings_of_manual "$manual"; done
for folder in resources/help/*/; do
  book=zepdlca_$(basename "$folder").zip
  expect "help book $book" says zepdlca.hhp cmake -E tar tf "$share/zepdlca/help/$book"
done
expect "desktop entry" desktop-file-validate "$share/applications/zepdlca.desktop"
expect "bash completion" says "-F _zepctl zepctl" bash -c "source '$share/bash-completion/completions/zepctl'; complete -p zepctl"
expect "changelog of this version" says "zepdlca ($version)" zcat "$share/doc/zepdlca/changelog.gz"
as_lintian_is_run=()
[ "$(id -u)" != 0 ] || as_lintian_is_run=(--allow-root)
expect "no errors from lintian" lintian "${as_lintian_is_run[@]}" --fail-on error "$package"
cat "$scratch/output"

in_container() { [ -e /.dockerenv ] || [ -e /run/.containerenv ] || grep -qa '^container=' /proc/1/environ 2> /dev/null; }
if [ "$(id -u)" = 0 ] && in_container && ! dpkg-query -W zepdlca > /dev/null 2>&1; then
  step "Installing"
  installed=yes
  quietly dpkg -i "$package"
  root=
else
  step "Not installing here: the programs run from a folder"
  root=$tree
fi

# A user of the trial's own, who starts the programs by name.
for folder in home config data state runtime; do mkdir -m 700 "$scratch/$folder"; done
export HOME=$scratch/home XDG_CONFIG_HOME=$scratch/config XDG_DATA_HOME=$scratch/data XDG_STATE_HOME=$scratch/state \
  XDG_RUNTIME_DIR=$scratch/runtime XDG_DATA_DIRS=$root/usr/share:/usr/share PATH=$root/usr/bin:$PATH LC_ALL=C.UTF-8
cd "$scratch/home"

step "Running"
for program in zepdlca zepctl zepsim; do
  [ "$(command -v $program)" = "$root/usr/bin/$program" ] || fail "FAILED: $program is not found at $root/usr/bin"
done
expect "zepctl --version" says "$version" zepctl --version
expect "zepctl identify" says "Serial number" zepctl -p sim:conventional identify
expect "zepctl in French, by its dictionary" says "Numéro de série" zepctl --language fr -p sim:conventional,unpaced identify
expect "zepsim --help" says "--link" zepsim --help

# The frame is higher than the start-up picture and any message; it must stay.
window_stays() {
  zepdlca &
  local program=$! high='\("[Zz]epdlca" .*\) +[0-9]{3,}x([3-9][0-9]{2}|[0-9]{4,})\+' seen=no
  for _ in $(seq 150); do
    kill -0 $program || break
    if xwininfo -root -tree | grep -Eq "$high"; then seen=yes; break; fi
    sleep 0.1
  done
  [ $seen = yes ] || { xwininfo -root -tree; kill $program; return 1; }
  sleep 2
  kill -0 $program && xwininfo -root -tree | grep -Eq "$high" || return 1
  kill $program
  wait $program || true
}
ZEPDLCA_PORTS=sim:conventional expect "zepdlca shows its window" \
  xvfb-run -a -s "-screen 0 1024x768x24" bash -c "$(declare -f window_stays); window_stays"

if [ "$installed" = yes ]; then
  step "Removing"
  dpkg -L zepdlca | grep zep > "$scratch/files"
  quietly dpkg --purge zepdlca
  installed=no
  while read -r file; do [ ! -e "$file" ] || fail "FAILED: $file is still there"; done < "$scratch/files"
fi

step "The package is good"
