#pragma once

#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/ProfileDB.h"
#include "providers/profiles/ProfilesProvider.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// The provider of the elements that conform to profiles. What it names, a test says; a class that
/// is not here has none.
class Elements : public CmpiCpp::CmpiInstanceProvider {
public:
    using Ids = std::vector<std::string>;

    explicit Elements(CMPIBroker* broker) : _broker(broker) {}

    std::map<std::string, std::function<Ids()>> ids;
    std::vector<std::string> asked;  ///< the classes
    std::function<void()> onGet = [] {};

    CMPIBroker* getBroker() override { return _broker; }
    void enumInstanceNames(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath& path,
                           CmpiCpp::CmpiObjectPathResult& result) override {
        const auto name = path.getClassName().str();
        asked.push_back(name);
        if (!ids.contains(name)) return;
        for (const auto& id : ids.at(name)()) {
            auto made = CmpiCpp::makeCmpiObjectPath(PYL::localBroker(), "root/ktq", name);
            made.addKey("Id", id);
            result.deliver(made);
        }
    }
    void enumInstances(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&, const char**,
                       CmpiCpp::CmpiInstanceResult&) override {}
    void getInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath& path, const char**,
                     CmpiCpp::CmpiInstanceResult& result) override {
        onGet();
        auto instance = PYL::makeInstanceAt(path);
        instance.setProperty("ElementName", "from its provider");
        result.deliver(instance);
    }

private:
    CMPIBroker* _broker;
};

/// A host with the profiles' classes and elements: a computer system, two fans.
struct ProfilesFixture : testing::Test {
    using Path = cimtest::Path;
    using Paths = std::vector<Path>;
    using Lines = std::vector<std::string>;

    cimtest::FakeHost machine;
    cimtest::ProviderHost host{"root/ktq", {"base/base.mof", "PYL_Profiles.mof"}};
    Elements* elements = nullptr;

    ProfilesFixture() {
        host.readMof("base/base.mof", "interop");
        host.readMof("PYL_Profiles.mof", "interop");
        host.readMofText(R"(
class PYL_ComputerSystem : CIM_ManagedElement { [Key] string Id; };
class PYL_BladeServer : PYL_ComputerSystem {};
class PYL_Fan : CIM_ManagedElement { [Key] string Id; };)");
        elements = &host.serve(std::make_unique<Elements>(host.broker().toRawCMPI()),
                               {"PYL_ComputerSystem", "PYL_Fan"});
        elements->ids["PYL_ComputerSystem"] = [] { return Elements::Ids{"s"}; };
    }

    static Path profile(const std::string& id) {
        return "interop:PYL_RegisteredProfile.InstanceID=\"KTQ:" + id + "\"";
    }
    static Path element(const std::string& className, const std::string& id) {
        return "root/ktq:" + className + ".Id=\"" + id + "\"";
    }
    static std::shared_ptr<const PYL::ProfileDB> catalogue(Logger& log) {
        const auto made = std::make_shared<PYL::ProfileDB>(log);
        made->initialize();
        return made;
    }
};
