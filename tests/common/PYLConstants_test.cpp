#include "common/PYLConstants.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using std::string_view;

static_assert(string_view(PYL::ScopedCentralClassName) == "PYL_ComputerSystem");
static_assert(string_view(PYL::ScopedFCHBACentralClassName) == "PYL_FCHBAComputerSystem");
static_assert(string_view(PYL::PCIDeviceClassName) == "PYL_PCIDevice");
static_assert(string_view(PYL::ChassisClassName) == "PYL_ComputerSystemChassis");
static_assert(string_view(PYL::WorkerMethodName) == "PerformWork");
static_assert(string_view(PYL::PersistentDataDir) == "/etc/cim/");
static_assert(string_view(PYL::OrgNameKT) == "KT WBEM TC");
static_assert(string_view(PYL::OrgNameNA).empty());
static_assert(string_view(PYL::BaseServerNameSpace) == "root/ktq");
static_assert(string_view(PYL::PRPRegisteredClassName) == "PYL_RegisteredProfile");

// A static of another module that is made from the shared global before main().
const char* const takenEarly = PYL::PRPNameSpace;

TEST(PYLConstants, ShareTheProfileNamespaceBeforeMain) {
    EXPECT_STREQ(PYL::PRPNameSpace, "interop");
    EXPECT_STREQ(takenEarly, "interop");
}

}  // namespace
