# Where everything goes: the libraries and phctl for the machine that runs them; headers, a CMake package and a
# pkg-config file for providers of other makers that use libProviderHelper.
#
# Only ProviderHelper itself is offered to them. The libraries under it are the platform's, which a BMC vendor may
# replace: the dynamic linker finds them beside it.

include(CMakePackageConfigHelpers)
set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/ProviderHelper)
set(moduleDir ${CMAKE_INSTALL_LIBDIR}/cmpi)
set(dataDir ${CMAKE_INSTALL_DATADIR}/provider-helper)

# ph_install(<folder> <targets>…): targets that find the project's libraries from where they are, wherever that is, or
# if only they were moved, from where the build was to be installed.
function(ph_install folder)
    file(RELATIVE_PATH toLibraries /${folder} /${CMAKE_INSTALL_LIBDIR})
    foreach(target ${ARGN})
        if(TARGET ${target})
            set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${toLibraries}:${CMAKE_INSTALL_FULL_LIBDIR}")
            install(TARGETS ${target} RUNTIME DESTINATION ${folder} LIBRARY DESTINATION ${folder})
        endif()
    endforeach()
endfunction()

ph_install(${CMAKE_INSTALL_LIBDIR} ProviderHelper phipmi phipmi-freeipmi ph_virtual_bmc CIMAPIHooks CIMTRZHooks
           CIMOEMHooks smashdb phsupport EventLogDes smtp smtp_client interop_provider)
ph_install(${moduleDir} ProviderHelperProviders)
ph_install(${CMAKE_INSTALL_BINDIR} phctl)
install(PROGRAMS tools/deploy-check TYPE BIN)

# The model of the sample server, for `phctl bmc create`.
install(DIRECTORY platform/virtual-bmc/models DESTINATION ${dataDir} OPTIONAL)
# What registers the classes and the provider module with an object manager.
install(DIRECTORY ${CMAKE_BINARY_DIR}/share/provider-helper/schema DESTINATION ${dataDir})

install(DIRECTORY include/provider_helper include/platform DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(PH_CMPI_INCLUDE_DIR)
    set(cmpiIncludeDir ${PH_CMPI_INCLUDE_DIR}) # its owner installs it
else()
    install(DIRECTORY include/cmpi DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
    set(cmpiIncludeDir ${CMAKE_INSTALL_INCLUDEDIR}/cmpi)
endif()

configure_package_config_file(cmake/ProviderHelperConfig.cmake.in ProviderHelperConfig.cmake
                              INSTALL_DESTINATION ${packageDir}
                              PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR cmpiIncludeDir)
write_basic_package_version_file(ProviderHelperConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ProviderHelperConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/ProviderHelperConfigVersion.cmake DESTINATION ${packageDir})

# The prefix is taken from where the file lies, so that `cmake --install --prefix` and a moved tree both work.
file(RELATIVE_PATH pcToPrefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
if(IS_ABSOLUTE ${cmpiIncludeDir})
    set(pcCmpiIncludeDir ${cmpiIncludeDir})
else()
    set(pcCmpiIncludeDir "\${prefix}/${cmpiIncludeDir}")
endif()
configure_file(cmake/provider-helper.pc.in provider-helper.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/provider-helper.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
