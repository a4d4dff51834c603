# The platform's functions, read from the headers that declare them, as lines of macros: what forwards, replaces or names
# each of them can never miss one.

file(GLOB platformHeaders CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/platform/cim_*.h
                                            ${PROJECT_SOURCE_DIR}/include/platform/smash_db*.h)

# ph_platform_calls(<file> HEADERS … [EXCEPT …] [WRAP <file>]): the files of WritePlatformCalls.cmake.
function(ph_platform_calls file)
    cmake_parse_arguments(arg "" "WRAP" "HEADERS;EXCEPT" ${ARGN})
    set(script ${PROJECT_SOURCE_DIR}/cmake/WritePlatformCalls.cmake)
    add_custom_command(OUTPUT ${file} ${arg_WRAP}
        COMMAND ${CMAKE_COMMAND} -DOUTPUT=${file} "-DWRAP=${arg_WRAP}" "-DHEADERS=${arg_HEADERS}"
                "-DEXCEPT=${arg_EXCEPT}" -P ${script}
        DEPENDS ${script} ${arg_HEADERS} VERBATIM)
endfunction()
