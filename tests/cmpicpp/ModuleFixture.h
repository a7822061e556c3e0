#pragma once

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiModule.h"
#include "tests/cmpicpp/BrokerFixture.h"
#include "tests/cmpicpp/RecordingSink.h"
#include "tests/cmpicpp/ScriptProvider.h"

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

// The entry points of the module in CmpiModule_test.cpp.
extern "C" {
CMPIInstanceMI* Test_Provider_Create_InstanceMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
CMPIAssociationMI* Test_Provider_Create_AssociationMI(const CMPIBroker*, const CMPIContext*,
                                                      CMPIStatus*);
CMPIMethodMI* Test_Provider_Create_MethodMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
CMPIIndicationMI* Test_Provider_Create_IndicationMI(const CMPIBroker*, const CMPIContext*,
                                                    CMPIStatus*);
}

namespace CmpiCpp::test {

/// What the current test's provider objects do, and what became of them.
inline Script* script = nullptr;

using Maker = CmpiProvider* (*)(const CmpiBroker& broker);

inline CmpiProvider* makeEverything(const CmpiBroker& broker) {
    return new ScriptProvider(const_cast<CMPIBroker*>(broker.toCMPI()), *script);
}

/// What the module's factory does next.
inline Maker maker = makeEverything;

struct DerivedStatus : CmpiStatus {
    DerivedStatus() : CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "derived") {}
};

struct Thrown {
    const char* what;
    std::function<void()> act;
    CMPIrc rc;
    const char* message;
};

inline std::vector<Thrown> everythingThatIsThrown() {
    return {
        {"CmpiStatus", [] { throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such fan"); },
         CMPI_RC_ERR_NOT_FOUND, "no such fan"},
        {"CmpiStatus without a text", [] { throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND); },
         CMPI_RC_ERR_NOT_FOUND, ""},
        {"CmpiStatus that claims success", [] { throw CmpiStatus(CMPI_RC_OK, "odd"); },
         CMPI_RC_ERR_FAILED, "odd"},
        {"derived CmpiStatus", [] { throw DerivedStatus(); }, CMPI_RC_ERR_ACCESS_DENIED, "derived"},
        {"std::exception", [] { throw std::runtime_error("text"); }, CMPI_RC_ERR_FAILED, "text"},
        {"std::bad_alloc", [] { throw std::bad_alloc(); }, CMPI_RC_ERR_FAILED, "std::bad_alloc"},
        {"int", [] { throw 42; }, CMPI_RC_ERR_FAILED, "unknown exception"},
    };
}

/// A module with the current script, all its MIs, and what an object manager passes to them.
class ModuleTest : public BrokerTest {
protected:
    ModuleTest() {
        script = &_script;
        maker = makeEverything;
        _request.principal = "alice";
        _context = cimhost::makeContext(realBroker, _request);
        _result = cimhost::makeResult(realBroker, _sink);
        _path = cimhost::makeObjectPath(realBroker, {"", "root/ktq", "PYL_Fan", {}});
        _instance = cimhost::makeInstance(realBroker, {{"", "root/ktq", "PYL_Fan", {}}, {}});
        _in = cimhost::makeArgs(realBroker, {{"A", cimhost::Value::boolean(true)}});
        _out = cimhost::makeArgs(realBroker, {});
    }

    /// Ends every MI that is still there, as an object manager does that ends itself.
    void TearDown() override {
        clean(_instanceMi, 1);
        clean(_associationMi, 1);
        clean(_methodMi, 1);
        clean(_indicationMi, 1);
        EXPECT_EQ(_script.made, _script.deleted);
        BrokerTest::TearDown();
    }

    void createAll() {
        _instanceMi = Test_Provider_Create_InstanceMI(handle(), _context, nullptr);
        _associationMi = Test_Provider_Create_AssociationMI(handle(), _context, nullptr);
        _methodMi = Test_Provider_Create_MethodMI(handle(), _context, nullptr);
        _indicationMi = Test_Provider_Create_IndicationMI(handle(), _context, nullptr);
        ASSERT_TRUE(_instanceMi && _associationMi && _methodMi && _indicationMi);
    }

    /// Cleans an MI up; it is forgotten when the answer says that it is gone.
    template <typename Mi>
    CMPIStatus clean(Mi*& mi, CMPIBoolean terminating) {
        if (!mi) return {CMPI_RC_OK, nullptr};
        const CMPIStatus status = mi->ft->cleanup(mi, _context, terminating);
        if (status.rc != CMPI_RC_DO_NOT_UNLOAD && status.rc != CMPI_RC_NEVER_UNLOAD) mi = nullptr;
        return status;
    }

    static std::string text(const CMPIStatus& status) {
        return !status.msg ? "" : status.msg->ft->getCharPtr(status.msg, nullptr);
    }

    static void expectStatus(const CMPIStatus& status, CMPIrc rc, const std::string& message,
                             const std::string& note = "") {
        EXPECT_EQ(status.rc, rc) << note;
        EXPECT_EQ(text(status), message) << note;
    }

    Script _script;
    cimhost::RequestContext _request;
    RecordingSink _sink;
    CMPIContext* _context = nullptr;
    CMPIResult* _result = nullptr;
    CMPIObjectPath* _path = nullptr;
    CMPIInstance* _instance = nullptr;
    CMPIArgs* _in = nullptr;
    CMPIArgs* _out = nullptr;
    CMPIInstanceMI* _instanceMi = nullptr;
    CMPIAssociationMI* _associationMi = nullptr;
    CMPIMethodMI* _methodMi = nullptr;
    CMPIIndicationMI* _indicationMi = nullptr;
};

}  // namespace CmpiCpp::test
