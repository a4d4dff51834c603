# 32-bit ARM Linux (Debian armhf): the packaged cross compiler with its own C library, everything else from the
# folder that cmake/armhf-sysroot.sh fills. Tests run under qemu's user-mode emulation.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

set(PH_ARMHF_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/armhf-sysroot CACHE PATH "Unpacked armhf libraries")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PH_ARMHF_SYSROOT)
get_filename_component(sysroot ${PH_ARMHF_SYSROOT} ABSOLUTE)
if(NOT EXISTS ${sysroot}/.packages)
    message(FATAL_ERROR "No armhf libraries in ${sysroot}: run cmake/armhf-sysroot.sh ${sysroot}")
endif()

set(CMAKE_FIND_ROOT_PATH ${sysroot} /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
# pkg-config need not name the folders of headers and libraries, which are the standard ones below: put in front of
# them, a folder whose name has blanks would be split.
set(ENV{PKG_CONFIG_SYSTEM_INCLUDE_PATH} /usr/include:/usr/include/arm-linux-gnueabihf)
set(ENV{PKG_CONFIG_SYSTEM_LIBRARY_PATH} /usr/lib:/usr/lib/arm-linux-gnueabihf)
set(ENV{PKG_CONFIG_LIBDIR} ${sysroot}/usr/lib/arm-linux-gnueabihf/pkgconfig:${sysroot}/usr/share/pkgconfig)

# The compiler takes the unpacked folder for no system folder of its own: name its standard places.
foreach(language C CXX)
    set(CMAKE_${language}_FLAGS_INIT -Wno-psabi) # notes on the ABI of GCC before 7.1, of no interest here
    set(CMAKE_${language}_STANDARD_INCLUDE_DIRECTORIES ${sysroot}/usr/include
                                                       ${sysroot}/usr/include/arm-linux-gnueabihf)
endforeach()
foreach(kind EXE SHARED MODULE)
    # Parts of a command line: the folder's name may have blanks.
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "\"-L${sysroot}/usr/lib/arm-linux-gnueabihf\" \"-Wl,-rpath-link,\
${sysroot}/usr/lib/arm-linux-gnueabihf:${sysroot}/lib/arm-linux-gnueabihf\"")
endforeach()

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static -L ${sysroot})
