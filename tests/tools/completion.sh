#!/bin/bash
# Asks the completion for what could follow a command line, as bash does on a TAB.

. "$CC_SOURCE_DIR/packaging/completion/tools.bash"
failed=0

# expect "what is offered" TOOL WORD...   the last word is the one being typed
expect() {
  local wanted="$1" offered
  shift
  COMP_WORDS=("$@")
  COMP_CWORD=$(($# - 1))
  _common_core_tool "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
  offered="${COMPREPLY[*]}"
  if [ "$offered" != "$wanted" ]; then
    echo "FAILED: ${*:2}: offered '$offered', but '$wanted' was expected"
    failed=1
  fi
}

cd "$CC_SOURCE_DIR" || exit 1
expect "compile" "$CCLNG" comp
expect "--help --version" "$CCLNG" --
expect "--byte-order" "$CCLNG" compile --by
expect "little big" "$CCLNG" compile --byte-order ""
expect "big" "$CCLNG" compile --byte-order = b
expect "--reference" "$CCLNG" check --ref
expect "data/common_core.eng.xml" "$CCLNG" check data/common_core.e
expect "po-export po-import" "$CCLNG" po
expect "text json" "$CCLNG" stats --format = ""
expect "check" "$CCML" che
expect "text json sarif" "$CCML" check --format = ""
expect "json" "$CCLNG" check --format = j
expect "--lang --layout" "$CCML" format --la
expect "single multi" "$CCML" format --layout = ""
expect "" "$CCML" nothing-like-this
exit "$failed"
