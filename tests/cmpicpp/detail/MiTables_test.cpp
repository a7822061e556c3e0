#include "cmpicpp/detail/MiTables.h"

#include "cmpicpp/CmpiMemoryMark.h"
#include "tests/cmpicpp/ModuleFixture.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace CmpiCpp::test {
namespace {

/// Overrides nothing that it need not.
class ReadOnly : public CmpiInstanceProvider {
public:
    void enumInstanceNames(const CmpiContext&, const CmpiObjectPath&,
                           CmpiObjectPathResult&) override {}
    void enumInstances(const CmpiContext&, const CmpiObjectPath&, const char**,
                       CmpiInstanceResult&) override {}
    void getInstance(const CmpiContext&, const CmpiObjectPath&, const char**,
                     CmpiInstanceResult&) override {}
    CMPIBroker* getBroker() override { return nullptr; }
};

/// Finds each path in a lifetime of its own, as a loop over many does.
class Marking final : public ReadOnly {
public:
    explicit Marking(const CmpiBroker& broker) : _broker(broker) {}

    void execQuery(const CmpiContext&, const CmpiObjectPath& path, const std::string&,
                   const std::string&, CmpiObjectPathResult& result) override {
        for (const char* const id : {"a", "b"}) {
            const CmpiMemoryMark mark(_broker);
            auto found = makeCmpiObjectPath(_broker, path.getNameSpace(), path.getClassName());
            found.addKey("Id", id);
            result.deliver(found);
        }
    }
    void getInstance(const CmpiContext&, const CmpiObjectPath& path, const char**,
                     CmpiInstanceResult&) override {
        asked.push_back(path.getKey("Id").asString());
    }

    static inline std::vector<std::string> asked;

private:
    CmpiBroker _broker;
};

class MiTablesTest : public ModuleTest {
protected:
    struct Operation {
        std::string name;
        std::function<CMPIStatus()> call;
        bool delivers = false;
    };

    std::vector<Operation> instanceOperations() {
        auto* const mi = _instanceMi;
        return {
            {"enumInstanceNames",
             [=, this] { return mi->ft->enumerateInstanceNames(mi, _context, _result, _path); },
             true},
            {"enumInstances",
             [=, this] {
                 return mi->ft->enumerateInstances(mi, _context, _result, _path, nullptr);
             },
             true},
            {"getInstance",
             [=, this] { return mi->ft->getInstance(mi, _context, _result, _path, nullptr); },
             true},
            {"createInstance",
             [=, this] { return mi->ft->createInstance(mi, _context, _result, _path, _instance); },
             true},
            {"modifyInstance",
             [=, this] {
                 return mi->ft->modifyInstance(mi, _context, _result, _path, _instance, nullptr);
             }},
            {"deleteInstance",
             [=, this] { return mi->ft->deleteInstance(mi, _context, _result, _path); }},
            {"execQuery",
             [=, this] { return mi->ft->execQuery(mi, _context, _result, _path, "q", "l"); }, true},
        };
    }

    std::vector<Operation> otherOperations() {
        auto* const a = _associationMi;
        auto* const m = _methodMi;
        auto* const i = _indicationMi;
        return {
            {"associators",
             [=, this] {
                 return a->ft->associators(a, _context, _result, _path, "A", nullptr, "r", nullptr,
                                           nullptr);
             },
             true},
            {"associatorNames",
             [=, this] {
                 return a->ft->associatorNames(a, _context, _result, _path, nullptr, "B", nullptr,
                                               "s");
             },
             true},
            {"references",
             [=, this] {
                 return a->ft->references(a, _context, _result, _path, nullptr, nullptr, nullptr);
             },
             true},
            {"referenceNames",
             [=, this] { return a->ft->referenceNames(a, _context, _result, _path, "A", "r"); },
             true},
            {"invokeMethod",
             [=, this] {
                 return m->ft->invokeMethod(m, _context, _result, _path, "Reset", _in, _out);
             }},
            {"authorizeFilter",
             [=, this] {
                 return i->ft->authorizeFilter(i, _context, nullptr, "C", _path, "owner");
             }},
            {"activateFilter",
             [=, this] { return i->ft->activateFilter(i, _context, nullptr, "C", _path, 0x80); }},
            {"deactivateFilter",
             [=, this] { return i->ft->deActivateFilter(i, _context, nullptr, "C", _path, 0); }},
            {"enableIndications", [=, this] { return i->ft->enableIndications(i, _context); }},
            {"disableIndications", [=, this] { return i->ft->disableIndications(i, _context); }},
        };
    }

    /// Every operation that reaches the provider object.
    std::vector<Operation> operations() {
        std::vector<Operation> all = instanceOperations();
        for (Operation& operation : otherOperations()) all.push_back(std::move(operation));
        return all;
    }

