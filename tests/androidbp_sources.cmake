# Fails when Android.bp and the CMake lists build different sources.
#   cmake -DANDROID_BP=<file> -DTOOL_SOURCES=<a,b> -DTEST_SOURCES=<a,b> -P androidbp_sources.cmake

file(READ "${ANDROID_BP}" bp)

# The sorted "srcs" of the first module of `kind` named `name`.
function(module_sources kind name out)
    string(FIND "${bp}" "${kind} {\n    name: \"${name}\"" start)
    if(start EQUAL -1)
        message(FATAL_ERROR "Android.bp has no ${kind} named ${name}")
    endif()
    string(SUBSTRING "${bp}" ${start} -1 rest)
    string(FIND "${rest}" "\n}" end)
    string(SUBSTRING "${rest}" 0 ${end} block)
    string(REGEX MATCH "srcs: \\[[^]]*\\]" srcs "${block}")
    string(REGEX MATCHALL "\"[^\"]+\"" files "${srcs}")
    string(REPLACE "\"" "" files "${files}")
    list(SORT files)
    set(${out} "${files}" PARENT_SCOPE)
endfunction()

function(expect_same what bp_files cmake_files)
    list(SORT cmake_files)
    if(NOT bp_files STREQUAL cmake_files)
        set(only_bp ${bp_files})
        list(REMOVE_ITEM only_bp ${cmake_files})
        set(only_cmake ${cmake_files})
        list(REMOVE_ITEM only_cmake ${bp_files})
        message(FATAL_ERROR "${what}: only in Android.bp: ${only_bp}; only in CMake: ${only_cmake}")
    endif()
endfunction()

string(REPLACE "," ";" tool "${TOOL_SOURCES}")
string(REPLACE "," ";" tests "${TEST_SOURCES}")

module_sources(cc_binary optoquill binary)
expect_same("cc_binary optoquill" "${binary}" "${tool};platform/android/deviceroot.cpp")

set(test_expected ${tool})
list(REMOVE_ITEM test_expected cli/dc_cal.cpp)
list(APPEND test_expected platform/android/deviceroot.cpp)
foreach(test ${tests})
    list(APPEND test_expected tests/${test})
endforeach()
module_sources(cc_test optoquill_unit_tests unit)
expect_same("cc_test optoquill_unit_tests" "${unit}" "${test_expected}")
set(fuzz_expected ${tool})
list(REMOVE_ITEM fuzz_expected cli/dc_cal.cpp)
list(APPEND fuzz_expected platform/android/deviceroot.cpp platform/host/hostenvironment.cpp
     platform/host/propertystore.cpp tests/fuzz/parsers_fuzz.cpp)
module_sources(cc_fuzz optoquill_parsers_fuzzer fuzz)
expect_same("cc_fuzz optoquill_parsers_fuzzer" "${fuzz}" "${fuzz_expected}")
message(STATUS "Android.bp builds what CMake builds")
