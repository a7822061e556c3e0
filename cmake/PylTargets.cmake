# The flags that every target of ours gets, and the functions that make targets with them.

find_package(Threads REQUIRED)

# Includes are written from here.
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH PYL_ROOT)

find_program(PYL_CCACHE ccache)
if(PYL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_C_COMPILER_LAUNCHER "${PYL_CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${PYL_CCACHE}")
endif()

# Links a test program in a fraction of the default linker's time. What is shipped gets the system's own.
find_program(PYL_MOLD mold)
if(PYL_MOLD AND CMAKE_BUILD_TYPE STREQUAL "Debug")
    if(CMAKE_CROSSCOMPILING)  # GCC looks for another name then
        add_link_options(-B/usr/libexec/mold)
    else()
        add_link_options(-fuse-ld=mold)
    endif()
endif()

add_library(pyl_flags INTERFACE)
target_compile_features(pyl_flags INTERFACE cxx_std_20)
target_include_directories(pyl_flags INTERFACE "${PYL_ROOT}" "${CMAKE_BINARY_DIR}/generated")
target_link_libraries(pyl_flags INTERFACE Threads::Threads)
target_compile_options(pyl_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
if(NOT PYL_SANITIZE)  # whose instrumentation would be followed too
    target_compile_options(pyl_flags INTERFACE $<$<COMPILE_LANG_AND_ID:C,GNU>:-fanalyzer>)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # Warns of std::string's own operator+ when it optimises (GCC bug 105651).
    target_compile_options(pyl_flags INTERFACE -Wno-restrict)
endif()
# In a batch of files, a name at namespace scope may be another file's: there only what is shadowed within a
# function counts. Files compiled one by one are held against all names.
if(NOT CMAKE_UNITY_BUILD)
    target_compile_options(pyl_flags INTERFACE -Wshadow)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(pyl_flags INTERFACE -Wshadow=local)
endif()
if(PYL_STRICT)
    target_compile_options(pyl_flags INTERFACE -Werror)
endif()
if(PYL_SANITIZE)
    # The instrumentation makes GCC see uses before initialisation that are none.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(pyl_flags INTERFACE -Wno-maybe-uninitialized)
    endif()
    target_compile_options(pyl_flags INTERFACE
        -fsanitize=${PYL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_definitions(pyl_flags INTERFACE _GLIBCXX_ASSERTIONS)
    target_link_options(pyl_flags INTERFACE -fsanitize=${PYL_SANITIZE})
    if(PYL_SANITIZE MATCHES integer)
        # Under the name of its content: neither Ninja nor ccache reads such a list.
        file(SHA256 "${PYL_ROOT}/fuzz/wrapping.txt" sum)
        configure_file("${PYL_ROOT}/fuzz/wrapping.txt" "${CMAKE_BINARY_DIR}/wrapping-${sum}.txt" COPYONLY)
        target_compile_options(pyl_flags INTERFACE "-fsanitize-ignorelist=${CMAKE_BINARY_DIR}/wrapping-${sum}.txt")
    endif()
endif()
if(PYL_COVERAGE)
    # By the source: GCC counts the branches of cleaning up, too, which nobody wrote.
    target_compile_options(pyl_flags INTERFACE
        -fprofile-instr-generate -fcoverage-mapping -fprofile-update=atomic)
    target_link_options(pyl_flags INTERFACE -fprofile-instr-generate)
endif()

# Common to libraries, programs and tests: hidden symbols, position independence, our flags.
function(pyl_prepare target)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        C_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:pyl_flags>)
endfunction()

# A layer of the support library: its objects become part of the shared object pylcommon.
# pyl_add_layer(NAME SOURCES...)
function(pyl_add_layer name)
    add_library(${name} OBJECT ${ARGN})
    pyl_prepare(${name})
    target_compile_definitions(${name} PRIVATE pylcommon_EXPORTS)
    # Nobody replaces a function of ours at load time, so that calls of exported ones may be inlined.
    # Clang takes it so already.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${name} PRIVATE -fno-semantic-interposition)
    endif()
    set_property(GLOBAL APPEND PROPERTY PYL_LAYERS ${name})
endfunction()

# A static library of cimhost. pyl_add_part(NAME SOURCES... )
function(pyl_add_part name)
    add_library(${name} STATIC ${ARGN})
    pyl_prepare(${name})
    target_include_directories(${name} PUBLIC "${PYL_ROOT}")
endfunction()

# A test program of GoogleTest cases. It is one CTest test, labelled "program": a process takes longer to start than
# most cases to run, and so what one case leaves to the next is looked at, too. Each case is one more, labelled "case",
# for who asks for it by name.
# pyl_add_test(NAME SOURCES ... LIBRARIES ...)
function(pyl_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 test "" "" "SOURCES;LIBRARIES")
    add_executable(${name} ${test_SOURCES})
    pyl_prepare(${name})
    # Who edits one test waits for its batch: a small one, and not optimised.
    if(NOT PYL_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
        set_target_properties(${name} PROPERTIES UNITY_BUILD_BATCH_SIZE 6)
    endif()
    target_compile_options(${name} PRIVATE $<$<CONFIG:Debug>:-O0>)
    pyl_judge_threads(${name} is_wanted)
    pyl_judge_bytes(${name} reads_bytes)
    if(NOT is_wanted OR NOT reads_bytes)
        set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
        return()
    endif()
    target_link_libraries(${name} PRIVATE ${test_LIBRARIES} GTest::gmock GTest::gtest_main)
    if(CMAKE_CROSSCOMPILING)
        pyl_add_emulated_test(${name})
    else()
        pyl_leave_out_cases(filter)
        add_test(NAME ${name} COMMAND ${name} ${filter})
        set_tests_properties(${name} PROPERTIES TIMEOUT 900 COST 50 LABELS program)
        gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120 LABELS case)
    endif()
endfunction()
