# What every target of the project is compiled and linked with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

# -O2 as RelWithDebInfo has it: what is released is what was tested, and small.
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

# All libraries and programs land in two folders, as they do on a BMC: dlopen by name works in the build tree.
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# 64-bit off_t and time_t on the 32-bit target: state files and SEL times outlive 2038.
add_compile_definitions(_GNU_SOURCE _FILE_OFFSET_BITS=64 _TIME_BITS=64)

add_library(ph_build_options INTERFACE)
target_compile_options(ph_build_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                                  -Werror)
# What calls the platform's libraries has PH_CALLS_PLATFORM: a function is looked up when it is called, so that a platform
# without it serves all the rest. The price is that the table of these addresses stays writable (partial RELRO).
target_link_options(ph_build_options INTERFACE
    -Wl,-z,relro,-z,$<IF:$<BOOL:$<TARGET_PROPERTY:PH_CALLS_PLATFORM>>,lazy,now>)
if(NOT PH_SANITIZE) # a sanitized library resolves the runtime's symbols in the program
    target_link_options(ph_build_options INTERFACE -Wl,-z,defs)
endif()

# What users run, as opposed to tests, is hardened, or sanitized.
add_library(ph_options INTERFACE)
target_link_libraries(ph_options INTERFACE ph_build_options)
if(PH_SANITIZE)
    # Little optimization: the inline functions of the standard library are sanitized where they are called. What has the
    # property PH_QUICK_WHEN_SANITIZED does without any.
    target_compile_options(ph_options INTERFACE
        $<IF:$<BOOL:$<TARGET_PROPERTY:PH_QUICK_WHEN_SANITIZED>>,-O0,-O1> -fsanitize=${PH_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
        -g1) # reports name lines; variables, too, would take a third of a compiler's time
    target_compile_definitions(ph_options INTERFACE _GLIBCXX_ASSERTIONS)
    add_link_options(-fsanitize=${PH_SANITIZE})
    # What a sanitizer knows of each place in the code is addresses, millions of them in a program, which each start of it would
    # relocate.
    add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>)
    # What the sanitizers add makes the compiler take an empty value for one that is not initialized.
    target_compile_options(ph_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    if(PH_SANITIZE STREQUAL thread) # it has to see what synchronizes in tests, too
        add_compile_options(-fsanitize=thread)
        target_compile_options(ph_build_options INTERFACE -Wno-error) # its code has the compiler guess wrong
    endif()
    if(PH_LIBFUZZER)
        target_compile_options(ph_options INTERFACE -fsanitize=fuzzer-no-link)
        target_compile_options(ph_build_options INTERFACE -Wno-error) # warnings are those of g++; clang has others
    endif()
else()
    target_compile_options(ph_options INTERFACE -fstack-protector-strong)
    if(NOT CMAKE_BUILD_TYPE STREQUAL Debug)
        target_compile_options(ph_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    endif()
endif()

# ph_small(<library>): with PH_SMALL, one of those that a BMC's flash holds is optimized as a whole.
function(ph_small library)
    if(PH_SMALL)
        set_target_properties(${library} PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
    endif()
endfunction()
if(PH_SMALL)
    target_compile_options(ph_options INTERFACE -Os -ffunction-sections -fdata-sections)
    target_link_options(ph_options INTERFACE -Wl,--gc-sections)
endif()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