    /// Three paths and three instances for every operation that delivers.
    void scriptDeliveries() {
        for (const char* const id : {"1", "2", "3"}) {
            CmpiObjectPath made = path();
            made.addKey("DeviceID", id);
            _script.paths.push_back(made);
            _script.instances.push_back(makeCmpiInstance(broker(), made));
        }
    }
};

TEST_F(MiTablesTest, FillsItsTables) {
    createAll();
    EXPECT_EQ(_instanceMi->ft->ftVersion, 200);
    EXPECT_EQ(_associationMi->ft->ftVersion, 200);
    EXPECT_EQ(_methodMi->ft->ftVersion, 200);
    EXPECT_EQ(_indicationMi->ft->ftVersion, 200);
    EXPECT_STREQ(_instanceMi->ft->miName, "Test_Provider");
    EXPECT_EQ(_methodMi->ft->miVersion, 200);
}

TEST_F(MiTablesTest, PassesEveryOperationOn) {
    createAll();
    const std::vector<std::string> expected{
        "enumInstanceNames /root/ktq:PYL_Fan for alice",
        "enumInstances /root/ktq:PYL_Fan no list for alice",
        "getInstance /root/ktq:PYL_Fan no list for alice",
        "createInstance /root/ktq:PYL_Fan instance of PYL_Fan {} for alice",
        "modifyInstance /root/ktq:PYL_Fan instance of PYL_Fan {} no list for alice",
        "deleteInstance /root/ktq:PYL_Fan for alice",
        "execQuery /root/ktq:PYL_Fan q l for alice",
        "associators /root/ktq:PYL_Fan A  r  no list for alice",
        "associatorNames /root/ktq:PYL_Fan  B  s for alice",
        "references /root/ktq:PYL_Fan   no list for alice",
        "referenceNames /root/ktq:PYL_Fan A r for alice",
        "invokeMethod /root/ktq:PYL_Fan Reset 1 for alice",
        "authorizeFilter C with another filter owner for alice",
        "activateFilter C with another filter last for alice",
        "deactivateFilter C with another filter for alice",
        "enableIndications for alice",
        "disableIndications for alice",
    };
    for (const Operation& operation : operations()) {
        _sink.dones = 0;
        expectStatus(operation.call(), CMPI_RC_OK, "", operation.name);
        const bool produces = operation.delivers || operation.name == "invokeMethod";
        EXPECT_EQ(_sink.dones, produces ? 1 : 0) << operation.name;
    }
    EXPECT_EQ(_script.calls, expected);
}

TEST_F(MiTablesTest, PassesPropertyListsOn) {
    createAll();
    const char* wanted[] = {"Slot", nullptr};
    const char* none[] = {nullptr};
    _instanceMi->ft->enumerateInstances(_instanceMi, _context, _result, _path, wanted);
    _associationMi->ft->references(_associationMi, _context, _result, _path, nullptr, nullptr,
                                   none);
    EXPECT_EQ(_script.calls.at(0), "enumInstances /root/ktq:PYL_Fan list Slot for alice");
    EXPECT_EQ(_script.calls.at(1), "references /root/ktq:PYL_Fan   list for alice");
}

TEST_F(MiTablesTest, ToleratesMissingArguments) {
    createAll();
    auto* const mi = _indicationMi;
    EXPECT_EQ(mi->ft->authorizeFilter(mi, nullptr, nullptr, nullptr, nullptr, nullptr).rc,
              CMPI_RC_OK);
    EXPECT_EQ(_script.calls.at(0), "authorizeFilter  with another filter  for ");
    EXPECT_EQ(
        _instanceMi->ft->execQuery(_instanceMi, _context, _result, _path, nullptr, nullptr).rc,
        CMPI_RC_OK);
    EXPECT_EQ(
        _methodMi->ft->invokeMethod(_methodMi, _context, _result, nullptr, nullptr, nullptr, _out)
            .rc,
        CMPI_RC_OK);
}

TEST_F(MiTablesTest, ReturnsWhatIsDelivered) {
    createAll();
    scriptDeliveries();
    for (const Operation& operation : operations()) {
        if (!operation.delivers || operation.name == "execQuery") continue;
        _sink.paths.clear();
        _sink.instances.clear();
        EXPECT_EQ(operation.call().rc, CMPI_RC_OK) << operation.name;
        EXPECT_EQ(_sink.paths.size() + _sink.instances.size(), 3U) << operation.name;
    }
}

TEST_F(MiTablesTest, ReturnsMethodResultsAndOutputs) {
    createAll();
    _methodMi->ft->invokeMethod(_methodMi, _context, _result, _path, "Reset", _in, _out);
    ASSERT_EQ(_sink.values.size(), 1U);
    EXPECT_EQ(_sink.values[0].type(), cimhost::CimType::uint32);
    ASSERT_EQ(cimhost::modelOf(_out).size(), 1U);
    EXPECT_EQ(cimhost::modelOf(_out)[0].value, cimhost::Value::string("done"));
}

TEST_F(MiTablesTest, AQueryReturnsTheInstancesAtThePathsThatItFound) {
    createAll();
    scriptDeliveries();
    _script.instances.resize(1);
    const Operation query = instanceOperations().back();
    EXPECT_EQ(query.call().rc, CMPI_RC_OK);
    EXPECT_TRUE(_sink.paths.empty());
    EXPECT_EQ(_sink.instances.size(), 3U) << "one for each getInstance";
    EXPECT_EQ(_script.calls.size(), 4U);
    EXPECT_EQ(_sink.dones, 1);
}

TEST_F(MiTablesTest, AQueryLeavesOutWhatHasGoneMeanwhile) {
    createAll();
    scriptDeliveries();
    const Operation query = instanceOperations().back();
    _script.act = [&] {
        if (_script.calls.size() == 2) throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND);
    };
    EXPECT_EQ(query.call().rc, CMPI_RC_OK);
    EXPECT_EQ(_script.calls.size(), 4U);
    _script.act = [&] {
        if (_script.calls.size() == 6) throw CmpiStatus(CMPI_RC_ERR_FAILED, "broken");
    };
    expectStatus(query.call(), CMPI_RC_ERR_FAILED, "broken");
    EXPECT_EQ(_script.calls.size(), 6U) << "the rest is not asked for";
}

