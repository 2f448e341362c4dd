#!/usr/bin/env bash
# Takes a picture of every window in every language into a folder, build/screenshots by default, on simulated radios.
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

need "${build_packages[@]}" libgtest-dev xvfb xauth imagemagick fonts-noto-cjk
build dev gui_screenshots
folder=${1:-build/screenshots}
mkdir -p "$folder"
step "Taking pictures"
xvfb-run -a -s "-screen 0 1024x600x24" build/dev/bin/gui_screenshots "$folder"
step "Done: $(find "$folder" -name '*.png' | wc -l) pictures in $folder"
