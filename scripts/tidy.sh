#!/usr/bin/env bash
# Runs clang-tidy with the rules of .clang-tidy; every finding is an error.
#
#   scripts/tidy.sh              the source files that differ from the merge base with main
#   scripts/tidy.sh --base REV   those that differ from REV
#   scripts/tidy.sh --recent N   at most N source files, the most recently committed first
#   scripts/tidy.sh --all        all source files
#   scripts/tidy.sh FILE...      these
#
# A changed header is checked through the source file of the same name, else through one that
# includes it. BUILD names the configured build folder whose compile commands are used.
set -euo pipefail
cd "$(dirname "$0")/.."
build="${BUILD:-build/release}"
jobs="${JOBS:-$(nproc)}"

tidy="$(command -v clang-tidy-14 || command -v clang-tidy || true)"
if [[ -z "$tidy" ]]; then
  echo "tidy.sh: clang-tidy is not installed" >&2
  exit 1
fi
if [[ ! -f "$build/compile_commands.json" ]]; then
  echo "tidy.sh: $build is not configured (cmake --preset release)" >&2
  exit 1
fi

default_base() {
  local head branch
  head="$(git rev-parse HEAD)"
  for branch in origin/main main; do
    if git rev-parse -q --verify "$branch^{commit}" >/dev/null &&
      [[ "$(git rev-parse "$branch^{commit}")" != "$head" ]]; then
      git merge-base "$branch" HEAD && return
    fi
  done
  # On main itself: what the last commit changed.
  git rev-parse -q --verify 'HEAD~1^{commit}' || git hash-object -t tree /dev/null
}

changed_since() {
  git diff --name-only --diff-filter=ACMR "$1" -- '*.cc' '*.h'
  git ls-files --others --exclude-standard -- '*.cc' '*.h'
}

limit=0
case "${1:-}" in
  --all) candidates="$(git ls-files -- '*.cc')" ;;
  --base) candidates="$(changed_since "$2")" ;;
  --recent)
    limit="$2"
    candidates="$(git log --format= --name-only --diff-filter=ACMR -- '*.cc' '*.h' | awk '!seen[$0]++')"
    ;;
  "") candidates="$(changed_since "$(default_base)")" ;;
  *) candidates="$(printf '%s\n' "$@")" ;;
esac

# Headers become the source file that shows them to the compiler; only what is compiled in this
# configuration can be checked.
mapfile -t sources < <(LIMIT="$limit" python3 scripts/tidy_sources.py "$build" <<<"$candidates")
if [[ ${#sources[@]} -eq 0 ]]; then
  echo "tidy: no source file to check"
  exit 0
fi
echo "tidy: ${#sources[@]} source files"
printf '%s\0' "${sources[@]}" |
  xargs -0 -n 1 -P "$jobs" "$tidy" -p "$build" --quiet \
    --extra-arg=-Wno-unknown-warning-option --warnings-as-errors='*' \
    2> >(grep -Ev '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -' >&2)
echo "tidy: nothing found"
