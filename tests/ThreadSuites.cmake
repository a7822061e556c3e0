# The thread sanitizer makes a suite many times slower, so it runs those that have something to find: what is
# called from several threads, or starts one. Every test program stands in one of the two lists.

set(PYL_SUITES_WITH_THREADS
    platform_ipmi_test  # the simulator's thread, reads with deadlines
    platform_logger_test
    platform_smbios_test
    test_baseserver
    test_cimhost_cimxml
    test_cimhost_client
    test_cimhost_http
    test_cimhost_indications
    test_cimhost_isolation
    test_cimhost_modules
    test_cimhost_objects
    test_cimhost_operations
    test_cimhost_repository
    test_cimhost_server
    test_cmpicpp
    test_common
    test_consolidatedstatus
    test_fan
    test_profiles
    test_testing
    test_toolkit)

# Left out, each with the reason why no two threads ever meet in it.
set(PYL_SUITES_WITHOUT_THREADS
    cmpi_system_test         # declarations of C
    cmpi_test                # the same, and a provider in C called from one thread
    platform_host_test       # readers make a new record for each caller
    test_cimhost_mof         # a reader belongs to one thread, and runs before the server starts any
    test_cimhost_query       # conditions are constant once parsed
    test_guests              # each guest is called from one thread
    test_faulty_broker)      # a double that tests use from one thread

# Left out of the others: as much work as all the rest together, each on one thread alone.
set(PYL_CASES_OF_ONE_THREAD
    "DataStoreTwins.*"
    "DataStoreTxtTest.ReadsAHugeFileWithoutLineEnds"
    "FaultRows.*"
    "RemoveReferences.TakesAMillionAmpersandsInOnePass"
    "Utf8.IsRightForEveryCodePoint"
    "XmlBuffer.TreatsEachByteAlikeWhereverItStands"
    "XmlDocument.BoundsTheMemoryOfNamesAndTokens")

# Sets `result` to whether this build runs the program.
function(pyl_judge_threads program result)
    set(${result} ON PARENT_SCOPE)
    if(program IN_LIST PYL_SUITES_WITH_THREADS)
        return()
    elseif(NOT program IN_LIST PYL_SUITES_WITHOUT_THREADS)
        message(FATAL_ERROR "tests/ThreadSuites.cmake does not say whether ${program} has threads.")
    elseif(PYL_SANITIZE STREQUAL "thread")
        set(${result} OFF PARENT_SCOPE)
    endif()
endfunction()

# Sets `result` to what a whole program is told to leave out of its cases.
function(pyl_leave_out_cases result)
    set(${result} "" PARENT_SCOPE)
    if(PYL_SANITIZE STREQUAL "thread")
        list(JOIN PYL_CASES_OF_ONE_THREAD ":" left_out)
        set(${result} "--gtest_filter=-${left_out}" PARENT_SCOPE)
    endif()
endfunction()
