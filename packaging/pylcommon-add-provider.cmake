# pylcommon_add_provider(NAME CLASSES file.mof... SOURCES file.cpp... [REGISTRATION file] [NAMESPACE name]
#                        [TESTS file.cpp...])
#
# A provider module and what belongs to it:
#
#   NAME                the module lib<NAME>.so: hidden symbols, installed into lib/cmpi, or what the library's own
#                       folder is called, from where it finds the library
#   NAME_registration   its registrations for cimhost, sfcb and OpenPegasus, installed with the MOF into
#                       share/pylcommon/mof, where pylcommon-register looks; made with everything else. Where there is
#                       a cimhost, MOF and registration are checked by it first
#   NAME_check          has cimhost look whether the module has what it is registered for; made with everything else too
#   NAME_serve          builds the module and serves it in cimhost, with the options in PYLCOMMON_SERVE_OPTIONS; what is
#                       built anew meanwhile is taken into service
#   NAME_test           a program of the TESTS, with the objects of the module, the harness and GoogleTest. CTest runs its
#                       cases in the source folder; PYL_MODULE_REGISTRATION and PYL_MODULE_FOLDER say where the module is
#
# REGISTRATION has a line a class: Class Namespace Provider Module kind... Without it each class of the MOF files that
# is not abstract is registered in NAMESPACE (root/ktq) for the provider that PYL_CMPI_PROVIDER names in the sources:
# an association and what has methods for these too, an indication for that alone.

include(GNUInstallDirs)
set(PYLCOMMON_SERVE_OPTIONS "" CACHE STRING "Options of cimhost serve for the targets that serve a provider")
find_program(PYLCOMMON_CIMHOST cimhost HINTS "${pylcommon_PREFIX}/bin"
    DOC "Checks the providers' schema and registrations, and serves them")

function(pylcommon_add_provider name)
    cmake_parse_arguments(PARSE_ARGV 1 given "" "REGISTRATION;NAMESPACE" "CLASSES;SOURCES;TESTS")
    if(given_UNPARSED_ARGUMENTS OR NOT given_CLASSES OR NOT given_SOURCES)
        message(FATAL_ERROR "pylcommon_add_provider(${name}): expected CLASSES file.mof... SOURCES file.cpp... "
            "[REGISTRATION file] [NAMESPACE name] [TESTS file.cpp...]; not understood: '${given_UNPARSED_ARGUMENTS}'")
    endif()
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
    _pylcommon_add_module(${name} ${given_SOURCES})

    _pylcommon_absolute(classes ${given_CLASSES})
    set(registration "${CMAKE_CURRENT_BINARY_DIR}/${name}.registration")
    if(given_REGISTRATION)
        configure_file("${given_REGISTRATION}" "${registration}" COPYONLY)
        file(STRINGS "${given_REGISTRATION}" rows REGEX "^[ \t]*[A-Za-z]")
        list(TRANSFORM rows REPLACE "^[ \t]*[^ \t]+[ \t]+([^ \t]+).*" "\\1" OUTPUT_VARIABLE name_spaces)
    else()
        if(NOT given_NAMESPACE)
            set(given_NAMESPACE root/ktq)
        endif()
        set(name_spaces "${given_NAMESPACE}")
        _pylcommon_absolute(sources ${given_SOURCES})
        add_custom_command(OUTPUT "${registration}"
            COMMAND Python3::Interpreter "${pylcommon_DATA_DIR}/register_classes.py" "${registration}"
                "${given_NAMESPACE}" "${pylcommon_SCHEMA_DIR}" ${classes} ${sources}
            DEPENDS ${classes} ${sources}
            COMMENT "Registering the classes of ${name}"
            VERBATIM)
    endif()
    _pylcommon_schema_options(options "${name_spaces}" ${classes})
    list(APPEND options --registration "${registration}")
    _pylcommon_add_registration(${name} "${options}" ${classes})

    if(PYLCOMMON_CIMHOST)
        add_custom_target(${name}_serve
            COMMAND "${PYLCOMMON_CIMHOST}" serve --watch ${PYLCOMMON_SERVE_OPTIONS} ${options}
                --provider-dir "$<TARGET_FILE_DIR:${name}>"
            DEPENDS ${name} ${name}_registration
            USES_TERMINAL VERBATIM)
        _pylcommon_add_check(${name} "${options}" ${classes})
    endif()
    if(given_TESTS)
        _pylcommon_add_tests(${name} ${given_TESTS})
    endif()
endfunction()

function(_pylcommon_absolute result)
    set(paths)
    foreach(file IN LISTS ARGN)
        file(REAL_PATH "${file}" file)
        list(APPEND paths "${file}")
    endforeach()
    set(${result} "${paths}" PARENT_SCOPE)
endfunction()

