# What an install brings: library, headers, command, CMake package and pkg-config file; and the
# Debian packages and the archive that `./dev package` makes of it.
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

if(EXISTS ${PROJECT_SOURCE_DIR}/LICENSE)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
endif()

# Packages
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/dist)
set(CPACK_PACKAGE_VENDOR "The olvex developers")
set(CPACK_PACKAGE_CONTACT "The olvex developers <olvex@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development command)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${PROJECT_DESCRIPTION}: the shared library")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${PROJECT_DESCRIPTION}: headers and build files")
set(CPACK_COMPONENT_COMMAND_DESCRIPTION "${PROJECT_DESCRIPTION}: the olvex command")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_COMMAND_DEPENDS library)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libolvex${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libolvex-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME olvex)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/olvex)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
