# Debian packages, by CPack: `make package`.

set(KAXML_PACKAGE_CONTACT "KAXML maintainers <maintainers@kaxml.invalid>"
    CACHE STRING "Who maintains the Debian packages: name and address")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kaxml)
set(CPACK_PACKAGE_VENDOR KAXML)
set(CPACK_PACKAGE_CONTACT "${KAXML_PACKAGE_CONTACT}")
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_BINARY_DIR}/packages)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL development documentation)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

# A package of a shared library has the SONAME in its name, so that two of them can be installed.
get_target_property(soversion kaxml SOVERSION)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libkaxml${soversion})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkaxml-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME libkaxml-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
if(kaxml_library_type STREQUAL "STATIC")
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS libxml2-dev)
else()
    list(PREPEND CPACK_COMPONENTS_ALL runtime)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libkaxml${soversion} (= ${PROJECT_VERSION})")
endif()
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libkaxml-doc)

set(purpose "It models schemas of engineering data and instances of them, and reads and writes both as XML.")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "The shared library. ${purpose}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "What programs that use the library are built with. ${purpose}")
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION "The documentation of the library. ${purpose}")

include(CPack)
