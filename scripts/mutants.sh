#!/usr/bin/env bash
# Plants the faults of scripts/mutants.txt one at a time in a copy of the working tree and runs the
# test suite against each: a fault the suite lets through is a computation no test pins.
#
#   scripts/mutants.sh [-l] [-a] [--head] [--no-baseline] [FILTER...]
#
#   FILTER   entry numbers (7), ranges (3-9), or any other word as a case-insensitive pattern
#            (grep -E) on the entry's line; an entry runs when any filter matches it
#   -l       list the entries with their numbers and stop
#   -a       run the whole suite for each fault (default: stop at the first failing test)
#   --head   copy the last commit instead of the working tree (the list is always the working tree's)
#   --no-baseline  skip the run of the suite on the unchanged copy
#
# The copy lives in $MUTANTS_DIR (default /tmp/orlan-mutants): tree/ holds the sources, build/
# the build, logs/ the output of each fault. Later runs update the copy and build incrementally.
# MUTANTS_TIMEOUT limits each test (seconds, default 300).
# Exit status: 0 all caught, 1 some survived, 2 none survived but some entries are broken,
# 3 the unchanged copy does not build or pass.
set -uo pipefail

repo=$(cd "$(dirname "$0")/.." && pwd)
list=$repo/scripts/mutants.txt
work=${MUTANTS_DIR:-/tmp/orlan-mutants}
tree=$work/tree
build=$work/build
logs=$work/logs
timeout=${MUTANTS_TIMEOUT:-300}
jobs=$(nproc)

list_only=0 stop_opt=--stop-on-failure baseline=1 from_head=0
filters=()
for arg in "$@"; do
  case $arg in
    -l) list_only=1 ;;
    -a) stop_opt= ;;
    --no-baseline) baseline=0 ;;
    --head) from_head=1 ;;
    -h|--help) awk 'NR > 1 && !/^#/ { exit } NR > 1 { sub(/^# ?/, ""); print }' "$0"; exit 0 ;;
    *) filters+=("$arg") ;;
  esac
done

