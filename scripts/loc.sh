#!/bin/sh
# Non-blank lines of tests against non-blank lines of code (src, tools, java, bench), over the
# files git tracks. The tests should stay at a quarter to a third of the code.
cd "$(dirname "$0")/.." || exit 1
count() {
    git ls-files -- "$@" | grep -E '\.(c|cc|cpp|h|hpp|java|py|sh|cmake)$|CMakeLists\.txt$' |
        xargs -r cat | grep -c -v -E '^\s*$'
}
code=$(count src tools java bench)
tests=$(count tests)
echo "tests $tests / code $code = $(awk -v t="$tests" -v c="$code" 'BEGIN { printf "%.2f", c ? t / c : 0 }')"
