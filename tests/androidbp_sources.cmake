# Fails when Android.bp and the CMake lists build different sources, or list one twice.
#   cmake -DANDROID_BP=<file> -DLIBRARY_SOURCES=<a,b> -DBINARIES=<module:main,...>
#         -DTEST_SOURCES=<a,b> -P androidbp_sources.cmake

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

string(REPLACE "," ";" library "${LIBRARY_SOURCES}")
string(REPLACE "," ";" binaries "${BINARIES}")
string(REPLACE "," ";" tests "${TEST_SOURCES}")

# The library holds everything but the mains, with the device's platform seam; each binary is
# its main alone, and the test its own files: no source is built twice.
module_sources(cc_library_static liboptoquill_core core)
expect_same("cc_library_static liboptoquill_core" "${core}"
            "${library};platform/android/deviceroot.cpp")
foreach(binary ${binaries})
    string(REPLACE ":" ";" pair "${binary}")
    list(GET pair 0 module)
    list(GET pair 1 main)
    module_sources(cc_binary ${module} sources)
    expect_same("cc_binary ${module}" "${sources}" "${main}")
endforeach()
set(test_expected "")
foreach(test ${tests})
    list(APPEND test_expected tests/${test})
endforeach()
module_sources(cc_test optoquill_unit_tests unit)
expect_same("cc_test optoquill_unit_tests" "${unit}" "${test_expected}")
# The fuzzer links the library and adds the host's property store, which it fuzzes too.
set(fuzz_expected platform/host/hostenvironment.cpp platform/host/propertystore.cpp
    tests/fuzz/parsers_fuzz.cpp)
module_sources(cc_fuzz optoquill_parsers_fuzzer fuzz)
expect_same("cc_fuzz optoquill_parsers_fuzzer" "${fuzz}" "${fuzz_expected}")
message(STATUS "Android.bp builds what CMake builds")
