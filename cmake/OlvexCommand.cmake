# OLVEX_COMMAND: the command as the build and the tests run it. In a cross build that is either a
# script that starts it in the emulator of the toolchain file, or an `olvex` of the machine that builds.
set(OLVEX_HOST_COMMAND "" CACHE FILEPATH
    "An olvex of this version that runs on the machine that builds, for cross builds without an emulator")

# Tables of code sets are in the byte order of the machine that makes them.
function(olvex_require_byte_order)
    execute_process(COMMAND sh -c "printf '\\001\\000' | od -An -tu2"
        OUTPUT_VARIABLE word OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    string(STRIP "${word}" word)
    set(host BIG_ENDIAN)
    if(word EQUAL 1)
        set(host LITTLE_ENDIAN)
    endif()
    if(NOT CMAKE_CXX_BYTE_ORDER STREQUAL host)
        message(FATAL_ERROR "OLVEX_HOST_COMMAND would make code-set tables in the byte order of this "
            "machine, which is not that of the target; set CMAKE_CROSSCOMPILING_EMULATOR instead")
    endif()
endfunction()

if(OLVEX_HOST_COMMAND)
    olvex_require_byte_order()
    set(OLVEX_COMMAND ${OLVEX_HOST_COMMAND})
elseif(CMAKE_CROSSCOMPILING AND CMAKE_CROSSCOMPILING_EMULATOR)
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR "' '" emulator)
    set(OLVEX_COMMAND ${PROJECT_BINARY_DIR}/emulated/olvex)
    file(GENERATE OUTPUT ${OLVEX_COMMAND} CONTENT
"#!/bin/sh
exec '${emulator}' '$<TARGET_FILE:olvex_tool>' \"$@\"
"
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
elseif(CMAKE_CROSSCOMPILING)
    message(FATAL_ERROR "The build runs the olvex command to make catalogs and tables: in a cross build set "
        "CMAKE_CROSSCOMPILING_EMULATOR, or OLVEX_HOST_COMMAND to one of this machine, or turn "
        "OLVEX_BUILD_TOOLS off")
else()
    set(OLVEX_COMMAND $<TARGET_FILE:olvex_tool>)
endif()
