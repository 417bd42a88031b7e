#!/usr/bin/env bash
# Takes olvex into another project, by FetchContent from a local path and by add_subdirectory: that project
# must get the library alone, without the tests, tools, benchmarks and install rules of olvex. With
# --build, the library and a program are built there as well, which takes its time.
# Usage: subproject.sh SOURCE_DIR WORK_DIR CC CXX [--build]
set -euo pipefail
source=$1 work=$2 cc=$3 cxx=$4 build=${5:-}

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

write_project() {
    local folder=$1 way=$2
    mkdir -p "$folder"
    cp "$source/tests/install/consumer/hello.c" "$folder"
    cat >"$folder/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES C CXX)
$way
add_executable(hello hello.c)
target_link_libraries(hello PRIVATE olvex::olvex)
install(TARGETS hello)
END
}

check() {
    local folder=$1 targets
    cmake -S "$folder" -B "$folder/build" -G Ninja -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" \
        >"$folder.log" 2>&1 || fail "$(cat "$folder.log")"
    targets=$(cmake --build "$folder/build" --target help)
    grep -q '^olvex: phony' <<<"$targets" || fail "there is no library"
    ! grep -E '^olvex_(tests|tool|soak|sample|catalogs|codesets|bench)' <<<"$targets" ||
        fail "these targets are too much"
    ! grep -rl 'file(INSTALL' --include=cmake_install.cmake "$folder/build" |
        grep -v "^$folder/build/cmake_install" || fail "olvex would be installed"
    [[ -n $build ]] || return 0
    cmake --build "$folder/build" -j 2 --target hello >"$folder.log" 2>&1 || fail "$(cat "$folder.log")"
    "$folder/build/hello" | grep 'Hello from C 11'
}

rm -rf "$work"
write_project "$work/fetched" "include(FetchContent)
FetchContent_Declare(olvex SOURCE_DIR $source)
FetchContent_MakeAvailable(olvex)"
write_project "$work/added" "add_subdirectory($source olvex)"
check "$work/fetched"
build=
check "$work/added"
echo "ok: another project gets the library alone"
