# Fails when a module of Android.bp builds other sources than the CMake list it is made from, has
# srcs but no CMake list, shares a source with another module, or compiles the host's emulation
# of the platform (Android.bp's modules are all vendor modules).
#   cmake -DANDROID_BP=<file> -DMODULES=<module,...> -DSOURCES_<module>=<source,...> ...
#         -P androidbp_sources.cmake
cmake_minimum_required(VERSION 3.20)

file(READ "${ANDROID_BP}" bp)
string(REPLACE "," ";" modules "${MODULES}")

# The start of each module: its type on a line of its own, then its name.
string(REGEX MATCHALL "\n[a-z_]+ {\n    name: \"[^\"]+\"" heads "${bp}")
set(checked "")
set(every_source "")
foreach(head ${heads})
    string(REGEX REPLACE ".*name: \"([^\"]+)\"" "\\1" module "${head}")
    string(FIND "${bp}" "${head}" start)
    string(SUBSTRING "${bp}" ${start} -1 rest)
    string(FIND "${rest}" "\n}" end)
    string(SUBSTRING "${rest}" 0 ${end} block)
    if(NOT block MATCHES "\n    srcs: \\[[^]]*\\]")
        continue()  # defaults, the license
    endif()
    string(REGEX MATCHALL "\"[^\"]+\"" sources "${CMAKE_MATCH_0}")
    string(REPLACE "\"" "" sources "${sources}")
    list(SORT sources)
    if(NOT module IN_LIST modules)
        message(FATAL_ERROR "Android.bp: ${module} has srcs that no CMake list gives")
    endif()
    string(REPLACE "," ";" expected "${SOURCES_${module}}")
    list(SORT expected)
    if(NOT sources STREQUAL expected)
        set(only_bp ${sources})
        list(REMOVE_ITEM only_bp ${expected})
        set(only_cmake ${expected})
        list(REMOVE_ITEM only_cmake ${sources})
        message(FATAL_ERROR "Android.bp: ${module}: only in Android.bp: ${only_bp}; "
                            "only in CMake: ${only_cmake}")
    endif()
    foreach(source ${sources})
        if(source MATCHES "^platform/host/")
            message(FATAL_ERROR "Android.bp: ${module} compiles the host's ${source}")
        endif()
        if(source IN_LIST every_source)
            message(FATAL_ERROR "Android.bp: ${source} is built twice (again in ${module})")
        endif()
        list(APPEND every_source ${source})
    endforeach()
    list(APPEND checked ${module})
endforeach()

foreach(module ${modules})
    if(NOT module IN_LIST checked)
        message(FATAL_ERROR "Android.bp has no module ${module} with srcs")
    endif()
endforeach()
message(STATUS "Android.bp builds what CMake builds")
