#!/usr/bin/env bash
# Runs .ci/run of the last commit on a bare Debian 12 made for it, to prove that the project installs
# all that it needs. Needs root and debootstrap, and about 4 GB in the folder.
#
#   scripts/check_bare.sh [FOLDER]     FOLDER (build/bare) is made anew
#
# Documents that lie beside the project (../shared) are shown to the run, read-only.
set -euo pipefail
cd "$(dirname "$0")/.."
project="$PWD"
bare="${1:-build/bare}"

unmount_all() {
  local point
  for point in proc dev work/shared; do
    mountpoint -q "$bare/$point" && umount -l "$bare/$point"
  done
  return 0
}
trap unmount_all EXIT
unmount_all
# Never delete through something that is still mounted.
if [[ -e "$bare" ]]; then
  rm -rf --one-file-system "$bare"
fi
mkdir -p "$bare"
debootstrap --variant=minbase bookworm "$bare" >/dev/null
# How this machine reaches its package mirror, and nothing else of it.
cp /etc/resolv.conf /etc/hosts "$bare/etc/"
cp /etc/apt/apt.conf.d/* "$bare/etc/apt/apt.conf.d/"
mount -t proc proc "$bare/proc"
mount --bind /dev "$bare/dev"
if [[ -d ../shared ]]; then
  mkdir -p "$bare/srv/check/shared"
  mount --bind -o ro ../shared "$bare/srv/check/shared"
fi
git clone -q --no-local "$project" "$bare/srv/check/project"
chroot "$bare" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin CI=true \
  bash /srv/check/project/.ci/run </dev/null
