#include "AcmeThingProvider.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <memory>

namespace {

class AcmeThingProviderTest : public testing::Test {
protected:
    AcmeThingProviderTest() {
        const auto source = [this] { return _things; };
        _host.serve(std::make_unique<AcmeThingProvider>(_host.broker(), _host.logger(), source),
                    {"ACME_Thing"});
    }

    std::vector<AcmeThing> _things;
    cimtest::ProviderHost _host{"root/ktq", {"base/base.mof", "AcmeThing.mof"}};
};

TEST_F(AcmeThingProviderTest, ShowsAllOfThem) {
    EXPECT_EQ(_host.names("ACME_Thing").size(), 0U);
    _things = {{"left", 40}, {"right", 42}};
    EXPECT_EQ(_host.names("ACME_Thing").size(), 2U);
}

TEST_F(AcmeThingProviderTest, TellsTheTemperature) {
    _things = {{"left", 40}};
    const auto thing = _host.get(R"(ACME_Thing.InstanceID="ACME:Thing:left")");
    EXPECT_EQ(thing["Temperature"], 40);
}

TEST_F(AcmeThingProviderTest, MissesOneThatIsGone) {
    EXPECT_EQ(cimtest::failureOf([&] {
                  _host.get(R"(ACME_Thing.InstanceID="ACME:Thing:left")");
              }).substr(0, 2),
              "6 ");
}

}  // namespace
