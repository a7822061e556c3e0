#include "cmpicpp/CmpiMBService.h"

#include "cimhost/objects/MannerTables.h"
#include "cmpicpp/CmpiArray.h"
#include "tests/cmpicpp/BrokerFixture.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

class Logger {};

namespace CmpiCpp {
namespace {

using test::codeOf;
using test::messageOf;

/// What the up-calls of this test answer, and what they were asked.
struct Script {
    const CMPIBroker* real = nullptr;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIInstance* instance = nullptr;
    CMPIObjectPath* path = nullptr;
    CMPIEnumeration* enumeration = nullptr;
    CMPIData data{CMPI_uint32, CMPI_goodValue, {}};
    std::string asked;
};

Script* answersInUse = nullptr;

std::string text(const char* name) { return !name ? " -" : std::string(" ") + name; }

std::string text(const char** properties) { return !properties ? " all" : " some"; }

template <typename Result>
Result answer(const std::string& asked, Result result, CMPIStatus* status) {
    answersInUse->asked = asked;
    *status = answersInUse->status;
    return result;
}

CMPIStatus answer(const std::string& asked) {
    answersInUse->asked = asked;
    return answersInUse->status;
}

using Broker = const CMPIBroker*;
using Context = const CMPIContext*;
using Path = const CMPIObjectPath*;
using Instance = const CMPIInstance*;

CMPIBrokerFT upCalls() {
    CMPIBrokerFT table{};
    table.brokerVersion = CMPIVersion210;
    table.getInstance = [](Broker, Context, Path, const char** properties, CMPIStatus* status) {
        return answer("getInstance" + text(properties), answersInUse->instance, status);
    };
    table.enumerateInstances = [](Broker, Context, Path, const char** properties,
                                  CMPIStatus* status) {
        return answer("enumerateInstances" + text(properties), answersInUse->enumeration, status);
    };
    table.enumerateInstanceNames = [](Broker, Context, Path, CMPIStatus* status) {
        return answer("enumerateInstanceNames", answersInUse->enumeration, status);
    };
    table.createInstance = [](Broker, Context, Path, Instance, CMPIStatus* status) {
        return answer("createInstance", answersInUse->path, status);
    };
    table.modifyInstance = [](Broker, Context, Path, Instance, const char** properties) {
        return answer("modifyInstance" + text(properties));
    };
    table.deleteInstance = [](Broker, Context, Path) { return answer("deleteInstance"); };
    table.execQuery = [](Broker, Context, Path, const char* query, const char* language,
                         CMPIStatus* status) {
        return answer("execQuery" + text(query) + text(language), answersInUse->enumeration,
                      status);
    };
    table.associators = [](Broker, Context, Path, const char* a, const char* b, const char* c,
                           const char* d, const char** properties, CMPIStatus* status) {
        return answer("associators" + text(a) + text(b) + text(c) + text(d) + text(properties),
                      answersInUse->enumeration, status);
    };
    table.associatorNames = [](Broker, Context, Path, const char* a, const char* b, const char* c,
                               const char* d, CMPIStatus* status) {
        return answer("associatorNames" + text(a) + text(b) + text(c) + text(d),
                      answersInUse->enumeration, status);
    };
    table.references = [](Broker, Context, Path, const char* a, const char* b,
                          const char** properties, CMPIStatus* status) {
        return answer("references" + text(a) + text(b) + text(properties),
                      answersInUse->enumeration, status);
    };
    table.referenceNames = [](Broker, Context, Path, const char* a, const char* b,
                              CMPIStatus* status) {
        return answer("referenceNames" + text(a) + text(b), answersInUse->enumeration, status);
    };
    table.invokeMethod = [](Broker, Context, Path, const char* method, const CMPIArgs* in,
                            CMPIArgs* out, CMPIStatus* status) {
        const CMPIValue value{.uint8 = 7};
        out->ft->addArg(out, "Out", &value, CMPI_uint8);
        const auto count = std::to_string(in->ft->getArgCount(in, nullptr));
        return answer("invokeMethod" + text(method) + " " + count, answersInUse->data, status);
    };
    table.getProperty = [](Broker, Context, Path, const char* name, CMPIStatus* status) {
        return answer("getProperty" + text(name), answersInUse->data, status);
    };
    table.setProperty = [](Broker, Context, Path, const char* name, const CMPIValue* value,
                           CMPIType type) {
        return answer("setProperty" + text(name) + " " + CmpiData::typeToString(type) +
                      (!value ? " NULL" : ""));
    };
    table.deliverIndication = [](Broker, Context, const char* nameSpace, Instance) {
        return answer("deliverIndication" + text(nameSpace));
    };
    return table;
}

class CmpiMBServiceTest : public test::BrokerTest {
protected:
    CmpiMBServiceTest() {
        answersInUse = &_script;
        _script.real = handle();
        _script.path = cimhost::makeObjectPath(realBroker, {"", "n", "C", {}});
        _script.instance = cimhost::makeInstance(realBroker, {{"", "n", "C", {}}, {}});
        _script.enumeration = instances();
        _factories.newArgs = [](Broker, CMPIStatus* status) {
            return answersInUse->real->eft->newArgs(answersInUse->real, status);
        };
        _factories.newString = [](Broker, const char* characters, CMPIStatus* status) {
            return answersInUse->real->eft->newString(answersInUse->real, characters, status);
        };
        _upCallBroker.bft = &_upCalls;
        _upCallBroker.eft = &_factories;
    }

