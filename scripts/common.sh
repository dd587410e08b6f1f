# Sourced by the scripts beside it: where the tree is, and how progress is shown.

set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
JOBS="$(nproc)"
cd "$ROOT"

say() {
  printf '== %s\n' "$*"
}

# Configures and builds a preset of CMakePresets.json; a second call finds nothing to do.
build_preset() {
  say "Configuring $1"
  cmake --preset "$1" >"$ROOT/build/$1.configure.log" 2>&1 || {
    cat "$ROOT/build/$1.configure.log"
    return 1
  }
  say "Building $1"
  cmake --build --preset "$1" -j "$JOBS"
}

mkdir -p build
