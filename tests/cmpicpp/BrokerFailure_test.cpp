// Every call that an operation makes fails in turn: with a code, with success and nothing in hand,
// and with data of another type. Whatever comes of it is a CmpiStatus or the fallback that the
// header names; nothing crashes, leaks (sanitizers look) or changes another copy.

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiModule.h"
#include "cmpicpp/detail/ResultSinks.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/cmpicpp/BrokerFixture.h"
#include "tests/cmpicpp/RecordingSink.h"
#include "tests/cmpicpp/ScriptProvider.h"

#include <functional>
#include <string>
#include <vector>

namespace CmpiCpp::test {
namespace {

using cimtest::FaultyBroker;

constexpr CMPIrc faultCode = CMPI_RC_ERR_INVALID_CLASS;

class BrokerFailureTest : public BrokerTest {
protected:
    CmpiBroker faulty() const { return CmpiBroker(_faulty.handle()); }

    CmpiObjectPath faultyPath(const char* id = "1") const {
        CmpiObjectPath made = makeCmpiObjectPath(faulty(), "root/ktq", "PYL_Fan");
        made.addKey("DeviceID", id);
        made.addKey("Slot", 2U);
        made.addKey("Since", makeCmpiDateTime(faulty(), "20240131235959.123456+060"));
        return made;
    }

    CmpiInstance faultyInstance() const {
        CmpiInstance made = makeCmpiInstance(faulty(), faultyPath());
        CmpiArray array = makeCmpiArray(faulty(), 2, CMPI_string);
        array.setElementAt(0, "a");
        made.setProperty("Array", array);
        made.setProperty("Text", "x");
        return made;
    }

