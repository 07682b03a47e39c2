#!/usr/bin/env bash
# Formats every C++ file of the project with the one pinned clang-format, or with --check only
# tells which files it would change and fails.
set -euo pipefail
cd "$(dirname "$0")/.."

formatter="$(command -v clang-format-14 || command -v clang-format || true)"
if [[ -z "$formatter" ]]; then
  echo "format.sh: clang-format 14 is not installed" >&2
  exit 1
fi
if ! "$formatter" --version | grep -q 'version 14\.'; then
  echo "format.sh: clang-format 14 is needed, found: $("$formatter" --version)" >&2
  exit 1
fi

mapfile -d '' -t files < <(git ls-files -z --cached --others --exclude-standard -- '*.cc' '*.h')
existing=()
for file in "${files[@]}"; do
  [[ -f "$file" ]] && existing+=("$file")
done
if [[ ${#existing[@]} -eq 0 ]]; then
  echo "format.sh: no C++ files found" >&2
  exit 1
fi

if [[ "${1:-}" == --check ]]; then
  printf '%s\0' "${existing[@]}" | xargs -0 "$formatter" --dry-run --Werror
  echo "format: ${#existing[@]} files are as clang-format 14 writes them"
else
  printf '%s\0' "${existing[@]}" | xargs -0 "$formatter" -i
  echo "format: ${#existing[@]} files written"
fi
