# Read by ./run and ./check: configure_preset <preset> brings build/<preset> up to date with the presets. Says what CMake says
# only when it fails. The caller stands in the root of the source tree.

configure_preset() {
    local folder="build/$1" fresh=""
    mkdir -p "$folder"
    if [ -f "$folder/CMakeCache.txt" ]; then
        # a copied or moved tree brings a cache that points elsewhere
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$folder/CMakeCache.txt" || fresh=--fresh
    fi
    # afterwards ninja itself configures again when a CMake file changes; it doesn't know the presets
    if [ -n "$fresh" ] || [ ! -f "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/configured" ]; then
        if ! cmake $fresh --preset "$1" >"$folder/configure.log" 2>&1; then
            cat "$folder/configure.log" >&2
            echo "couldn't configure $folder" >&2
            return 1
        fi
        touch "$folder/configured"
    fi
}
