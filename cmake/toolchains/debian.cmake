# A cross build with one of Debian's cross compilers, for the file that includes this one: it has set
# CMAKE_SYSTEM_PROCESSOR and the triplet. What is built runs under qemu-user, with the C library of
# the target: the one that the cross compiler brings, or, since that lacks what iconv needs, the one that
# `./dev test-cross` unpacks.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR}/../../build/${CMAKE_SYSTEM_PROCESSOR}-root ABSOLUTE)
if(NOT EXISTS ${root}/usr)
    set(root /usr/${triplet})
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR} -L ${root})
set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
# Header-only packages are the same for every processor.
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