    CMPIEnumeration* instances() const { return instancesOf(realBroker); }

    static CMPIEnumeration* instancesOf(const cimhost::Broker& host) {
        const cimhost::Instance first{{"", "n", "First", {}}, {}};
        const cimhost::Instance second{{"", "n", "Second", {}}, {}};
        return cimhost::makeEnumeration(host, std::vector{first, second});
    }

    CMPIEnumeration* paths() const {
        return cimhost::makeEnumeration(
            realBroker,
            std::vector<cimhost::ObjectPath>{{"", "n", "First", {}}, {"", "n", "C", {}}});
    }

    void fail(CMPIrc rc, const char* message) {
        _script.status = {rc, handle()->eft->newString(handle(), message, nullptr)};
        _script.instance = nullptr;
        _script.path = nullptr;
        _script.enumeration = nullptr;
    }

    CmpiInstance instance() const { return makeCmpiInstance(broker(), path()); }

    /// Every operation, on a path of this broker.
    std::vector<std::function<void()>> operations() {
        return {
            [this] { _service.getInstance(_context, path(), nullptr); },
            [this] { _service.enumInstances(_context, path(), nullptr); },
            [this] { _service.enumInstanceNames(_context, path()); },
            [this] { _service.createInstance(_context, path(), instance()); },
            [this] { _service.modifyInstance(_context, path(), instance(), nullptr); },
            [this] { _service.deleteInstance(_context, path()); },
            [this] { _service.execQuery(_context, path(), "q", "l"); },
            [this] { _service.associators(_context, path(), "", "", "", "", nullptr); },
            [this] { _service.associatorNames(_context, path(), "", "", "", ""); },
            [this] { _service.references(_context, path(), "", "", nullptr); },
            [this] { _service.referenceNames(_context, path(), "", ""); },
            [this] {
                CmpiArgs out;
                _service.invokeMethod(_context, path(), "M", CmpiArgs(), out);
            },
            [this] { _service.getProperty(_context, path(), "P"); },
            [this] { _service.setProperty(_context, path(), "P", 1); },
            [this] { _service.deliverIndication(_context, "n", instance()); },
        };
    }

