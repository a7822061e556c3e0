#include "cmpicpp/CmpiModule.h"

#include "tests/cmpicpp/ModuleFixture.h"

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace CmpiCpp::test {
namespace {

CmpiProvider* makeNext(const CmpiBroker& broker, const CMPIContext*) { return maker(broker); }

/// Runs methods and nothing else.
class MethodsOnly : public CmpiMethodProvider {
public:
    MethodsOnly() { ++script->made; }
    ~MethodsOnly() override { ++script->deleted; }
    void invokeMethod(const CmpiContext&, const CmpiObjectPath&, const CmpiName&, const CmpiArgs&,
                      CmpiMethodResult&) override {}
    void cleanup(const CmpiContext&, bool) override { ++script->cleaned; }
    CMPIBroker* getBroker() override { return nullptr; }
};

class CmpiModuleTest : public ModuleTest {};

}  // namespace
}  // namespace CmpiCpp::test

PYL_CMPI_PROVIDER(Test_Provider, CmpiCpp::test::makeNext)

namespace CmpiCpp::test {
namespace {

TEST_F(CmpiModuleTest, SharesOneObjectAmongTheKinds) {
    createAll();
    EXPECT_EQ(_script.made, 1);
}

TEST_F(CmpiModuleTest, ReportsSuccess) {
    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    _instanceMi = Test_Provider_Create_InstanceMI(handle(), _context, &status);
    expectStatus(status, CMPI_RC_OK, "");
}

TEST_F(CmpiModuleTest, TheLastMiEndsTheObject) {
    createAll();
    EXPECT_EQ(clean(_instanceMi, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(clean(_associationMi, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(clean(_methodMi, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(_script.cleaned, 0);
    EXPECT_EQ(clean(_indicationMi, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(_script.cleaned, 1);
    EXPECT_EQ(_script.deleted, 1);
    EXPECT_FALSE(_script.terminating);
}

TEST_F(CmpiModuleTest, MakesAnotherObjectAfterTheEndOfOne) {
    createAll();
    TearDown();
    createAll();
    EXPECT_EQ(_script.made, 2);
}

TEST_F(CmpiModuleTest, StaysWhileTheProviderWantsTo) {
    createAll();
    _script.unloadAnswer = 1;
    expectStatus(clean(_methodMi, 0), CMPI_RC_DO_NOT_UNLOAD, "");
    _script.unloadAnswer = 2;
    expectStatus(clean(_methodMi, 0), CMPI_RC_NEVER_UNLOAD, "");
    _script.unloadAnswer = 3;
    expectStatus(clean(_methodMi, 0), CMPI_RC_DO_NOT_UNLOAD, "");
    EXPECT_EQ(
        _methodMi->ft->invokeMethod(_methodMi, _context, _result, _path, "Reset", _in, _out).rc,
        CMPI_RC_OK)
        << "the MI still works";
    _script.unloadAnswer = 0;
    EXPECT_EQ(clean(_methodMi, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(_methodMi, nullptr);
}

TEST_F(CmpiModuleTest, EndsWithTheObjectManagerWhateverTheProviderWants) {
    _methodMi = Test_Provider_Create_MethodMI(handle(), _context, nullptr);
    _script.unloadAnswer = 2;
    EXPECT_EQ(clean(_methodMi, 0x80).rc, CMPI_RC_OK);
    EXPECT_TRUE(_script.terminating);
    EXPECT_EQ(_script.deleted, 1);
}

TEST_F(CmpiModuleTest, EndsEvenWhenTheCleanUpFails) {
    for (const Thrown& thrown : everythingThatIsThrown()) {
        _methodMi = Test_Provider_Create_MethodMI(handle(), _context, nullptr);
        _script.clean = thrown.act;
        expectStatus(clean(_methodMi, 0), thrown.rc, thrown.message, thrown.what);
        EXPECT_EQ(_script.made, _script.deleted);
    }
}

TEST_F(CmpiModuleTest, AnMiThatIsGoneCannotAskToBeKept) {
    for (const CMPIrc rc : {CMPI_RC_DO_NOT_UNLOAD, CMPI_RC_NEVER_UNLOAD}) {
        _methodMi = Test_Provider_Create_MethodMI(handle(), _context, nullptr);
        _script.clean = [rc] { throw CmpiStatus(rc, "too late"); };
        expectStatus(_methodMi->ft->cleanup(_methodMi, _context, 1), CMPI_RC_ERR_FAILED,
                     "too late");
        _methodMi = nullptr;
    }
}

TEST_F(CmpiModuleTest, AnUnloadQuestionThatFailsEndsTheMi) {
    createAll();
    _script.unload = [] { throw CmpiStatus(CMPI_RC_ERR_FAILED, "no idea"); };
    expectStatus(clean(_methodMi, 0), CMPI_RC_ERR_FAILED, "no idea");
    EXPECT_EQ(_methodMi, nullptr);
    EXPECT_EQ(_script.deleted, 0) << "the others live on";
}

TEST_F(CmpiModuleTest, AKindThatTheObjectIsNotIsNotSupported) {
    maker = [](const CmpiBroker&) -> CmpiProvider* { return new MethodsOnly; };
    CMPIStatus status{CMPI_RC_OK, nullptr};
    EXPECT_EQ(Test_Provider_Create_InstanceMI(handle(), _context, &status), nullptr);
    expectStatus(status, CMPI_RC_ERR_NOT_SUPPORTED, "Test_Provider is no instance provider");
    EXPECT_EQ(_script.deleted, 1) << "nobody would have cleaned up";
    EXPECT_EQ(_script.cleaned, 1);

    _methodMi = Test_Provider_Create_MethodMI(handle(), _context, &status);
    expectStatus(status, CMPI_RC_OK, "");
    EXPECT_EQ(Test_Provider_Create_AssociationMI(handle(), _context, &status), nullptr);
    expectStatus(status, CMPI_RC_ERR_NOT_SUPPORTED, "Test_Provider is no association provider");
    EXPECT_EQ(Test_Provider_Create_IndicationMI(handle(), _context, nullptr), nullptr);
    EXPECT_EQ(_script.made - _script.deleted, 1) << "the method MI keeps its object";
}

TEST_F(CmpiModuleTest, AFactoryMayFailAndIsAskedAgain) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    maker = [](const CmpiBroker&) -> CmpiProvider* { return nullptr; };
    EXPECT_EQ(Test_Provider_Create_MethodMI(handle(), _context, &status), nullptr);
    expectStatus(status, CMPI_RC_ERR_FAILED, "Test_Provider: there is no provider object");
    maker = [](const CmpiBroker&) -> CmpiProvider* {
        throw CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "no hardware");
    };
    EXPECT_EQ(Test_Provider_Create_MethodMI(handle(), _context, &status), nullptr);
    expectStatus(status, CMPI_RC_ERR_ACCESS_DENIED, "no hardware");
    EXPECT_EQ(Test_Provider_Create_MethodMI(handle(), _context, nullptr), nullptr);
    maker = makeEverything;
    _methodMi = Test_Provider_Create_MethodMI(handle(), _context, &status);
    expectStatus(status, CMPI_RC_OK, "");
}

TEST_F(CmpiModuleTest, FailsWithoutATextWhereThereIsNoBroker) {
    maker = [](const CmpiBroker&) -> CmpiProvider* { throw std::runtime_error("text"); };
    CMPIStatus status{CMPI_RC_OK, nullptr};
    EXPECT_EQ(Test_Provider_Create_MethodMI(nullptr, nullptr, &status), nullptr);
    expectStatus(status, CMPI_RC_ERR_FAILED, "");
}

TEST_F(CmpiModuleTest, FailsWithoutATextWhereTheBrokerThrowsForIt) {
    CMPIBrokerEncFT throwing = *handle()->eft;
    throwing.newString = [](const CMPIBroker*, const char*, CMPIStatus*) -> CMPIString* {
        throw 1;
    };
    CMPIBroker broker = *handle();
    broker.eft = &throwing;
    maker = [](const CmpiBroker&) -> CmpiProvider* {
        throw CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "no hardware");
    };
    CMPIStatus status{CMPI_RC_OK, nullptr};
    EXPECT_EQ(Test_Provider_Create_MethodMI(&broker, _context, &status), nullptr);
    expectStatus(status, CMPI_RC_ERR_ACCESS_DENIED, "");
}

TEST_F(CmpiModuleTest, MakesOneObjectForEntryPointsThatAreCalledAtOnce) {
    constexpr std::size_t count = 8;
    std::vector<CMPIMethodMI*> all(count);
    std::vector<std::thread> threads;
    for (std::size_t index = 0; index < count; ++index) {
        threads.emplace_back([this, &all, index] {
            all[index] = Test_Provider_Create_MethodMI(handle(), nullptr, nullptr);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(_script.made, 1);

    threads.clear();
    for (CMPIMethodMI* const mi : all) {
        ASSERT_NE(mi, nullptr);
        threads.emplace_back([mi] { mi->ft->cleanup(mi, nullptr, 0); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(_script.cleaned, 1);
    EXPECT_EQ(_script.deleted, 1);
}

TEST_F(CmpiModuleTest, HandsOutOneMiAKindHoweverOftenItIsAsked) {
    createAll();
    CMPIMethodMI* const again = Test_Provider_Create_MethodMI(handle(), _context, nullptr);
    EXPECT_EQ(again, _methodMi);
    clean(_instanceMi, 0);
    clean(_associationMi, 0);
    clean(_indicationMi, 0);
    EXPECT_EQ(clean(_methodMi, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(_script.cleaned, 1) << "one clean-up a kind is all that there may be";
    EXPECT_EQ(_script.deleted, 1);
}

TEST_F(CmpiModuleTest, AsksOnceForAllKindsOfOneUnload) {
    createAll();
    int asked = 0;
    _script.unload = [&asked] { ++asked; };
    _script.unloadAnswer = 1;
    for (int round = 1; round <= 2; ++round) {
        EXPECT_EQ(clean(_instanceMi, 0).rc, CMPI_RC_DO_NOT_UNLOAD);
        _script.unloadAnswer = 0;
        EXPECT_EQ(clean(_associationMi, 0).rc, CMPI_RC_DO_NOT_UNLOAD);
        EXPECT_EQ(clean(_methodMi, 0).rc, CMPI_RC_DO_NOT_UNLOAD);
        EXPECT_EQ(clean(_indicationMi, 0).rc, CMPI_RC_DO_NOT_UNLOAD);
        EXPECT_EQ(asked, round);
        _script.unloadAnswer = 1;
    }
    EXPECT_EQ(clean(_instanceMi, 0).rc, CMPI_RC_DO_NOT_UNLOAD);
    _script.unloadAnswer = 0;
    EXPECT_EQ(clean(_instanceMi, 0).rc, CMPI_RC_OK) << "a kind that is asked again begins anew";
    _script.unloadAnswer = 1;
    EXPECT_EQ(clean(_associationMi, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(asked, 4);
}

TEST_F(CmpiModuleTest, ServesOnWhenAHostKeepsWhatItCleanedUp) {
    createAll();
    const auto invoke = [this](CMPIMethodMI* mi) {
        CMPIArgs* const out = cimhost::makeArgs(realBroker, {});
        return mi->ft->invokeMethod(mi, _context, _result, _path, "Reset", _in, out).rc;
    };
    CMPIMethodMI* const methodMi = _methodMi;
    EXPECT_EQ(clean(_methodMi, 0).rc, CMPI_RC_OK);
    EXPECT_EQ(invoke(methodMi), CMPI_RC_OK);
    EXPECT_EQ(_script.made, 1) << "the other kinds have kept the object";
    clean(_instanceMi, 0);
    clean(_associationMi, 0);
    clean(_indicationMi, 0);
    EXPECT_EQ(_script.deleted, 0) << "the kind is in use again";
    _methodMi = methodMi;
    _script.clean = [] { throw CmpiStatus(CMPI_RC_ERR_FAILED, "stuck"); };
    EXPECT_EQ(clean(_methodMi, 0).rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(_script.deleted, 1);

    _script.clean = [] {};
    EXPECT_EQ(invoke(methodMi), CMPI_RC_OK) << "a failed clean-up is a refusal in some hosts";
    EXPECT_EQ(_script.made, 2);
    _methodMi = methodMi;
    EXPECT_EQ(clean(_methodMi, 1).rc, CMPI_RC_OK);
    EXPECT_EQ(_script.deleted, 2);
    EXPECT_EQ(methodMi->ft->cleanup(methodMi, _context, 1).rc, CMPI_RC_OK) << "once more";
    EXPECT_EQ(_script.cleaned, 2);
}

TEST_F(CmpiModuleTest, ACallFailsWhenTheObjectCannotBeMadeAgain) {
    _methodMi = Test_Provider_Create_MethodMI(handle(), _context, nullptr);
    CMPIMethodMI* const methodMi = _methodMi;
    clean(_methodMi, 0);
    maker = [](const CmpiBroker&) -> CmpiProvider* {
        throw CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "no hardware");
    };
    expectStatus(methodMi->ft->invokeMethod(methodMi, _context, _result, _path, "Reset", _in, _out),
                 CMPI_RC_ERR_ACCESS_DENIED, "no hardware");
}

}  // namespace
}  // namespace CmpiCpp::test