    /// Runs the operation with the nth call of each slot failing, for as long as there are calls.
    /// The operation throws CmpiStatus, if anything.
    void failEachCallOf(const std::function<void()>& operation) {
        for (const std::string& slot : FaultyBroker::slots()) {
            for (const auto fault : {FaultyBroker::Fault::status, FaultyBroker::Fault::null,
                                     FaultyBroker::Fault::wrongType}) {
                for (unsigned nth = 1; _runWith(slot, nth, fault, operation); ++nth) {
                }
            }
        }
        EXPECT_GT(_failures, 0) << "no call of the operation ever failed";
    }

private:
    /// False when the operation makes no nth call of the slot.
    bool _runWith(const std::string& slot, unsigned nth, FaultyBroker::Fault fault,
                  const std::function<void()>& operation) {
        const cimhost::CallScope call;
        _faulty.failCall(slot, nth, fault, faultCode);
        try {
            operation();
        } catch (const CmpiStatus& status) {
            EXPECT_NE(status.rc(), CMPI_RC_OK) << slot;
        }
        const bool failed = _faulty.hasFailed();
        _failures += failed ? 1 : 0;
        _faulty.heal();
        return failed;
    }

protected:
    FaultyBroker _faulty{handle()};
    int _failures = 0;
};

TEST_F(BrokerFailureTest, WhileAPathIsMade) {
    failEachCallOf([this] { faultyPath(); });
}

TEST_F(BrokerFailureTest, WhileAPathIsRead) {
    failEachCallOf([this] {
        const CmpiObjectPath path = faultyPath();
        path.getHost();
        path.getNameSpace();
        path.getClassName();
        path.getKeyCount();
        path.getKey("DeviceID").asString();
        path.getKeyAt(2).second.asDateTime().str();
        path.classPathIsA(faulty(), "PYL_Fan");
    });
}

TEST_F(BrokerFailureTest, WhileAPathIsChanged) {
    failEachCallOf([this] {
        CmpiObjectPath path = faultyPath();
        const CmpiObjectPath copy = path;
        try {
            path.setHost("h");
            path.setNameSpace("n");
            path.setClassName("C");
            path.addKey("K", "v");
        } catch (const CmpiStatus&) {
            _faulty.heal();
            EXPECT_TRUE(copy == faultyPath());
            throw;
        }
    });
}

TEST_F(BrokerFailureTest, WhilePathsAreCompared) {
    failEachCallOf([this] {
        const CmpiObjectPath left = faultyPath();
        CmpiObjectPath right = makeCmpiObjectPath(faulty(), "root/ktq", "PYL_Fan");
        right.addKey("Since", makeCmpiDateTime(faulty(), "20240131235959.123456+060"));
        right.addKey("Slot", 2U);
        right.addKey("DeviceID", "1");
        static_cast<void>(left == right);
    });
}

TEST_F(BrokerFailureTest, WhileAPathIsWritten) {
    failEachCallOf([this] {
        CmpiObjectPath path = faultyPath();
        path.addKey("Inner", faultyPath());
        EXPECT_NE(path.str(), "");
    });
}

TEST_F(BrokerFailureTest, WhileAnInstanceIsUsed) {
    failEachCallOf([this] {
        CmpiInstance instance = faultyInstance();
        instance.setPath(faultyPath("2"));
        instance.setPropertyFilter(nullptr);
        instance.getClassName();
        instance.getPropertyCount();
        instance.getPropertyAt(0);
        instance.getProperty("Array").asArray().getElementAt(0).asString();
        EXPECT_NE(instance.str(), "");
    });
}

TEST_F(BrokerFailureTest, WhileInstancesAreClonedAndKept) {
    failEachCallOf([this] {
        const CmpiInstance clone = faultyInstance().clone();
        CmpiInstance copy = clone;
        copy.setProperty("Text", "changed");
        CmpiObjectPath part = copy.getPath();
        part.setHost("h");
    });
}

TEST_F(BrokerFailureTest, WhileArgumentsAreUsed) {
    failEachCallOf([this] {
        CmpiArgs args = makeCmpiArgs(faulty());
        args.addArg("A", "a");
        const CmpiArgs copy = args.clone();
        args.getArgCount();
        args.getArg("A").asString();
        args.getArgAt(0);
    });
}

TEST_F(BrokerFailureTest, WhileArraysAreUsed) {
    failEachCallOf([this] {
        CmpiArray array = makeCmpiArray(faulty(), 2, CMPI_uint8);
        CmpiArray copy = array.clone();
        copy.setElementAt(0, static_cast<unsigned char>(1));
        copy.setElementAt(1, CmpiValue::null(CMPI_null));
        copy.getSize();
        copy.getElementAt(0).asUint64();
        EXPECT_NE(copy.str(), "");
    });
}

TEST_F(BrokerFailureTest, WhileDateTimesAreUsed) {
    failEachCallOf([this] {
        makeCmpiDateTime(faulty()).clone().isInterval();
        makeCmpiDateTime(faulty(), std::chrono::microseconds(1), true).microseconds();
        makeCmpiDateTime(faulty(), "20240131235959.123456+060").str();
    });
}

TEST_F(BrokerFailureTest, WhileAContextIsRead) {
    cimhost::RequestContext request;
    request.principal = "alice";
    failEachCallOf([&] {
        const CmpiContext context(FaultyBroker::adopt(cimhost::makeContext(realBroker, request)));
        EXPECT_NO_THROW(context.nameSpace());
        EXPECT_NO_THROW(context.principal());
        EXPECT_NO_THROW(context.acceptLanguage());
        EXPECT_NO_THROW(context.invocationFlags());
    });
}

TEST_F(BrokerFailureTest, WhileAMessageIsRead) {
    failEachCallOf([this] {
        const CMPIBroker* const broker = _faulty.handle();
        const CMPIStatus status{CMPI_RC_ERR_NOT_FOUND,
                                broker->eft->newString(broker, "text", nullptr)};
        EXPECT_EQ(CmpiStatus(status).rc(), CMPI_RC_ERR_NOT_FOUND);
    });
}

TEST_F(BrokerFailureTest, WhileAMethodDelivers) {
    failEachCallOf([this] {
        RecordingSink recording;
        MethodSink sink(_faulty.handle(),
                        FaultyBroker::adopt(cimhost::makeResult(realBroker, recording)),
                        FaultyBroker::adopt(cimhost::makeArgs(realBroker, {})));
        sink.deliver("text");
        sink.deliver(faultyPath());
        sink.deliver(CmpiName("Out"), "text");
    });
}

Script* scriptInUse = nullptr;

CmpiProvider* makeProvider(const CmpiBroker& broker, const CMPIContext*) {
    return new ScriptProvider(const_cast<CMPIBroker*>(broker.toCMPI()), *scriptInUse);
}

constinit CmpiModule module("Faulty", makeProvider);

TEST_F(BrokerFailureTest, WhileAProviderServes) {
    failEachCallOf([this] {
        Script current;
        scriptInUse = &current;
        RecordingSink recording;
        auto* const result = FaultyBroker::adopt(cimhost::makeResult(realBroker, recording));
        auto* const path = FaultyBroker::adopt(
            cimhost::makeObjectPath(realBroker, {"", "root/ktq", "PYL_Fan", {}}));
        auto* const context = FaultyBroker::adopt(cimhost::makeContext(realBroker, {}));
        CMPIInstanceMI* const mi = module.createInstanceMI(_faulty.handle(), context, nullptr);
        ASSERT_NE(mi, nullptr);
        try {
            current.paths.push_back(faultyPath());
            current.instances.push_back(faultyInstance());
        } catch (const CmpiStatus&) {  // then there is nothing to deliver
        }
        CMPIStatus last{CMPI_RC_OK, nullptr};
        for (const auto& call : std::vector<std::function<CMPIStatus()>>{
                 [&] { return mi->ft->enumerateInstanceNames(mi, context, result, path); },
                 [&] { return mi->ft->getInstance(mi, context, result, path, nullptr); },
                 [&] { return mi->ft->execQuery(mi, context, result, path, "q", "l"); },
             }) {
            if (const CMPIStatus status = call(); status.rc != CMPI_RC_OK) last = status;
        }
        EXPECT_EQ(mi->ft->cleanup(mi, context, 1).rc, CMPI_RC_OK);
        EXPECT_EQ(current.made, current.deleted);
        check(last);
    });
}

TEST_F(BrokerFailureTest, KeepsTheCodeWhenTheMessageCannotBeMade) {
    Script current;
    scriptInUse = &current;
    current.act = [] { throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "text"); };
    CMPIInstanceMI* const mi = module.createInstanceMI(_faulty.handle(), nullptr, nullptr);
    ASSERT_NE(mi, nullptr);
    _faulty.failFrom("CMPIBrokerEncFT.newString", 1, FaultyBroker::Fault::status);
    const CMPIStatus status = mi->ft->deleteInstance(mi, nullptr, nullptr, nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(status.msg, nullptr);
    EXPECT_TRUE(_faulty.hasFailed());
    mi->ft->cleanup(mi, nullptr, 1);
}

TEST_F(BrokerFailureTest, ThrowsTheCodeOfTheBroker) {
    _faulty.failCall("CMPIBrokerEncFT.newObjectPath", 1, FaultyBroker::Fault::status, faultCode);
    EXPECT_EQ(codeOf([this] { faultyPath(); }), faultCode);
    _faulty.failCall("CMPIBrokerEncFT.newObjectPath", 1, FaultyBroker::Fault::null);
    EXPECT_EQ(messageOf([this] { faultyPath(); }),
              "The object manager returned no object path and no error");
}

TEST_F(BrokerFailureTest, WritesWhatCannotBeReadAsBadValue) {
    const CmpiObjectPath path = faultyPath();
    // The names of host, namespace, class and first key come before the first value.
    _faulty.failCall("CMPIStringFT.getCharPtr", 5, FaultyBroker::Fault::status);
    EXPECT_EQ(path.str(),
              "/root/ktq:PYL_Fan.DeviceID=<bad value>,Slot=2,"
              "Since=\"20240131235959.123456+060\"");
}

}  // namespace
}  // namespace CmpiCpp::test
