#!/usr/bin/env bash
# Runs a test whose temporary folder is a disk of 8 MiB of its own, $GARAGE_SMALL_DISK. Where nothing may be mounted,
# the test runs without it.
#   on-small-disk.sh PROGRAM [ARGUMENTS]
set -euo pipefail

if [ "${1:-}" = --mounted ]; then
    shift
    mount -t tmpfs -o size=8m,nr_inodes=64 tmpfs "$GARAGE_SMALL_DISK"
    exec env TMPDIR="$GARAGE_SMALL_DISK" "$@"
fi

GARAGE_SMALL_DISK=$(mktemp -d)
trap 'rmdir "$GARAGE_SMALL_DISK"' EXIT
if ! unshare --map-root-user --mount mount -t tmpfs tmpfs "$GARAGE_SMALL_DISK" 2>/dev/null; then
    "$@"
    exit
fi
export GARAGE_SMALL_DISK
unshare --map-root-user --mount "$0" --mounted "$@"
