# The page of cimhost, which npm's packages and the sources below console/ make, becomes part of the program.
# Beside the compiler that takes node, npm and, once, npm's registry: without the first two there is no page,
# and the server says so to whoever asks for it.

option(PYL_CONSOLE "Build the page of cimhost, where node and npm are found" ON)
find_program(PYL_NODE NAMES node nodejs)
find_program(PYL_NPM npm)
mark_as_advanced(PYL_NODE PYL_NPM)

# Adds what defines builtConsole() to the target. pyl_add_console(TARGET SOURCE_WITHOUT_A_PAGE)
function(pyl_add_console target source_without)
    set(console "${PYL_ROOT}/console")
    if(NOT PYL_CONSOLE OR NOT PYL_NODE OR NOT PYL_NPM)
        message(STATUS "No console: it takes node, npm and PYL_CONSOLE=ON")
        target_sources(${target} PRIVATE ${source_without})
        return()
    endif()

    # All of it is built on a copy: packages lie beside the sources that use them, and those are the user's.
    set(work "${CMAKE_BINARY_DIR}/console")
    set(scripts "${PYL_ROOT}/cmake/console")
    set(omitted --omit=dev)
    if(PYL_BUILD_TESTS)
        set(omitted --include=dev)
    endif()
    add_custom_command(
        OUTPUT "${work}/packages.stamp"
        COMMAND "${CMAKE_COMMAND}" -D "NPM=${PYL_NPM}" -D "OMITTED=${omitted}" -D "CONSOLE=${console}" -D "WORK=${work}"
                -P "${scripts}/packages.cmake"
        DEPENDS "${console}/package.json" "${console}/package-lock.json" "${console}/.npmrc" "${scripts}/packages.cmake"
        COMMENT "Installing the console's packages"
        VERBATIM)

    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${console}/src/*")
    add_custom_command(
        OUTPUT "${work}/BuiltConsole.cpp"
        COMMAND "${CMAKE_COMMAND}" -D "NODE=${PYL_NODE}" -D "CONSOLE=${console}" -D "WORK=${work}" -P "${scripts}/page.cmake"
        DEPENDS "${work}/packages.stamp" "${console}/build.mjs" "${console}/tsconfig.json" ${sources}
                "${scripts}/page.cmake"
        COMMENT "Building the console"
        VERBATIM)
    target_sources(${target} PRIVATE "${work}/BuiltConsole.cpp")
    # A table of hundreds of thousands of numbers, which others need not be compiled again with.
    set_source_files_properties("${work}/BuiltConsole.cpp" PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
