# Writes the linker's version script: every function, table and global that a public header marks with PH_EXPORT, and
# nothing else. The headers are the only list of exports.
#
#     cmake -DHEADER=<all.h> -DOUTPUT=<map> -DCOMPILER=<cc> -DINCLUDES=<folder>;… -DDEFINITIONS=<macro>;… \
#           -P WriteExportMap.cmake

list(TRANSFORM INCLUDES PREPEND -I)
list(TRANSFORM DEFINITIONS PREPEND -D)
execute_process(COMMAND ${COMPILER} -E -P -x c ${INCLUDES} ${DEFINITIONS} ${HEADER}
                OUTPUT_VARIABLE declarations COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" " " declarations "${declarations}")
string(REPLACE ";" "@" declarations "${declarations}") # not a list
string(REPLACE "[" "(" declarations "${declarations}") # an open bracket would hold list elements together
# What follows the mark up to the end of the name: "… PH_EI_Sensor(", "… SELCount@".
string(REGEX MATCHALL "visibility\\(\"default\"\\)\\)\\) [^@({]*[ *][A-Za-z_0-9]+[(@]" names "${declarations}")
list(TRANSFORM names REPLACE ".*[ *]([A-Za-z_0-9]+).$" "    \\1@")
list(SORT names)
list(REMOVE_DUPLICATES names)
if(NOT names)
    message(FATAL_ERROR "${HEADER} declares no export")
endif()
list(JOIN names "\n" lines)
string(REPLACE "@" ";" lines "${lines}")
file(WRITE ${OUTPUT} "{\nglobal:\n${lines}\nlocal:\n    *;\n};\n")
