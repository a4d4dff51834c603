# Where everything goes: the libraries and phctl for the machine that runs them; headers, a CMake package and a
# pkg-config file for providers of other makers that use libProviderHelper.
#
# Providers are offered ProviderHelper itself. The libraries under it are the platform's, which a BMC vendor may replace: the
# dynamic linker finds them beside it. For the vendor there are stubs of their functions, and examples.

include(CMakePackageConfigHelpers)
set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/ProviderHelper)
set(moduleDir ${CMAKE_INSTALL_LIBDIR}/cmpi)
set(dataDir ${CMAKE_INSTALL_DATADIR}/provider-helper)

# ph_install(<component> <folder> <targets>…): targets that find the project's libraries from where they are, wherever that is, or
# if only they were moved, from where the build was to be installed.
function(ph_install component folder)
    file(RELATIVE_PATH toLibraries /${folder} /${CMAKE_INSTALL_LIBDIR})
    foreach(target ${ARGN})
        if(TARGET ${target})
            set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${toLibraries}:${CMAKE_INSTALL_FULL_LIBDIR}")
            install(TARGETS ${target} COMPONENT ${component} RUNTIME DESTINATION ${folder}
                    LIBRARY DESTINATION ${folder} NAMELINK_COMPONENT dev)
        endif()
    endforeach()
endfunction()

ph_install(library ${CMAKE_INSTALL_LIBDIR} ProviderHelper)
ph_install(platform ${CMAKE_INSTALL_LIBDIR} phipmi phipmi-freeipmi ph_virtual_bmc CIMAPIHooks CIMTRZHooks CIMOEMHooks
           smashdb phsupport EventLogDes smtp smtp_client http_image interop_provider)
ph_install(providers ${moduleDir} ProviderHelperProviders)
ph_install(phctl ${CMAKE_INSTALL_BINDIR} phctl)
ph_install(phctl ${CMAKE_INSTALL_LIBDIR}/phctl phctl-http)
install(PROGRAMS tools/deploy-check TYPE BIN COMPONENT providers)

# The model of the sample server, for `phctl bmc create`.
install(DIRECTORY platform/virtual-bmc/models DESTINATION ${dataDir} COMPONENT phctl)
# What registers the classes and the provider module with an object manager.
install(DIRECTORY ${CMAKE_BINARY_DIR}/share/provider-helper/schema DESTINATION ${dataDir} COMPONENT providers)

# Manual pages, that of phctl made of what it says of itself, and its completion for bash. A program for another
# machine does not run here, and a sanitized one takes its time.
set(manualPages ${CMAKE_BINARY_DIR}/man)
set(compressed ${manualPages}/deploy-check.1.gz)
file(MAKE_DIRECTORY ${manualPages})
add_custom_command(OUTPUT ${manualPages}/deploy-check.1.gz DEPENDS tools/deploy-check.1 VERBATIM
                   COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/tools/deploy-check.1 > ${manualPages}/deploy-check.1.gz)
install(FILES ${manualPages}/deploy-check.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT providers)
if(NOT CMAKE_CROSSCOMPILING AND NOT PH_SANITIZE)
    list(APPEND compressed ${manualPages}/phctl.1.gz)
    add_custom_command(OUTPUT ${manualPages}/phctl.1.gz DEPENDS phctl tools/phctl/doc/man-page VERBATIM
                       COMMAND ${PROJECT_SOURCE_DIR}/tools/phctl/doc/man-page $<TARGET_FILE:phctl> ${PROJECT_VERSION}
                               > ${manualPages}/phctl.1
                       COMMAND gzip -9nkf ${manualPages}/phctl.1)
    install(FILES ${manualPages}/phctl.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT phctl)
endif()
add_custom_target(manual_pages ALL DEPENDS ${compressed})
install(FILES tools/phctl/doc/completion.bash RENAME phctl COMPONENT phctl
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
configure_file(cmake/packages/provider-helper-server.service.in provider-helper-server.service @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/provider-helper-server.service COMPONENT phctl
        DESTINATION lib/systemd/system)

# Below a folder of ours: "platform" and "cmpi" are anybody's names.
set(includeDir ${CMAKE_INSTALL_INCLUDEDIR}/provider-helper)
install(DIRECTORY include/provider_helper include/platform DESTINATION ${includeDir} COMPONENT dev)
install(DIRECTORY examples DESTINATION ${dataDir} COMPONENT dev)
install(TARGETS CIMAPIHooks-stubs CIMTRZHooks-stubs CIMOEMHooks-stubs smashdb-stubs smtp-stubs
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
if(PH_CMPI_INCLUDE_DIR)
    set(cmpiIncludeDir ${PH_CMPI_INCLUDE_DIR}) # its owner installs it
else()
    install(DIRECTORY include/cmpi DESTINATION ${includeDir} COMPONENT dev)
    set(cmpiIncludeDir ${includeDir}/cmpi)
endif()

configure_package_config_file(cmake/ProviderHelperConfig.cmake.in ProviderHelperConfig.cmake
                              INSTALL_DESTINATION ${packageDir}
                              PATH_VARS includeDir CMAKE_INSTALL_LIBDIR cmpiIncludeDir)
write_basic_package_version_file(ProviderHelperConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ProviderHelperConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/ProviderHelperConfigVersion.cmake DESTINATION ${packageDir} COMPONENT dev)

# The prefix is taken from where the file lies, so that `cmake --install --prefix` and a moved tree both work.
file(RELATIVE_PATH pcToPrefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
if(IS_ABSOLUTE ${cmpiIncludeDir})
    set(pcCmpiIncludeDir ${cmpiIncludeDir})
else()
    set(pcCmpiIncludeDir "\${prefix}/${cmpiIncludeDir}")
endif()
configure_file(cmake/provider-helper.pc.in provider-helper.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/provider-helper.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
