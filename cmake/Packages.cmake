# Debian packages, one for each component: `cpack` in a tree of the preset `packages`, which configures for /usr.
set(packages library platform providers phctl dev)
set(package_library libproviderhelper0)
set(package_platform provider-helper-platform)
set(package_providers provider-helper-providers)
set(package_phctl phctl)
set(package_dev libproviderhelper-dev)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME provider-helper)
set(CPACK_PACKAGE_VENDOR "provider-helper")
set(CPACK_PACKAGE_CONTACT "provider-helper maintainers <maintainers@provider-helper.invalid>" CACHE STRING
    "Maintainer field of the packages")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ${packages})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
# Dependencies among these packages are stated below: dpkg-shlibdeps knows nothing of what is not installed.
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/packages/CPackProject.cmake)
set(CPACK_PH_SHLIBDEPS ${PROJECT_SOURCE_DIR}/cmake/packages/shlibdeps)

set(thisVersion "(= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "${package_platform} ${thisVersion}")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "library behind the CIM providers of a BMC
 It turns the IPMI state, the database and the configuration of a baseboard
 management controller (BMC) into instances of DMTF's SMASH and DASH classes.")
set(CPACK_DEBIAN_PLATFORM_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_PLATFORM_DESCRIPTION "reference platform of the CIM provider library
 IPMI 2.0 over LAN and the local device, a virtual BMC, the inventory database
 and alert delivery, under the interfaces that a BMC vendor implements.")
set(CPACK_DEBIAN_PROVIDERS_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PROVIDERS_PACKAGE_DEPENDS "${package_library} ${thisVersion}")
set(CPACK_COMPONENT_PROVIDERS_DESCRIPTION "CMPI provider module for BMCs
 The module that an object manager loads, the class declarations and the files
 that register it.")
set(CPACK_DEBIAN_PHCTL_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PHCTL_PACKAGE_DEPENDS "${package_providers} ${thisVersion}, ${package_platform} ${thisVersion}")
set(CPACK_COMPONENT_PHCTL_DESCRIPTION "ask the CIM providers of a BMC, and operate a virtual one
 An embedded CMPI broker with a command line and a CIM-XML server. It fills the
 providers' database over IPMI, and makes a virtual BMC.")
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${package_library} ${thisVersion}")
set(CPACK_COMPONENT_DEV_DESCRIPTION "headers of the CIM provider library
 For providers that use the library, and for platforms under it: headers, a
 CMake package and a pkg-config file.")

# What Debian expects of every package.
set(documents ${CMAKE_BINARY_DIR}/packages)
configure_file(cmake/packages/changelog.in ${documents}/changelog @ONLY)
add_custom_command(OUTPUT ${documents}/changelog.gz DEPENDS ${documents}/changelog VERBATIM
                   COMMAND gzip -9nkf ${documents}/changelog)
add_custom_target(package_documents ALL DEPENDS ${documents}/changelog.gz)
foreach(package IN LISTS packages)
    string(TOUPPER ${package} PACKAGE)
    set(CPACK_DEBIAN_${PACKAGE}_PACKAGE_NAME ${package_${package}})
    set(documentDir ${CMAKE_INSTALL_DATADIR}/doc/${package_${package}})
    install(FILES cmake/packages/copyright ${documents}/changelog.gz DESTINATION ${documentDir} COMPONENT ${package})
endforeach()

# The library opens some libraries by path, below /usr/local/lib: links there, made at installation.
foreach(package library platform)
    string(TOUPPER ${package} PACKAGE)
    set(fixedPathLibraries_library libProviderHelper.so.0)
    set(fixedPathLibraries_platform "libinterop_provider.so libEventLogDes.so")
    set(fixedPathLibraries ${fixedPathLibraries_${package}})
    foreach(script postinst postrm)
        configure_file(cmake/packages/${script}.in ${documents}/${package}/${script} @ONLY
                       FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                        WORLD_EXECUTE)
    endforeach()
    set(CPACK_DEBIAN_${PACKAGE}_PACKAGE_CONTROL_EXTRA
        ${documents}/${package}/postinst ${documents}/${package}/postrm ${PROJECT_SOURCE_DIR}/cmake/packages/triggers)
    set(CPACK_DEBIAN_${PACKAGE}_PACKAGE_CONTROL_STRICT_PERMISSION ON)
endforeach()
include(CPack)
