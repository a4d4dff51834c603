# Compares three lists: the symbols in the library's dynamic table, those of exports.map, and those that the public
# headers mark as exported.

function(require_same list_a name_a list_b name_b)
    set(only_a ${${list_a}})
    list(REMOVE_ITEM only_a ${${list_b}})
    set(only_b ${${list_b}})
    list(REMOVE_ITEM only_b ${${list_a}})
    if(only_a)
        message(SEND_ERROR "in ${name_a}, but not in ${name_b}: ${only_a}")
    endif()
    if(only_b)
        message(SEND_ERROR "in ${name_b}, but not in ${name_a}: ${only_b}")
    endif()
endfunction()

execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[A-Z] [A-Za-z_0-9]+" exported "${symbols}")
list(TRANSFORM exported REPLACE "^[A-Z] " "")

file(READ ${MAP} map)
string(REPLACE ";" "@" map "${map}")
string(REGEX MATCHALL "[A-Za-z_0-9]+@" listed "${map}")
list(TRANSFORM listed REPLACE "@$" "")

file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/all_headers.c "#include \"provider_helper/provider_helper.h\"\n")
execute_process(COMMAND ${COMPILER} -E -P -I${INCLUDES} -I${CMPI} ${CMAKE_CURRENT_BINARY_DIR}/all_headers.c
                OUTPUT_VARIABLE declarations COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" " " declarations "${declarations}")
string(REPLACE ";" "@" declarations "${declarations}") # not a list
string(REPLACE "[" "(" declarations "${declarations}") # an open bracket would hold list elements together
string(REGEX MATCHALL "visibility\\(\"default\"\\)\\)\\) [^@({]*[ *][A-Za-z_0-9]+[(@]" declared "${declarations}")
list(TRANSFORM declared REPLACE ".*[ *]([A-Za-z_0-9]+).$" "\\1")

require_same(exported "the library" listed "exports.map")
require_same(listed "exports.map" declared "the headers")
