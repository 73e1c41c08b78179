#!/usr/bin/env bash
# Installs the build into an empty folder, moves the folder, and tries what a host's developer would: the demo host
# from there, and the example host built against the CMake package alone.
#   try-installed.sh BUILD_FOLDER EXAMPLE_FOLDER COMPILER_FLAGS
set -euo pipefail
build=$1 example=$2 flags=$3

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -m 700 "$scratch/home"
export HOME=$scratch/home XDG_DATA_HOME=$scratch/home/share XDG_CONFIG_HOME=$scratch/home/config
export QT_QPA_PLATFORM=offscreen

fail() {
    echo "try-installed: $*" >&2
    exit 1
}

cmake --install "$build" --prefix "$scratch/first" >/dev/null
mv "$scratch/first" "$scratch/usr"

"$scratch/usr/bin/garage-host" --home "$scratch/home/demo" --due >"$scratch/due.txt"
[ -s "$scratch/due.txt" ] || fail "the installed demo host says nothing is due in its sample data"

hostcheck=$(find "$scratch/usr" -name libhostcheck.so)
if [ -n "$hostcheck" ]; then
    HOSTCHECK_REPORT=$scratch/report.jsonl "$scratch/usr/bin/garage-host" --home "$scratch/home/checked" \
        --plugin "$hostcheck" --due >"$scratch/checked.txt"
    grep -q '"record":"end"' "$scratch/report.jsonl" || fail "the installed hostcheck reports nothing"
    ! grep '"severity":"error"' "$scratch/report.jsonl" || fail "hostcheck finds an error of the demo host"
fi

database=$(find "$scratch/home/demo" -name ruvalo.sqlite)
"$scratch/usr/bin/garagectl" due --database "$database" --state open,due >"$scratch/tool.txt"
[ "$(wc -l <"$scratch/tool.txt")" -gt 4 ] || fail "the installed garagectl lists nothing of the sample data"

cmake -S "$example" -B "$scratch/build" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/usr" \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror $flags" >/dev/null
cmake --build "$scratch/build"
timeout 60 "$scratch/build/minimal-host" | tee "$scratch/minimal.txt"
[ "$(cat "$scratch/minimal.txt")" = "due: 7 Chain" ] || fail "the example host printed something else"
