#!/bin/sh
# Fails when a source under src/ includes a header from a higher floor, or from another
# folder on its own floor. Usage: check_layers.sh <src folder>
src=${1:?usage: check_layers.sh <src folder>}

# Floors, lowest first; "." is the umbrella header, which only the bridge may include.
floor() {
    case $1 in
        foundation) echo 10 ;;
        raster | platform) echo 20 ;;
        effect) echo 30 ;;
        filters | text) echo 40 ;;
        .) echo 45 ;;
        jni) echo 50 ;;
        *) echo 0 ;;
    esac
}

status=0
for file in $(cd "$src" && find . -name '*.h' -o -name '*.cpp' | sort); do
    from=$(dirname "${file#./}")
    [ "$from" = . ] && continue  # the umbrella header includes every public header
    if [ "$(floor "$from")" -eq 0 ]; then
        echo "$file: folder $from has no floor" >&2
        status=1
        continue
    fi
    for target in $(sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*\)".*/\1/p' "$src/$file"); do
        to=$(dirname "$target")
        [ "$to" = "$from" ] && continue
        if [ "$(floor "$to")" -eq 0 ] || [ "$(floor "$to")" -ge "$(floor "$from")" ]; then
            echo "$file: $from may not include $target" >&2
            status=1
        fi
    done
done
exit $status
