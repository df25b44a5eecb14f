# The library. The objects are compiled once; the library is made of them, and tests of internals
# link them directly because the library hides everything outside its interface.

find_package(LibXml2 REQUIRED)

file(GLOB_RECURSE kaxml_sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/api/core/kaxml/*.cpp
    ${PROJECT_SOURCE_DIR}/api/core/kaxml/*.h)

add_library(kaxml_objects OBJECT ${kaxml_sources})
kaxml_target_options(kaxml_objects)
target_compile_features(kaxml_objects PUBLIC cxx_std_20)
target_include_directories(kaxml_objects PUBLIC ${PROJECT_SOURCE_DIR}/api/core)
target_compile_definitions(kaxml_objects PUBLIC KAXML_BUILDING)
target_link_libraries(kaxml_objects PUBLIC LibXml2::LibXml2)
set_target_properties(kaxml_objects PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
if(CMAKE_CXX_COMPILER_ID MATCHES "^(GNU|Clang)$")
    target_compile_options(kaxml_objects PRIVATE -fno-semantic-interposition)
endif()

# Shared unless told otherwise. Inside another project BUILD_SHARED_LIBS is that project's variable:
# it is read when set and left alone when not.
set(kaxml_library_type SHARED)
if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
    set(kaxml_library_type STATIC)
endif()

# The objects come in as sources, not as a linked target, so that exporting this target later does
# not drag the internal one along.
add_library(kaxml ${kaxml_library_type} $<TARGET_OBJECTS:kaxml_objects>)
add_library(kaxml::kaxml ALIAS kaxml)
kaxml_target_options(kaxml)
target_compile_features(kaxml PUBLIC cxx_std_17)
kaxml_public_headers(kaxml_headers ${PROJECT_SOURCE_DIR}/api/core kaxml/kaxml.h)
target_sources(kaxml PUBLIC
    FILE_SET HEADERS
    BASE_DIRS ${PROJECT_SOURCE_DIR}/api/core
    FILES ${kaxml_headers})
target_link_libraries(kaxml PRIVATE LibXml2::LibXml2)
set_target_properties(kaxml PROPERTIES
    LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

if(kaxml_library_type STREQUAL "STATIC")
    target_compile_definitions(kaxml_objects PUBLIC KAXML_STATIC)
    target_compile_definitions(kaxml PUBLIC KAXML_STATIC)
elseif(UNIX AND NOT APPLE)
    set(kaxml_symbol_map ${PROJECT_BINARY_DIR}/libkaxml.map)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/libkaxml.map.in ${kaxml_symbol_map} @ONLY)
    # The library's own calls go straight to its functions, not by way of a table that another library
    # could change: parsing many small instances takes a tenth less.
    target_link_options(kaxml PRIVATE LINKER:--version-script=${kaxml_symbol_map} LINKER:-Bsymbolic-functions)
    set_target_properties(kaxml PROPERTIES LINK_DEPENDS ${kaxml_symbol_map})
endif()
