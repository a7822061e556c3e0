#include "cmpicpp/CmpiModule.h"
#include "common/CmpiManagedInstance.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/LoggedModule.h"
#include "toolkit/Properties.h"

#include <memory>
#include <string>

namespace {

using CmpiCpp::CmpiBroker;

constexpr int members = 1000;
constexpr std::size_t textBytes = 9000;

class Member : public PYL::CmpiManagedInstance {
public:
    explicit Member(int number) : _name("member-" + std::to_string(number)) {}

    CmpiCpp::CmpiName getClassName() override { return "TST_Member"; }

    CmpiCpp::CmpiObjectPath getPath() override {
        return PYL::makeLocalPath("TST_Member", {{"Name", _name}});
    }

    CmpiCpp::CmpiInstance getInstance() override {
        auto instance = PYL::makeInstanceAt(getPath());
        PYL::setKnown(instance, "Text", std::string(textBytes, 'x'));
        return instance;
    }

private:
    std::string _name;
};

class CrowdProvider : public PYL::CollectionProvider {
public:
    CrowdProvider(const CmpiBroker& broker, Logger& log) : CollectionProvider(broker, log) {
        for (int i = 0; i < members; ++i) add(_instances, std::make_unique<Member>(i));
    }
};

CmpiCpp::CmpiProvider* makeProvider(const CmpiBroker& broker, const CMPIContext*) {
    return PYL::makeLoggedProvider<CrowdProvider>(broker, "Crowd");
}

}  // namespace

PYL_CMPI_PROVIDER(CrowdProvider, makeProvider)
