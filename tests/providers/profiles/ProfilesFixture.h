#pragma once

#include "cimhost/objects/Objects.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/ProfileDB.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A broker whose up-calls for the names of a class are answered by the test.
struct ProfilesFixture : testing::Test {
    using CmpiObjectPath = CmpiCpp::CmpiObjectPath;

    TestBroker host{{{"CIM_RegisteredProfile", ""},
                     {"PYL_RegisteredProfile", "CIM_RegisteredProfile"},
                     {"CIM_Dependency", ""},
                     {"CIM_ReferencedProfile", "CIM_Dependency"},
                     {"PYL_ReferencedProfile", "CIM_ReferencedProfile"},
                     {"PYL_ExtendsProfile", "CIM_Dependency"},
                     {"CIM_ElementConformsToProfile", ""},
                     {"PYL_ElementConformsToProfile", "CIM_ElementConformsToProfile"},
                     {"CIM_ComputerSystem", ""},
                     {"PYL_ComputerSystem", "CIM_ComputerSystem"},
                     {"PYL_BladeServer", "PYL_ComputerSystem"},
                     {"PYL_Fan", ""},
                     {"PYL_PXDataCollection", ""}}};
    JournalLog log;
    Journal& journal = *log.journal;
    CapturedPaths paths{journal};
    CapturedInstances instances{journal};
    CapturedMethodResult method{journal};

    /// What the provider of a class answers; a class that is not here is served by nobody.
    std::map<std::string, std::function<std::vector<CmpiObjectPath>()>> elements;
    /// The classes that were asked for.
    std::vector<std::string> asked;

    ProfilesFixture() {
        current = this;
        _functions = *host.real()->bft;
        _functions.enumerateInstanceNames = _upCall;
        _broker = *host.real();
        _broker.bft = &_functions;
        host.use(&_broker);
    }
    ~ProfilesFixture() override { current = nullptr; }

    /// A path with one key, "Id", as its provider gives it: without a host.
    CmpiObjectPath element(const char* className, const std::string& id) {
        return host.path("root/ktq", className, id, "");
    }
    CmpiObjectPath classPath(const char* nameSpace, const char* className) {
        return CmpiCpp::makeCmpiObjectPath(host.broker(), nameSpace, className);
    }
    CmpiObjectPath profilePath(const std::string& id) {
        auto path = classPath("interop", "PYL_RegisteredProfile");
        path.addKey("InstanceID", "KTQ:" + id);
        return path;
    }
    static std::shared_ptr<const PYL::ProfileDB> catalogue(Logger& log) {
        const auto made = std::make_shared<PYL::ProfileDB>(log);
        made->initialize();
        return made;
    }

    static std::string profileText(const std::string& id) {
        return "//server-1/interop:PYL_RegisteredProfile.InstanceID=\"KTQ:" + id + "\"";
    }
    static std::string elementText(const std::string& className, const std::string& id) {
        return "//server-1/root/ktq:" + className + ".Id=\"" + id + "\"";
    }

    /// What was delivered since the last call, of all that happened.
    Lines delivered() { return only("delivered "); }
    Lines warnings() { return only("warning: "); }
    Lines only(const std::string& prefix) {
        Lines found;
        for (const auto& line : journal.take()) {
            if (line.starts_with(prefix)) found.push_back(line.substr(prefix.size()));
        }
        return found;
    }

private:
    static CMPIEnumeration* _upCall(const CMPIBroker*, const CMPIContext*,
                                    const CMPIObjectPath* path, CMPIStatus* status);

    static inline ProfilesFixture* current = nullptr;  // C callbacks have no room for a this
    CMPIBrokerFT _functions;
    CMPIBroker _broker;
};

inline CMPIEnumeration* ProfilesFixture::_upCall(const CMPIBroker* broker, const CMPIContext*,
                                                 const CMPIObjectPath* path, CMPIStatus* status) {
    using CmpiCpp::CmpiHandle;
    const auto refuse = [&](CMPIrc rc, const std::string& text) -> CMPIEnumeration* {
        *status = {rc, broker->eft->newString(broker, text.c_str(), nullptr)};
        return nullptr;
    };
    const auto name =
        CmpiObjectPath(CmpiHandle<CMPIObjectPath>::borrowed(broker, path)).getClassName().str();
    current->asked.push_back(name);
    const auto answer = current->elements.find(name);
    if (answer == current->elements.end()) {
        return refuse(CMPI_RC_ERR_INVALID_CLASS, "no class " + name);
    }
    try {
        std::vector<cimhost::ObjectPath> found;
        for (const auto& each : answer->second()) found.push_back(cimhost::modelOf(each.toCMPI()));
        *status = {CMPI_RC_OK, nullptr};
        return cimhost::makeEnumeration(cimhost::Broker::of(broker), std::move(found));
    } catch (const CmpiCpp::CmpiStatus& refusal) {
        return refuse(refusal.rc(), refusal.what());
    }
}
