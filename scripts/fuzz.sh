#!/usr/bin/env bash
# Builds the libFuzzer targets and runs each of them for FUZZ_SECONDS (30 unless set), as many at a
# time as there are processors. Fails on the first finding, and when there is no target to run.
#
#   scripts/fuzz.sh              all targets
#   scripts/fuzz.sh NAME...      these
#
# New inputs gather in build/fuzz/corpus/NAME; the inputs under fuzz/inputs/NAME are the start, the
# file fuzz/dictionaries/NAME.dict is used where it exists. A finding is left in build/fuzz/found.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${FUZZ_SECONDS:-30}"
jobs="${JOBS:-$(nproc)}"

if [[ "${1:-}" == --run-one ]]; then
  program="$2"
  name="$(basename "$program")"
  corpus="build/fuzz/corpus/$name"
  log="build/fuzz/logs/$name.log"
  mkdir -p "$corpus" build/fuzz/found build/fuzz/logs
  inputs=("$corpus")
  [[ -d "fuzz/inputs/$name" ]] && inputs+=("fuzz/inputs/$name")
  options=(-max_total_time="$seconds" -timeout=20 -rss_limit_mb=3000 -print_final_stats=1
    -artifact_prefix="build/fuzz/found/$name-")
  [[ -f "fuzz/dictionaries/$name.dict" ]] && options+=(-dict="fuzz/dictionaries/$name.dict")
  export ASAN_OPTIONS="detect_leaks=1:${ASAN_OPTIONS:-}" UBSAN_OPTIONS="print_stacktrace=1"
  if ! "$program" "${options[@]}" "${inputs[@]}" >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    echo "fuzz: $name FAILED; input in build/fuzz/found, whole log in $log" >&2
    exit 255 # xargs starts no further one
  fi
  runs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)"
  covered="$(grep -oE 'cov: [0-9]+' "$log" | tail -n 1 || true)"
  echo "fuzz: $name ran $runs inputs in ${seconds} s, ${covered:-cov: 0}, no finding"
  if [[ "${runs:-0}" -eq 0 ]]; then
    echo "fuzz: $name executed nothing" >&2
    exit 255
  fi
  exit 0
fi

if [[ ! -f fuzz/CMakeLists.txt ]]; then
  echo "fuzz.sh: fuzz/CMakeLists.txt is missing, there is nothing to run" >&2
  exit 1
fi
cmake --preset fuzz >build/fuzz-configure.log 2>&1 || { cat build/fuzz-configure.log >&2; exit 1; }
cmake --build build/fuzz --target fuzz/all -j "$jobs"

programs=()
if [[ $# -gt 0 ]]; then
  for name in "$@"; do programs+=("$(find build/fuzz/fuzz -type f -name "$name" -perm -u+x)"); done
else
  mapfile -t programs < <(find build/fuzz/fuzz -path '*/CMakeFiles' -prune -o -type f -perm -u+x \
    ! -name '*.cmake' ! -name '*.a' -print | sort)
fi
if [[ ${#programs[@]} -eq 0 || -z "${programs[0]}" ]]; then
  echo "fuzz.sh: no fuzz target was built" >&2
  exit 1
fi
echo "fuzz: ${#programs[@]} targets, ${seconds} s each"
printf '%s\0' "${programs[@]}" | xargs -0 -n 1 -P "$jobs" "$0" --run-one
echo "fuzz: all ${#programs[@]} targets passed"
