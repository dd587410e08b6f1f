# Sourced by the scripts beside it: where the tree is, and how progress is shown.

set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
JOBS="$(nproc)"
cd "$ROOT"

say() {
  printf '== %s\n' "$*"
}

# Configures and builds a preset of CMakePresets.json, or only some targets of it; a second call
# finds nothing to do.
build_preset() {
  local preset="$1"
  shift
  say "Configuring $preset"
  cmake --preset "$preset" >"$ROOT/build/$preset.configure.log" 2>&1 || {
    cat "$ROOT/build/$preset.configure.log"
    return 1
  }
  say "Building $preset"
  cmake --build --preset "$preset" -j "$JOBS" ${1:+--target "$@"}
}

# Some kernels are built without the 32-bit system calls. There, an emulator runs the tests.
runs_32_bits() {
  /lib/ld-linux.so.2 --version >/dev/null 2>&1
}

mkdir -p build