# Entries: "file<TAB>find<TAB>replacement<TAB>why"; # lines and blank lines are not entries.
entries=()
while IFS= read -r line || [[ -n $line ]]; do
  [[ -z ${line//[[:space:]]/} || $line == \#* ]] && continue
  entries+=("$line")
done <"$list"

field() {  # field N of a tab-separated line; empty fields are kept
  local rest=$1 n=$2
  for ((k = 1; k < n; k++)); do
    [[ $rest == *$'\t'* ]] || { rest=; break; }
    rest=${rest#*$'\t'}
  done
  printf '%s' "${rest%%$'\t'*}"
}

selected() {  # entry number, line
  ((${#filters[@]} == 0)) && return 0
  local f
  for f in "${filters[@]}"; do
    if [[ $f =~ ^[0-9]+$ ]]; then
      (($1 == f)) && return 0
    elif [[ $f =~ ^([0-9]+)-([0-9]+)$ ]]; then
      (($1 >= BASH_REMATCH[1] && $1 <= BASH_REMATCH[2])) && return 0
    elif grep -qiE -- "$f" <<<"$2"; then
      return 0
    fi
  done
  return 1
}

if ((list_only)); then
  for i in "${!entries[@]}"; do
    n=$((i + 1))
    selected "$n" "${entries[$i]}" || continue
    printf '%3d  %s: %s\n' "$n" "$(field "${entries[$i]}" 1)" "$(field "${entries[$i]}" 4)"
  done
  exit 0
fi

# Replaces the one occurrence of a text in a file; fails (printing the count) when there isn't
# exactly one.
replace_once() {
  python3 - "$1" "$2" "$3" <<'PY'
import os, sys
path, find, repl = (os.fsencode(a) for a in sys.argv[1:4])
data = open(path, "rb").read()
n = data.count(find)
if n != 1:
    print(n)
    sys.exit(1)
open(path, "wb").write(data.replace(find, repl, 1))
PY
}

# The copy: the working tree (or the last commit) without .git and build directories. Only files
# whose content differs are copied, with a fresh time, so the build stays incremental and never
# keeps an object of an older content (nor of a fault an interrupted run left behind).
sync_tree() {
  local stage=$work/stage excludes=(--exclude=./.git --exclude=./build --exclude='./build-*')
  local d f
  for d in "$repo"/*/; do
    [[ -f $d/CMakeCache.txt ]] && excludes+=("--exclude=./$(basename "$d")")
  done
  rm -rf "$stage" && mkdir -p "$stage" "$tree" "$logs"
  if ((from_head)); then
    git -C "$repo" archive --format=tar HEAD | tar -xf - -C "$stage"
  else
    (cd "$repo" && tar -cf - "${excludes[@]}" .) | tar -xf - -C "$stage"
  fi
  if command -v rsync >/dev/null; then
    rsync -rlp --checksum --delete "$stage/" "$tree/"
  else
    (cd "$stage" && find . ! -type d -print0) | while IFS= read -r -d '' f; do
      cmp -s "$stage/$f" "$tree/$f" || { mkdir -p "$(dirname "$tree/$f")" && cp -P --preserve=mode "$stage/$f" "$tree/$f"; }
    done
    (cd "$tree" && find . ! -type d -print0) | while IFS= read -r -d '' f; do
      [[ -e $stage/$f || -L $stage/$f ]] || rm -f "$tree/$f"
    done
  fi
  rm -rf "$stage"
  # The tests find the shared data beside the sources.
  if [[ -d $repo/../shared && ! -e $work/shared ]]; then ln -s "$(cd "$repo/../shared" && pwd)" "$work/shared"; fi
}

build_tree() { cmake --build "$build" -j "$jobs" "${@:2}" >"$1" 2>&1; }

# The faults are in the core: its tests, in one process, catch most of them in seconds. Only a
# fault they let through gets the whole suite (windows and pictures too) before it counts.
run_core() {  # log file; prints the first failing test
  (cd "$build" && QT_QPA_PLATFORM=offscreen timeout "$timeout" tests/orlan_tests --gtest_fail_fast >"$1" 2>&1)
  local rc=$?
  grep -m1 -E '^\[  FAILED  \] [A-Za-z_]' "$1" | sed -E 's/^\[  FAILED  \] //; s/ \(.*//'
  return $rc
}

run_suite() {  # log file; prints the failing tests
  (cd "$build" && QT_QPA_PLATFORM=offscreen ctest -j "$jobs" --timeout "$timeout" $stop_opt >"$1" 2>&1)
  local rc=$?
  sed -n '/The following tests FAILED/,$p' "$1" | grep -E '^\s+[0-9]+ - ' | sed -E 's/^\s+[0-9]+ - //; s/ \(.*//' | head -3 | paste -sd ' '
  return $rc
}

started=$(date +%s)
echo "Copying $repo$( ((from_head)) && echo " (HEAD)") to $tree"
sync_tree
if [[ ! -f $build/CMakeCache.txt ]]; then
  echo "Configuring $build"
  cmake -S "$tree" -B "$build" -G Ninja >"$logs/configure.log" 2>&1 || { echo "configure failed: $logs/configure.log"; exit 3; }
fi
echo "Building"
build_tree "$logs/build.log" || { echo "the unchanged copy does not build: $logs/build.log"; exit 3; }
if ((baseline)); then
  echo "Running the suite on the unchanged copy"
  failed=$(run_suite "$logs/baseline.log") || { echo "the unchanged copy fails: $failed ($logs/baseline.log)"; exit 3; }
fi

current=''
restore() { [[ -n $current ]] && cp "$work/original" "$current" && current=''; }
trap 'restore; exit 130' INT TERM

results=()
caught=0 survived=0 broken=0
for i in "${!entries[@]}"; do
  n=$((i + 1))
  e=${entries[$i]}
  selected "$n" "$e" || continue
  file=$(field "$e" 1) find=$(field "$e" 2) repl=$(field "$e" 3) why=$(field "$e" 4)
  path=$tree/$file
  log=$logs/$(printf '%03d' "$n").log
  t0=$(date +%s)
  if [[ ! -f $path || -z $find ]]; then
    status=BROKEN note="no such file or empty text"
  else
    cp "$path" "$work/original"
    current=$path
    if ! count=$(replace_once "$path" "$find" "$repl"); then
      status=BROKEN note="text found $count times"
    elif ! build_tree "$log" --target orlan_tests; then
      status=BROKEN note="does not build ($log)"
    elif ! failed=$(run_core "$log"); then
      status=CAUGHT note=${failed:-"(see $log)"}
    elif ! build_tree "$log"; then
      status=BROKEN note="does not build ($log)"
    elif failed=$(run_suite "$log"); then
      status=SURVIVED note=''
    else
      status=CAUGHT note=${failed:-"(see $log)"}
    fi
    restore
  fi
  case $status in CAUGHT) ((caught++)) ;; SURVIVED) ((survived++)) ;; BROKEN) ((broken++)) ;; esac
  line=$(printf '%3d %-8s %s: %s' "$n" "$status" "$file" "$why")
  [[ -n $note ]] && line+=" -- $note"
  results+=("$line")
  echo "$line  [$(($(date +%s) - t0)) s]"
done

# Leave the copy built as the working tree is.
build_tree "$logs/build.log" && 
echo
echo "Summary ($(( ($(date +%s) - started) / 60 )) min):"
printf '%s\n' "${results[@]}"
echo "caught $caught, survived $survived, broken $broken"
((survived > 0)) && exit 1
((broken > 0)) && exit 2
exit 0