    Script _script;
    Logger _logger;
    CMPIBrokerFT _upCalls = upCalls();
    CMPIBrokerEncFT _factories{};
    CMPIBroker _upCallBroker{};
    CmpiMBService _service{&_upCallBroker, _logger};
    CmpiContext _context{cimhost::makeContext(realBroker, {})};
    const char* _some[1] = {nullptr};
};

TEST_F(CmpiMBServiceTest, GetsAnInstance) {
    EXPECT_EQ(_service.getInstance(_context, path(), _some).getClassName(), "C");
    EXPECT_EQ(_script.asked, "getInstance some");
}

TEST_F(CmpiMBServiceTest, AsksNobodyAboutWhatIsEmpty) {
    const CmpiObjectPath none;
    const auto expectRefusal = [&](auto&& work) {
        EXPECT_EQ(codeOf(work), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(_script.asked, "");
    };
    expectRefusal([&] { _service.getInstance(_context, none, nullptr); });
    expectRefusal([&] { _service.enumInstances(_context, none, nullptr); });
    expectRefusal([&] { _service.createInstance(_context, none, instance()); });
    expectRefusal([&] { _service.createInstance(_context, path(), CmpiInstance()); });
    expectRefusal([&] { _service.modifyInstance(_context, path(), CmpiInstance(), nullptr); });
    expectRefusal([&] { _service.deleteInstance(_context, none); });
    expectRefusal([&] { _service.execQuery(_context, none, "q", "l"); });
    expectRefusal([&] { _service.getProperty(_context, none, "P"); });
    expectRefusal([&] {
        CmpiArgs out;
        _service.invokeMethod(_context, none, "M", CmpiArgs(), out);
    });
    expectRefusal([&] { _service.deliverIndication(_context, "n", CmpiInstance()); });
}

TEST_F(CmpiMBServiceTest, EnumeratesInstancesAndTheirNames) {
    const auto found = _service.enumInstances(_context, path(), nullptr);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[1].getClassName(), "Second");
    EXPECT_EQ(_script.asked, "enumerateInstances all");
    _script.enumeration = paths();
    const auto names = _service.enumInstanceNames(_context, path());
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(names[0].getClassName(), "First");
}

TEST_F(CmpiMBServiceTest, TakesElementsThatHaveAPointerAndTheStateOfNull) {
    for (const char* const manner : {"openpegasus", "sfcb"}) {
        _script.enumeration = instancesOf(brokerOf(manner));
        const auto found = _service.enumInstances(_context, path(), nullptr);
        ASSERT_EQ(found.size(), 2U) << manner;
        EXPECT_EQ(found[0].getClassName(), "First");
        EXPECT_EQ(found[1].getClassName(), "Second");
    }
}

TEST_F(CmpiMBServiceTest, ChangesInstances) {
    EXPECT_EQ(_service.createInstance(_context, path(), instance()).getClassName(), "C");
    EXPECT_EQ(_script.asked, "createInstance");
    _service.modifyInstance(_context, path(), instance(), _some);
    EXPECT_EQ(_script.asked, "modifyInstance some");
    _service.deleteInstance(_context, path());
    EXPECT_EQ(_script.asked, "deleteInstance");
}

TEST_F(CmpiMBServiceTest, RunsQueries) {
    EXPECT_EQ(_service.execQuery(_context, path(), "select", "WQL").size(), 2U);
    EXPECT_EQ(_script.asked, "execQuery select WQL");
}

TEST_F(CmpiMBServiceTest, FollowsAssociationsWithEmptyFiltersAsNulls) {
    EXPECT_EQ(_service.associators(_context, path(), "A", "", "r", "", nullptr).size(), 2U);
    EXPECT_EQ(_script.asked, "associators A - r - all");
    _script.enumeration = instances();
    EXPECT_EQ(_service.references(_context, path(), "", "r", _some).size(), 2U);
    EXPECT_EQ(_script.asked, "references - r some");
    _script.enumeration = paths();
    EXPECT_EQ(_service.associatorNames(_context, path(), "", "B", "", "s").size(), 2U);
    EXPECT_EQ(_script.asked, "associatorNames - B - s");
    _script.enumeration = paths();
    EXPECT_EQ(_service.referenceNames(_context, path(), "A", "").size(), 2U);
    EXPECT_EQ(_script.asked, "referenceNames A -");
}

TEST_F(CmpiMBServiceTest, InvokesMethods) {
    CmpiArgs in = makeCmpiArgs(broker());
    in.addArg("A", 1);
    CmpiArgs out;
    _script.data.value.uint32 = 5;
    EXPECT_EQ(_service.invokeMethod(_context, path(), "Reset", in, out).asUint64(), 5U);
    EXPECT_EQ(_script.asked, "invokeMethod Reset 1");
    EXPECT_EQ(out.getArg("Out").asUint64(), 7U);
}

TEST_F(CmpiMBServiceTest, OutputsReplaceWhatTheContainerHeld) {
    CmpiArgs out = makeCmpiArgs(broker());
    out.addArg("Old", 1);
    const CmpiArgs copy = out;
    _service.invokeMethod(_context, path(), "Reset", CmpiArgs(), out);
    EXPECT_EQ(_script.asked, "invokeMethod Reset 0");
    EXPECT_EQ(out.getArgCount(), 1U);
    EXPECT_EQ(out.getArg("Out").asUint64(), 7U);
    EXPECT_EQ(copy.getArgCount(), 1U);
    EXPECT_EQ(copy.getArg("Old").asUint64(), 1U);
}

TEST_F(CmpiMBServiceTest, AFailedMethodLeavesTheOutputsAlone) {
    CmpiArgs out;
    fail(CMPI_RC_ERR_METHOD_NOT_FOUND, "no");
    EXPECT_EQ(codeOf([&] { _service.invokeMethod(_context, path(), "M", CmpiArgs(), out); }),
              CMPI_RC_ERR_METHOD_NOT_FOUND);
    EXPECT_TRUE(out.empty());
}

TEST_F(CmpiMBServiceTest, ReadsAndWritesProperties) {
    _script.data.value.uint32 = 9;
    EXPECT_EQ(_service.getProperty(_context, path(), "P").asUint64(), 9U);
    EXPECT_EQ(_script.asked, "getProperty P");
    _service.setProperty(_context, path(), "P", "text");
    EXPECT_EQ(_script.asked, "setProperty P string");
    _service.setProperty(_context, path(), "P", CmpiValue::null(CMPI_uint8));
    EXPECT_EQ(_script.asked, "setProperty P uint8 NULL");
}

TEST_F(CmpiMBServiceTest, AMissingPropertyMayBeToldByItsState) {
    _script.data.state = CMPI_notFound;
    EXPECT_EQ(messageOf([&] { _service.getProperty(_context, path(), "P"); }), "There is no P");
    EXPECT_EQ(codeOf([&] { _service.getProperty(_context, path(), "P"); }),
              CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiMBServiceTest, DeliversIndications) {
    _service.deliverIndication(_context, "root/ktq", instance());
    EXPECT_EQ(_script.asked, "deliverIndication root/ktq");
}

TEST_F(CmpiMBServiceTest, ThrowsWhatTheObjectManagerAnswers) {
    for (const auto& operation : operations()) {
        fail(CMPI_RC_ERR_ACCESS_DENIED, "not you");
        EXPECT_EQ(messageOf(operation), "not you") << _script.asked;
        EXPECT_EQ(codeOf(operation), CMPI_RC_ERR_ACCESS_DENIED) << _script.asked;
    }
}

TEST_F(CmpiMBServiceTest, ReadsAndWritesPropertiesOfHostsThatLackThoseUpCalls) {
    _factories.newObjectPath = handle()->eft->newObjectPath;
    _factories.newInstance = [](Broker, const CMPIObjectPath* path, CMPIStatus* status) {
        return answersInUse->real->eft->newInstance(answersInUse->real, path, status);
    };
    _upCalls.getProperty = [](Broker, Context, Path, const char*, CMPIStatus* status) {
        *status = {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
        return CMPIData{};
    };
    _upCalls.setProperty = [](Broker, Context, Path, const char*, const CMPIValue*, CMPIType) {
        return CMPIStatus{CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    };
    const CMPIValue nine{.uint8 = 9};
    _script.instance->ft->setProperty(_script.instance, "P", &nine, CMPI_uint8);
    EXPECT_EQ(_service.getProperty(_context, path(), "P").asUint64(), 9U);
    EXPECT_EQ(_script.asked, "getInstance some");
    EXPECT_EQ(codeOf([&] { _service.getProperty(_context, path(), "Q"); }),
              CMPI_RC_ERR_NO_SUCH_PROPERTY);
    _service.setProperty(_context, path(), "P", "text");
    EXPECT_EQ(_script.asked, "modifyInstance some");
    fail(CMPI_RC_ERR_ACCESS_DENIED, "no");
    EXPECT_EQ(codeOf([&] { _service.setProperty(_context, path(), "P", 1); }),
              CMPI_RC_ERR_ACCESS_DENIED);
}

TEST_F(CmpiMBServiceTest, SetsNoPropertyToAnArrayThatAHostMayNotSurvive) {
    const CmpiArray array = makeCmpiArray(broker(), 1, CMPI_string);
    EXPECT_EQ(codeOf([&] { _service.setProperty(_context, path(), "P", array); }),
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(_script.asked, "");
}

TEST_F(CmpiMBServiceTest, ThrowsWithoutAContextAndDoesNotAsk) {
    _context = CmpiContext(nullptr);
    for (const auto& operation : operations()) {
        EXPECT_EQ(codeOf(operation), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(messageOf(operation), "There is no context to ask with");
    }
    EXPECT_EQ(codeOf([&] { CmpiThreadContext(&_upCallBroker, _context); }),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(_script.asked, "");
}

TEST_F(CmpiMBServiceTest, ThrowsWhatAHostThrowsAsAFailure) {
    _upCalls.getInstance = [](Broker, Context, Path, const char**, CMPIStatus*) -> CMPIInstance* {
        throw cimhost::HostException{};
    };
    _upCalls.enumerateInstances = [](Broker, Context, Path, const char**,
                                     CMPIStatus*) -> CMPIEnumeration* {
        throw std::runtime_error("why");
    };
    _upCalls.deleteInstance = [](Broker, Context, Path) -> CMPIStatus { throw 1; };
    const auto all = operations();
    for (const std::size_t index : {0U, 1U, 5U}) {
        EXPECT_EQ(codeOf(all[index]), CMPI_RC_ERR_FAILED) << index;
    }
    EXPECT_EQ(messageOf(all[0]), "The object manager threw an exception of its own");
    EXPECT_EQ(messageOf(all[1]), "The object manager threw: why");
}

TEST_F(CmpiMBServiceTest, ThrowsWhenThereIsNoBroker) {
    _service = CmpiMBService(nullptr, _logger);
    for (const auto& operation : operations()) {
        EXPECT_EQ(codeOf(operation), CMPI_RC_ERR_INVALID_HANDLE);
    }
}

TEST_F(CmpiMBServiceTest, ThrowsWhenThereIsNoResultThoughTheCallSucceeded) {
    _script.instance = nullptr;
    _script.path = nullptr;
    _script.enumeration = nullptr;
    const auto all = operations();
    for (const std::size_t index : {0U, 1U, 2U, 3U, 6U, 7U, 8U, 9U, 10U}) {
        EXPECT_EQ(codeOf(all[index]), CMPI_RC_ERR_FAILED) << index;
    }
    EXPECT_EQ(messageOf(all[0]), "The object manager returned no instance and no error");
}

TEST_F(CmpiMBServiceTest, ThrowsWhenTheItemsAreOfTheWrongKind) {
    _script.enumeration = paths();
    EXPECT_EQ(codeOf([&] { _service.enumInstances(_context, path(), nullptr); }),
              CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST_F(CmpiMBServiceTest, NotFoundMeansNothingToOldObjectManagersOnly) {
    fail(CMPI_RC_ERR_NOT_FOUND, "nothing");
    EXPECT_EQ(codeOf([&] { _service.enumInstanceNames(_context, path()); }), CMPI_RC_ERR_NOT_FOUND);
    _upCalls.brokerVersion = CMPIVersion200;
    EXPECT_TRUE(_service.enumInstanceNames(_context, path()).empty());
    EXPECT_TRUE(_service.associators(_context, path(), "", "", "", "", nullptr).empty());
    EXPECT_EQ(codeOf([&] { _service.getInstance(_context, path(), nullptr); }),
              CMPI_RC_ERR_NOT_FOUND);
}

// Threads. The table notes the order of the calls in `asked`.

CMPIContext preparedContext{};

class CmpiThreadContextTest : public CmpiMBServiceTest {
protected:
    CmpiThreadContextTest() {
        _upCalls.prepareAttachThread = [](Broker, Context) -> CMPIContext* {
            return answersInUse->status.rc == CMPI_RC_OK ? &preparedContext : nullptr;
        };
        _upCalls.attachThread = [](Broker, Context context) -> CMPIStatus {
            answersInUse->asked += context == &preparedContext ? "attach " : "foreign ";
            return answersInUse->status;
        };
        _upCalls.detachThread = [](Broker, Context context) -> CMPIStatus {
            answersInUse->asked += context == &preparedContext ? "detach " : "foreign ";
            return answersInUse->status;
        };
    }
};

TEST_F(CmpiThreadContextTest, AttachesWhileTheAttachmentLives) {
    const CmpiThreadContext prepared(&_upCallBroker, _context);
    {
        const CmpiThreadContext::Attachment attached(prepared);
        EXPECT_EQ(attached.context().toCMPI(), &preparedContext);
        EXPECT_EQ(_script.asked, "attach ");
    }
    EXPECT_EQ(_script.asked, "attach detach ");
}

TEST_F(CmpiThreadContextTest, DoesNotDetachWhatWasNotAttached) {
    const CmpiThreadContext prepared(&_upCallBroker, _context);
    fail(CMPI_RC_ERR_INVALID_HANDLE, "late");
    EXPECT_EQ(codeOf([&] { const CmpiThreadContext::Attachment attached(prepared); }),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(_script.asked, "attach ");
}

TEST_F(CmpiThreadContextTest, NeedsABrokerThatPrepares) {
    EXPECT_EQ(codeOf([&] { CmpiThreadContext(nullptr, _context); }), CMPI_RC_ERR_INVALID_HANDLE);
    fail(CMPI_RC_ERR_FAILED, "");
    EXPECT_EQ(codeOf([&] { CmpiThreadContext(&_upCallBroker, _context); }), CMPI_RC_ERR_FAILED);
}

}  // namespace
}  // namespace CmpiCpp
