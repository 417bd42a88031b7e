# What an install brings: library, headers, command with completion, CMake package and pkg-config
# file. Catalogs, tables and documentation are installed where they are made; debian/ packs it all.
include(CMakePackageConfigHelpers)

option(OLVEX_INSTALL_RPATH "Let the installed command find the library beside it" ON)

set(OLVEX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/olvex)

install(TARGETS olvex EXPORT olvexTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/olvex/include/olvex
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")
if(TARGET olvex_tool)
    if(OLVEX_INSTALL_RPATH)
        file(RELATIVE_PATH libraryFromCommand
            ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
        set_target_properties(olvex_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${libraryFromCommand}")
    endif()
    install(TARGETS olvex_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT command)
    install(FILES ${PROJECT_SOURCE_DIR}/tools/completion/olvex.bash RENAME olvex
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT command)
    install(FILES ${PROJECT_SOURCE_DIR}/tools/completion/_olvex
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT command)
endif()

if(TARGET olvex_codesets)
    install(DIRECTORY ${PROJECT_BINARY_DIR}/share/olvex/codeset
        DESTINATION ${CMAKE_INSTALL_DATADIR}/olvex COMPONENT library)
endif()

# The CMake package: find_package(olvex), target olvex::olvex.
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/olvexConfig.cmake.in ${PROJECT_BINARY_DIR}/olvexConfig.cmake
    INSTALL_DESTINATION ${OLVEX_CMAKE_DIR})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/olvexConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/olvexConfig.cmake ${PROJECT_BINARY_DIR}/olvexConfigVersion.cmake
    DESTINATION ${OLVEX_CMAKE_DIR} COMPONENT development)
install(EXPORT olvexTargets NAMESPACE olvex::
    DESTINATION ${OLVEX_CMAKE_DIR} COMPONENT development)

# The pkg-config file finds its prefix from its own place, so that an installed tree can be moved.
set(OLVEX_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH OLVEX_PREFIX_FROM_PC
    ${CMAKE_INSTALL_PREFIX}/${OLVEX_PC_DIR} ${CMAKE_INSTALL_PREFIX})
configure_file(
    ${PROJECT_SOURCE_DIR}/cmake/olvex.pc.in ${PROJECT_BINARY_DIR}/olvex.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/olvex.pc DESTINATION ${OLVEX_PC_DIR} COMPONENT development)

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
