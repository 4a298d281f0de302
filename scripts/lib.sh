# Shared by the scripts here; sourced, not run.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

# Node's test runner, whose output ends with the tests that failed.
readonly node_test=(node --test --test-reporter=spec)

say() { printf '==> %s\n' "$*"; }
fail() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

# Runs a command as root: as it is when we are, else through sudo.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo > /dev/null; then
    sudo "$@"
  else
    fail "need root or sudo to run: $*"
  fi
}

# The files that clang-format looks after.
native_sources() {
  find src bench test -name node_modules -prune -o \
    '(' -name '*.c' -o -name '*.cc' -o -name '*.h' -o -name '*.mm' ')' -print
}
