# The three interfaces between the layers, as header-only targets. A target sees only those it is given.

add_library(ph_cmpi INTERFACE)
if(PH_CMPI_INCLUDE_DIR)
    target_include_directories(ph_cmpi SYSTEM INTERFACE ${PH_CMPI_INCLUDE_DIR})
    # Older headers ask which platform they are for, and some of them write thread functions as another compiler does.
    target_compile_definitions(ph_cmpi INTERFACE CMPI_PLATFORM_LINUX_GENERIC_GNU __cdecl=)
else()
    target_include_directories(ph_cmpi INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include/cmpi>)
endif()

add_library(ph_platform INTERFACE)
target_include_directories(ph_platform INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)

add_library(ph_exports INTERFACE)
target_include_directories(ph_exports INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
target_link_libraries(ph_exports INTERFACE ph_cmpi ph_platform)
