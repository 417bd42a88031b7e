# Language levels, warnings and sanitizers: one interface target that every target of ours links.
add_library(olvex_options INTERFACE)
target_compile_features(olvex_options INTERFACE cxx_std_20 c_std_11)
target_compile_definitions(olvex_options INTERFACE _GNU_SOURCE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
target_compile_options(olvex_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wundef -Wformat=2
    -Wno-format-nonliteral
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual>
    $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes -Wmissing-prototypes>
    $<$<BOOL:${OLVEX_WERROR}>:-Werror>)
if(OLVEX_COVERAGE)
    target_compile_options(olvex_options INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(olvex_options INTERFACE --coverage)
endif()
if(OLVEX_SANITIZE)
    target_compile_options(olvex_options INTERFACE
        -fsanitize=${OLVEX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
    target_link_options(olvex_options INTERFACE -fsanitize=${OLVEX_SANITIZE})
endif()
