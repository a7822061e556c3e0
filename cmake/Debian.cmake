# A toolchain file: Debian's compiler for another of its architectures, PYL_ARCHITECTURE, the libraries that
# packaging/sysroot gets for it, and the emulator that runs what is built, as the presets arm64 and s390x have them.
set(CMAKE_SYSTEM_NAME Linux)
if(PYL_ARCHITECTURE STREQUAL "arm64")
    set(CMAKE_SYSTEM_PROCESSOR aarch64)
else()
    set(CMAKE_SYSTEM_PROCESSOR "${PYL_ARCHITECTURE}")
endif()
set(CMAKE_C_COMPILER "${CMAKE_SYSTEM_PROCESSOR}-linux-gnu-gcc")
set(CMAKE_CXX_COMPILER "${CMAKE_SYSTEM_PROCESSOR}-linux-gnu-g++")

# What tries the compiler reads this file again.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PYL_ARCHITECTURE PYL_SYSROOT)
if(NOT EXISTS "${PYL_SYSROOT}")
    execute_process(
        COMMAND "${CMAKE_CURRENT_LIST_DIR}/../packaging/sysroot" "${PYL_ARCHITECTURE}"
        OUTPUT_VARIABLE sysroot OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(PYL_SYSROOT "${sysroot}" CACHE PATH "Libraries of the other architecture" FORCE)
endif()
set(CMAKE_SYSROOT "${PYL_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind LIBRARY INCLUDE PACKAGE)
    set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-${CMAKE_SYSTEM_PROCESSOR}" -L "${PYL_SYSROOT}")
