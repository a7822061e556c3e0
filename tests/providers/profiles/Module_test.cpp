// The module as an object manager loads it: through its C entry points alone.

#include "cimhost/objects/Objects.h"
#include "common/PYLUtil.h"
#include "tests/providers/profiles/ProfilesFixture.h"

#include <dlfcn.h>

#include <memory>
#include <string>

namespace {

struct Results : cimhost::ResultSink {
    void path(const cimhost::ObjectPath&) override { ++paths; }
    int paths = 0;
};

struct Close {
    void operator()(void* handle) const { ::dlclose(handle); }
};

struct ProfilesModule : ProfilesFixture {};

TEST_F(ProfilesModule, AnswersThroughTheEntryPointsOfItsProvider) {
    const std::unique_ptr<void, Close> module(::dlopen(PYL_PROFILES_MODULE, RTLD_NOW | RTLD_LOCAL));
    ASSERT_NE(module, nullptr) << ::dlerror();
    for (const auto* kind : {"Instance", "Association", "Method"}) {
        const auto name = std::string("PYL_ProfilesProvider_Create_") + kind + "MI";
        EXPECT_NE(::dlsym(module.get(), name.c_str()), nullptr) << name;
    }
    using Create = CMPIInstanceMI* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
    const auto create =
        reinterpret_cast<Create>(::dlsym(module.get(), "PYL_ProfilesProvider_Create_InstanceMI"));
    ASSERT_NE(create, nullptr);
    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    const auto* const context = host.context().toCMPI();
    testing::internal::CaptureStderr();
    auto* const mi = create(host.real(), context, &status);
    ASSERT_NE(mi, nullptr);
    EXPECT_EQ(PYL::PYLUtil::getBroker(), host.real());
    Results results;
    const auto path = classPath("interop", "PYL_RegisteredProfile");
    EXPECT_EQ(mi->ft
                  ->enumerateInstanceNames(
                      mi, context, cimhost::makeResult(cimhost::Broker::of(host.real()), results),
                      path.toCMPI())
                  .rc,
              CMPI_RC_OK);
    EXPECT_EQ(results.paths, 49);
    EXPECT_EQ(mi->ft->cleanup(mi, context, 1).rc, CMPI_RC_OK);
    const auto lines = testing::internal::GetCapturedStderr();
    EXPECT_NE(lines.find("PYL_Profiles: information: returned 49 objects from enumInstanceNames()"),
              std::string::npos)
        << lines;
}

}  // namespace
