# Installs what package-lock.json names beside a copy of it: NPM, OMITTED, CONSOLE and WORK are given.
# Asks npm's registry for what its cache lacks; no package runs a program of its own meanwhile.
file(COPY "${CONSOLE}/package.json" "${CONSOLE}/package-lock.json" "${CONSOLE}/.npmrc" DESTINATION "${WORK}")
execute_process(
    COMMAND "${NPM}" ci ${OMITTED} --ignore-scripts --prefer-offline --no-audit --no-fund --loglevel=error
    WORKING_DIRECTORY "${WORK}"
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR
        "The packages of the console could not be installed; npm's words are above. "
        "Without network, configure with -DPYL_CONSOLE=OFF: cimhost then has no page.")
endif()
file(TOUCH "${WORK}/packages.stamp")