TEST_F(MiTablesTest, TurnsWhateverIsThrownIntoAStatus) {
    createAll();
    scriptDeliveries();
    for (const Operation& operation : operations()) {
        for (const Thrown& thrown : everythingThatIsThrown()) {
            for (const std::size_t place : {0U, 1U, 3U}) {
                const std::string note = operation.name + ", " + thrown.what;
                _script.actAt = place;
                _script.act = thrown.act;
                _sink.dones = 0;
                // A query that finds its instances gone has merely found nothing.
                if (operation.name == "execQuery" && thrown.rc == CMPI_RC_ERR_NOT_FOUND) continue;
                expectStatus(operation.call(), thrown.rc, thrown.message, note);
                EXPECT_EQ(_sink.dones, 0) << note;
            }
        }
        _script.act = [] {};
        EXPECT_EQ(operation.call().rc, CMPI_RC_OK) << operation.name << " works again";
    }
}

TEST_F(MiTablesTest, KeepsWhatWasDeliveredBeforeAFailure) {
    createAll();
    scriptDeliveries();
    _script.actAt = 2;
    _script.act = [] { throw CmpiStatus(CMPI_RC_ERR_FAILED); };
    instanceOperations().front().call();
    EXPECT_EQ(_sink.paths.size(), 2U);
}

TEST_F(MiTablesTest, PollingIsNotSupportedByEitherSignature) {
    createAll();
    EXPECT_EQ(_indicationMi->ft->mustPoll(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_TRUE(_script.calls.empty());
}

TEST_F(MiTablesTest, SlotsOfNewerLevelsAreNotSupported) {
    createAll();
    // What comes last is no status to some object managers: it must not be touched.
    auto* const disputed = reinterpret_cast<CMPIStatus*>(std::uintptr_t{1});
    EXPECT_EQ(_instanceMi->ft
                  ->enumerateInstancesFiltered(_instanceMi, _context, _result, _path, nullptr,
                                               nullptr, nullptr, disputed)
                  .rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(_associationMi->ft
                  ->associatorsFiltered(_associationMi, _context, _result, _path, nullptr, nullptr,
                                        nullptr, nullptr, nullptr, nullptr, nullptr, 0)
                  .rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(_associationMi->ft
                  ->referencesFiltered(_associationMi, _context, _result, _path, nullptr, nullptr,
                                       nullptr, nullptr, nullptr, 0)
                  .rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    auto* const mi = _indicationMi;
    EXPECT_EQ(mi->ft->authorizeFilterCollection(mi, _context, _instance).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(mi->ft->activateFilterCollection(mi, _context, _instance, 1).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(mi->ft->deActivateFilterCollection(mi, _context, _instance, 1).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(MiTablesTest, WhatAQueryFindsOutlivesTheMarksOfTheSearch) {
    maker = [](const CmpiBroker& broker) -> CmpiProvider* { return new Marking(broker); };
    _instanceMi = Test_Provider_Create_InstanceMI(handle(), _context, nullptr);
    ASSERT_NE(_instanceMi, nullptr);
    Marking::asked.clear();
    EXPECT_EQ(_instanceMi->ft->execQuery(_instanceMi, _context, _result, _path, "q", "l").rc,
              CMPI_RC_OK);
    EXPECT_EQ(Marking::asked, (std::vector<std::string>{"a", "b"}));
}

TEST_F(MiTablesTest, WhatAProviderDoesNotOverrideIsNotSupported) {
    maker = [](const CmpiBroker&) -> CmpiProvider* { return new ReadOnly; };
    _instanceMi = Test_Provider_Create_InstanceMI(handle(), _context, nullptr);
    ASSERT_NE(_instanceMi, nullptr);
    const auto all = instanceOperations();
    for (const std::size_t index : {3U, 4U, 5U, 6U}) {
        expectStatus(all[index].call(), CMPI_RC_ERR_NOT_SUPPORTED,
                     all[index].name + " is not supported by this provider");
    }
    EXPECT_EQ(clean(_instanceMi, 0).rc, CMPI_RC_OK) << "unloading is fine by default";
}

}  // namespace
}  // namespace CmpiCpp::test
