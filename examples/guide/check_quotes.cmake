# Fails unless every quotation in the documents is the text of the file that it names:
#
#   <!-- from examples/guide/first_program.cpp -->
#   ```cpp
#   some lines of it, one after the other
#   ```
#
# Blocks of the languages that programs and data are written in have to be quotations.
#   cmake -D ROOT=<source folder> -P check_quotes.cmake

file(GLOB documents ${ROOT}/README.md ${ROOT}/docs/guide/*.md ${ROOT}/docs/format-*.md)
set(count 0)
set(begin "<!-- from ")
foreach(document IN LISTS documents)
    file(READ ${document} rest)
    string(REGEX MATCHALL "(^|\n)```(cpp|xml)\n" blocks "${rest}")
    list(LENGTH blocks blocks)
    set(quotations 0)
    string(FIND "${rest}" "${begin}" position)
    while(NOT position EQUAL -1)
        string(SUBSTRING "${rest}" ${position} -1 rest)
        if(NOT rest MATCHES "^<!-- from ([^ \n]+) -->\n```([a-z]*)\n")
            message(FATAL_ERROR "${document}: a quotation does not begin as it should")
        endif()
        set(file ${CMAKE_MATCH_1})
        string(LENGTH "${CMAKE_MATCH_0}" length)
        if(CMAKE_MATCH_2 MATCHES "^(cpp|xml)$")
            math(EXPR quotations "${quotations} + 1")
        endif()
        string(SUBSTRING "${rest}" ${length} -1 rest)
        string(FIND "${rest}" "```" length)
        string(SUBSTRING "${rest}" 0 ${length} quotation)
        file(READ ${ROOT}/${file} text)
        string(FIND "\n${text}" "\n${quotation}" found)
        if(found EQUAL -1 OR quotation STREQUAL "")
            message(FATAL_ERROR "${document} quotes this, which is not in ${file}:\n${quotation}")
        endif()
        math(EXPR count "${count} + 1")
        string(FIND "${rest}" "${begin}" position)
    endwhile()
    if(NOT blocks EQUAL quotations)
        message(FATAL_ERROR "${document}: ${blocks} blocks of code, but ${quotations} quotations")
    endif()
endforeach()
if(count EQUAL 0)
    message(FATAL_ERROR "No quotation found in ${ROOT}/docs")
endif()
message("${count} quotations")
