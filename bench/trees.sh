# Sourced by folders.sh and find.sh: builds two large, realistic folder trees
# from files already on this machine, the same way every time.
#
#   make_trees DIR    ->  DIR/orig and DIR/mod
#
# orig: headers, documentation, Python, CMake, Perl and Vim files from /usr
# (symbolic links left out, so every tool sees the same files). mod: a copy
# with deterministic changes, chosen by position in the sorted file list:
# every 89th file deleted, every 97th grown by a line, every 101st changed in
# one byte (same size), every 113th joined by a new sibling, every 61st folder
# given a new subfolder, every 211th folder removed.

TREE_SOURCES=(usr/include usr/share/doc usr/lib/python3 usr/lib/python3.11 usr/share/cmake-3.25
              usr/share/perl usr/share/vim usr/share/i18n usr/share/zoneinfo)

make_trees() {
    local dir=$1 orig=$1/orig mod=$1/mod
    if [ -f "$dir/.complete" ]; then
        return 0
    fi
    rm -rf "$orig" "$mod"
    mkdir -p "$orig"
    local present=()
    for s in "${TREE_SOURCES[@]}"; do
        [ -d "/$s" ] && present+=("$s")
    done
    (cd / && tar cf - "${present[@]}" 2>/dev/null) | (cd "$orig" && tar xf -)
    find "$orig" -type l -delete
    find "$orig" ! -type f ! -type d -delete
    cp -a "$orig" "$mod"

    local n=0 f size
    while IFS= read -r f; do
        n=$((n + 1))
        if ((n % 89 == 0)); then
            rm -f "$mod/$f"
        elif ((n % 97 == 0)); then
            printf 'a line added for the benchmark\n' >>"$mod/$f"
        elif ((n % 101 == 0)); then
            size=$(stat -c %s "$mod/$f")
            if ((size > 0)); then
                printf 'X' | dd of="$mod/$f" bs=1 seek=$((size / 2)) conv=notrunc status=none
                touch -r "$orig/$f" "$mod/$f"
            fi
        fi
        if ((n % 113 == 0)); then
            cp "$orig/$f" "$mod/$f.added"
        fi
    done < <(cd "$orig" && find . -type f | LC_ALL=C sort)

    n=0
    while IFS= read -r f; do
        n=$((n + 1))
        [ -d "$mod/$f" ] || continue
        if ((n % 211 == 0)); then
            rm -rf "${mod:?}/$f"
        elif ((n % 61 == 0)); then
            mkdir -p "$mod/$f/added-folder"
            printf 'new file\n' >"$mod/$f/added-folder/new.txt"
        fi
    done < <(cd "$orig" && find . -mindepth 2 -type d | LC_ALL=C sort)
    # Written back now, so that the disk is quiet while the tools are timed.
    sync
    touch "$dir/.complete"
}

# median_of JSON_FILE INDEX: the median time in seconds of one hyperfine command.
median_of() {
    python3 -c 'import json,sys; print(json.load(open(sys.argv[1]))["results"][int(sys.argv[2])]["median"])' "$1" "$2"
}

ratio() {
    python3 -c 'import sys; print(f"{float(sys.argv[1]) / float(sys.argv[2]):.2f}")' "$1" "$2"
}
