#!/usr/bin/env bash
# Installs the Debian packages that a task needs, and does nothing when all of them are there.
#
#   scripts/install-packages.sh build test      the sets, see below
#   scripts/install-packages.sh --list test     prints the names only
#
# Runs apt-get as root, or through sudo. On a system without dpkg it prints what is needed and
# leaves the check to the build.
set -euo pipefail

packages_of() {
  case "$1" in
    build) echo "cmake ninja-build g++ libcli11-dev" ;;
    test) echo "git python3 pkg-config libgtest-dev libgmock-dev libexpat1-dev libxml2-dev" \
               "libcurl4-openssl-dev openssl" ;;
    # An independent validator of schemas for the differential tests, which skip themselves
    # when it cannot be had.
    oracle) echo "mono-runtime mono-mcs libmono-system-xml4.0-cil" ;;
    bench) echo "pkg-config libbenchmark-dev libexpat1-dev libxml2-dev libpugixml-dev" \
                "libxerces-c-dev" ;;
    # clang brings the compiler, libclang-rt-14-dev its sanitizers and libFuzzer.
    fuzz) echo "clang-14 clang libclang-rt-14-dev" ;;
    format) echo "git clang-format-14" ;;
    tidy) echo "git python3 clang-tidy-14" ;;
    scripts) echo "python3" ;;
    cache) echo "ccache" ;;
    *) echo "install-packages.sh: no package set is called '$1'" >&2; exit 2 ;;
  esac
}

list_only=no
if [[ "${1:-}" == --list ]]; then
  list_only=yes
  shift
fi
if [[ $# -eq 0 ]]; then
  echo "usage: $0 [--list] SET..." >&2
  exit 2
fi

wanted=()
for set_name in "$@"; do
  names="$(packages_of "$set_name")"
  read -r -a list <<<"$names"
  wanted+=("${list[@]}")
done
if [[ $list_only == yes ]]; then
  printf '%s\n' "${wanted[@]}" | sort -u
  exit 0
fi
if ! command -v dpkg-query >/dev/null; then
  echo "install-packages.sh: not a Debian system; needed are: ${wanted[*]}" >&2
  exit 0
fi

missing=()
for package in "${wanted[@]}"; do
  status="$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)"
  # A package for more than one architecture answers once for each.
  [[ "$status" == installed* ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

as_root=()
if [[ "$(id -u)" -ne 0 ]]; then
  if ! command -v sudo >/dev/null; then
    echo "install-packages.sh: run as root: apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi

install_missing() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends "${missing[@]}" </dev/null
}
echo "Installing: ${missing[*]}"
log="$(mktemp)"
trap 'rm -f "$log"' EXIT
# The package lists of this machine may be missing or old: then fetch them and try again.
if ! install_missing >"$log" 2>&1; then
  if ! { "${as_root[@]}" apt-get update -q </dev/null && install_missing; } >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
  fi
fi
