# Of a build for another architecture only test programs are run, each whole in one emulator, which starts slowly.

# Where the highest byte of a number comes first: those that read and write bytes, and no others.
set(PYL_SUITES_OF_BYTES
    cmpi_test
    platform_host_test
    platform_ipmi_test
    platform_smbios_test
    test_cimhost_objects
    test_cimhost_repository
    test_cmpicpp
    test_common)

# Left out in every program, each with the reason why.
set(PYL_TESTS_NOT_EMULATED
    # as much work as all others together
    "FaultRows.*"
    "MofBombs.*"
    "RemoveReferences.TakesAMillionAmpersandsInOnePass"
    "XmlDocument.BoundsTheMemoryOfNamesAndTokens"
    # start a program of ours, which the kernel knows nothing of
    "ModuleProcess*"
    "NewCommandTest.*"
    "PlainIndication.CountsFromOne"
    "ProgramTest.*"
    "StandInTest.*"
    "SimulatedController*"  # a module of ours, in the simulator of this machine
    # look at the pace of clients, and at what is said of a crash, to which the emulator adds its own
    "HttpServer.*"
    "ModuleCheckTest.SurvivesAModuleThatCrashesLeavesOrThrowsWhenItIsLoaded")

add_custom_target(emulated_tests)

# Sets `result` to whether this build runs the program.
function(pyl_judge_bytes program result)
    set(${result} ON PARENT_SCOPE)
    if(CMAKE_CXX_BYTE_ORDER STREQUAL "BIG_ENDIAN" AND NOT program IN_LIST PYL_SUITES_OF_BYTES)
        set(${result} OFF PARENT_SCOPE)
    endif()
endfunction()

function(pyl_add_emulated_test program)
    list(JOIN PYL_TESTS_NOT_EMULATED ":" left_out)
    add_test(NAME ${program} COMMAND ${program} --gtest_filter=-${left_out})
    set_tests_properties(${program} PROPERTIES TIMEOUT 900 COST 100)
    add_dependencies(emulated_tests ${program})
endfunction()