function(_pylcommon_add_module name)
    add_library(${name} MODULE ${ARGN})
    target_link_libraries(${name} PRIVATE pylcommon::pylcommon)
    set_target_properties(${name} PROPERTIES
        PREFIX lib
        C_VISIBILITY_PRESET hidden
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        INSTALL_RPATH "$ORIGIN/.."
        INSTALL_RPATH_USE_LINK_PATH ON)  # for a library of another prefix
    # What is undefined is told here, not by the object manager; the sanitizers' runtime comes with the program.
    if(NOT "${CMAKE_CXX_FLAGS} ${CMAKE_MODULE_LINKER_FLAGS}" MATCHES "-fsanitize")
        target_link_options(${name} PRIVATE LINKER:-z,defs)
    endif()
    install(TARGETS ${name} LIBRARY DESTINATION "${pylcommon_LIBDIR}/cmpi")
endfunction()

# The options by which cimhost reads the classes, on top of the base that is installed. Alerts are subscribed to in
# the namespace interop.
function(_pylcommon_schema_options result name_spaces)
    list(REMOVE_DUPLICATES name_spaces)
    set(base --schema "${pylcommon_SCHEMA_DIR}/base/base.mof")
    set(options)
    if(NOT interop IN_LIST name_spaces)
        list(APPEND options --namespace interop ${base})
    endif()
    foreach(name_space IN LISTS name_spaces)
        list(APPEND options --namespace "${name_space}" ${base} --schema "${pylcommon_SCHEMA_DIR}/PYL_Indications.mof")
        foreach(file IN LISTS ARGN)
            list(APPEND options --schema "${file}")
        endforeach()
    endforeach()
    set(${result} "${options}" PARENT_SCOPE)
endfunction()

function(_pylcommon_add_registration name options)
    set(stem "${CMAKE_CURRENT_BINARY_DIR}/${name}")
    set(check)
    if(PYLCOMMON_CIMHOST)
        set(check COMMAND "${PYLCOMMON_CIMHOST}" check ${options})
    else()
        message(STATUS "${name}: no cimhost was found (PYLCOMMON_CIMHOST): MOF and registration are not checked")
    endif()
    add_custom_command(OUTPUT "${stem}.reg" "${stem}Registration.mof"
        ${check}
        COMMAND Python3::Interpreter "${pylcommon_DATA_DIR}/make_registrations.py"
            "${stem}.registration" "${CMAKE_CURRENT_BINARY_DIR}" "$<IF:$<BOOL:${PROJECT_VERSION}>,${PROJECT_VERSION},1.0.0>"
        DEPENDS "${stem}.registration" ${ARGN}
        COMMENT "Checking the schema and the registration of ${name}"
        VERBATIM)
    add_custom_target(${name}_registration ALL DEPENDS "${stem}.reg" "${stem}Registration.mof")
    install(FILES ${ARGN} "${stem}.registration" "${stem}.reg" "${stem}Registration.mof"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/pylcommon/mof")
endfunction()

# What can be seen of the module only once it is there. One with sanitizers wants their runtime in the program.
function(_pylcommon_add_check name options)
    if("${CMAKE_CXX_FLAGS} ${CMAKE_MODULE_LINKER_FLAGS}" MATCHES "-fsanitize")
        return()
    endif()
    set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${name}.checked")
    add_custom_command(OUTPUT "${stamp}"
        COMMAND "${PYLCOMMON_CIMHOST}" check ${options} --provider-dir "$<TARGET_FILE_DIR:${name}>"
        COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS ${name} "${CMAKE_CURRENT_BINARY_DIR}/${name}.registration" ${ARGN}
        COMMENT "Checking the module ${name}"
        VERBATIM)
    add_custom_target(${name}_check ALL DEPENDS "${stamp}")
    add_dependencies(${name}_check ${name}_registration)
endfunction()

function(_pylcommon_add_tests name)
    find_package(GTest QUIET)
    if(NOT TARGET pylcommon::testing OR NOT TARGET GTest::gtest_main)
        message(WARNING "${name}_test is not built: it needs pylcommon::testing, which a pylcommon that was built without "
            "cimhost lacks, and GoogleTest (libgtest-dev)")
        return()
    endif()
    add_executable(${name}_test ${ARGN} $<TARGET_OBJECTS:${name}>)
    target_include_directories(${name}_test PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}"
        "$<TARGET_PROPERTY:${name},INCLUDE_DIRECTORIES>")
    target_link_libraries(${name}_test PRIVATE
        "$<TARGET_PROPERTY:${name},LINK_LIBRARIES>" pylcommon::testing GTest::gtest_main)
    target_compile_definitions(${name}_test PRIVATE
        PYL_MODULE_REGISTRATION="${CMAKE_CURRENT_BINARY_DIR}/${name}.registration"
        PYL_MODULE_FOLDER="$<TARGET_FILE_DIR:${name}>")
    add_dependencies(${name}_test ${name} ${name}_registration)
    include(GoogleTest)
    foreach(folder IN ITEMS "${CMAKE_CURRENT_SOURCE_DIR}" "${CMAKE_SOURCE_DIR}")
        cmake_language(DEFER DIRECTORY "${folder}" CALL enable_testing)  # a function has a scope of its own
    endforeach()
    gtest_discover_tests(${name}_test DISCOVERY_TIMEOUT 60
        WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")  # where the MOF is
endfunction()
