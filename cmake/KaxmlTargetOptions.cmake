# Compiler settings for targets of this project. They are set on each target and never exported, so
# that a client compiles its own code with its own settings.

if(MSVC)
    set(KAXML_WARNING_OPTIONS /W4 $<$<BOOL:${KAXML_WERROR}>:/WX>)
else()
    set(KAXML_WARNING_OPTIONS
        -Wall
        -Wextra
        -Wpedantic
        -Wshadow
        -Wconversion
        -Wnon-virtual-dtor
        -Wold-style-cast
        $<$<BOOL:${KAXML_WERROR}>:-Werror>)
endif()

# kaxml_target_options(<target>): warnings, plain ISO C++, sanitizers, and source names that do not
# depend on where the source tree lies.
function(kaxml_target_options target)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF CXX_STANDARD_REQUIRED ON)
    target_compile_options(${target} PRIVATE ${KAXML_WARNING_OPTIONS})
    if(MSVC)
        return()
    endif()

    # __FILE__ is part of what the library reports, so the same sources give the same bytes wherever
    # they are built. Debug builds keep full names in the debug information for the debugger.
    set(prefix_map $<IF:$<CONFIG:Debug>,-fmacro-prefix-map,-ffile-prefix-map>)
    target_compile_options(${target} PRIVATE "${prefix_map}=${PROJECT_SOURCE_DIR}/=")

    if(KAXML_SANITIZE)
        list(JOIN KAXML_SANITIZE "," sanitizers)
        target_compile_options(${target} PRIVATE
            -fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer
            # Sanitized code of GCC makes it suspect the standard library's own headers; the builds
            # without sanitizers keep this warning.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
        # A program that uses a sanitized library has to link the sanitizer's run time itself.
        target_link_options(${target} PUBLIC -fsanitize=${sanitizers})
    endif()
endfunction()
