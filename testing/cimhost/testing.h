#pragma once

/// @file
/// The harness for modules behind the C interface, in whatever language. `<pylcommon/testing.h>`
/// has it too, and more for those that are built on the library.

#include "cimhost/testing/Allocations.h"
#include "cimhost/testing/Clock.h"
#include "cimhost/testing/Host.h"
#include "cimhost/testing/HostName.h"

#ifdef GTEST_NONFATAL_FAILURE_
namespace cimtest {
/// GoogleTest is here: a failure that cannot be thrown is one of the test that runs.
inline const bool tellsGoogleTest = [] {
    setLateFailure([](const std::string& words) { ADD_FAILURE() << words; });
    return true;
}();
}  // namespace cimtest
#endif
