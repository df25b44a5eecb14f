# Installing: the library, the public headers, and what CMake and pkg-config need to find them. All of
# it may be moved to another folder afterwards.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(kaxml_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kaxml)
set(kaxml_doc_dir ${CMAKE_INSTALL_DATAROOTDIR}/doc/kaxml)

# A static library has nothing to offer at run time.
set(kaxml_notice_component runtime)
if(kaxml_library_type STREQUAL "STATIC")
    set(kaxml_notice_component development)
endif()

install(TARGETS kaxml
    EXPORT kaxml-targets
    RUNTIME COMPONENT runtime
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    FILE_SET HEADERS COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/NOTICE
    DESTINATION ${kaxml_doc_dir}
    COMPONENT ${kaxml_notice_component})

# What the library links is a client's business only when the library is static.
set(KAXML_CMAKE_DEPENDENCIES "")
set(KAXML_PC_DEPENDENCIES "")
set(KAXML_PC_CFLAGS "")
if(kaxml_library_type STREQUAL "STATIC")
    set(KAXML_CMAKE_DEPENDENCIES "include(CMakeFindDependencyMacro)\nfind_dependency(LibXml2)\n")
    set(KAXML_PC_DEPENDENCIES "Requires.private: libxml-2.0\n")
    set(KAXML_PC_CFLAGS " -DKAXML_STATIC")
endif()

# Before 1.0 each minor version may change the interface, as its SONAME says.
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/kaxml-config.cmake.in
    ${PROJECT_BINARY_DIR}/kaxml-config.cmake
    INSTALL_DESTINATION ${kaxml_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kaxml-config-version.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/kaxml-config.cmake
    ${PROJECT_BINARY_DIR}/kaxml-config-version.cmake
    DESTINATION ${kaxml_package_dir}
    COMPONENT development)
install(EXPORT kaxml-targets
    NAMESPACE kaxml::
    DESTINATION ${kaxml_package_dir}
    COMPONENT development)
# The build tree is a package too: -Dkaxml_DIR=<build tree>.
export(EXPORT kaxml-targets
    NAMESPACE kaxml::
    FILE ${PROJECT_BINARY_DIR}/kaxml-targets.cmake)

# pkg-config finds the prefix from where its file lies, unless the folders are absolute ones.
set(KAXML_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    file(RELATIVE_PATH way_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    string(REGEX REPLACE "/$" "" way_to_prefix "${way_to_prefix}")
    set(KAXML_PC_PREFIX "\${pcfiledir}/${way_to_prefix}")
endif()
set(KAXML_PC_INCLUDEDIR "\${prefix}")
cmake_path(APPEND KAXML_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
set(KAXML_PC_LIBDIR "\${prefix}")
cmake_path(APPEND KAXML_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/kaxml.pc.in ${PROJECT_BINARY_DIR}/kaxml.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kaxml.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)

# The pages, and the reference when `make docs` has built it.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/
    DESTINATION ${kaxml_doc_dir}
    COMPONENT documentation
    FILES_MATCHING PATTERN *.md)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/html
    DESTINATION ${kaxml_doc_dir}
    COMPONENT documentation
    OPTIONAL)
