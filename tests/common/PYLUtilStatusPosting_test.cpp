// PYLUtil::postStatus, from the group's instance to the call that arrives.

#include "common/PYLUtil.h"
#include "platform/smbios/SmBios.h"
#include "testing/cimhost/testing/Allocations.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/common/Failures.h"
#include "tests/common/QuietResults.h"
#include "tests/platform/smbios/SmbiosImage.h"
#include "tests/support/FreshProcess.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using cimtest::FaultyBroker;
using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiValue;
using PYL::PYLUtil;

constexpr const char* property = "GroupOperationalStatus";

struct PostStatus : testing::Test {
    TestBroker host;
    JournalLog log;
    CmpiInstance group = CmpiCpp::makeCmpiInstance(host.broker(), host.path("PYL_Thing", "group"));

    PostStatus() {
        // A scan that fails: what the first good one says is kept for the rest of the process.
        SmBios::setSource(std::make_shared<SmbiosMemory>(Bytes()));
        host.onInvokeMethod = [this](const CmpiObjectPath& path, const std::string& method,
                                     const CmpiArgs& in) {
            log.journal->note("call " + method + " of " + path.str());
            for (unsigned i = 0; i < in.getArgCount(); ++i) {
                const auto [name, value] = in.getArgAt(i);
                log.journal->note(name.str() + " = " +
                                  CmpiCpp::CmpiData::typeToString(value.getType()) + " " +
                                  value.str());
            }
        };
    }
    ~PostStatus() override { SmBios::setSource(nullptr); }

    static void dumpIs(const std::string& name) {
        SmBios::setSource(std::make_shared<SmbiosDumpFile>(dumpPath(name)));
    }
    CmpiArray statuses(const std::vector<unsigned short>& values) const {
        auto array = CmpiCpp::makeCmpiArray(host.broker(), static_cast<unsigned>(values.size()),
                                            CMPI_uint16);
        for (unsigned i = 0; i < values.size(); ++i) array.setElementAt(i, values[i]);
        return array;
    }
    void post() { PYLUtil::postStatus(log.logger, host.context(), group); }
    /// What was logged and called, without what the look at the server's kind says.
    Lines taken() {
        auto lines = log.journal->take();
        std::erase_if(lines, [](const auto& line) { return line.find("SMB") != line.npos; });
        return lines;
    }
    static Lines callWith(int status) {
        return {"call PostStatus of /root/ktq:PYL_ComputerSystem",
                "ClassName = string \"PYL_Thing\"", "Status = uint16 " + std::to_string(status)};
    }
};

TEST_F(PostStatus, CallsTheComputerSystemWithClassAndStatus) {
    group.setProperty(property, statuses({6}));
    post();
    EXPECT_EQ(taken(), callWith(6));
}

TEST_F(PostStatus, PostsTheFirstOfSeveralStatuses) {
    group.setProperty(property, statuses({2, 6, 7}));
    post();
    EXPECT_EQ(taken(), callWith(2));
}

TEST_F(PostStatus, PostsAnUndefinedStatusAsUnknown) {
    for (const int value : {0, 19, 0x8000, 0xFFFF}) {
        group.setProperty(property, statuses({static_cast<unsigned short>(value)}));
        post();
        EXPECT_EQ(taken(), callWith(0)) << value;
    }
}

TEST_F(PostStatus, SaysThatThereIsNoStatus) {
    post();
    EXPECT_EQ(taken(), Lines{"error: GroupOperationalStatus not found in collection in "
                             "PYLUtil::postStatus()"});
}

TEST_F(PostStatus, SaysThatTheStatusHasAnotherType) {
    const auto numbers = CmpiCpp::makeCmpiArray(host.broker(), 1, CMPI_uint32);
    for (const auto& value :
         {CmpiValue(static_cast<unsigned short>(2)), CmpiValue("OK"), CmpiValue(numbers)}) {
        group.setProperty(property, value);
        post();
        EXPECT_EQ(taken(),
                  Lines{"error: Bad type for GroupOperationalStatus in PYLUtil::postStatus()"});
    }
}

TEST_F(PostStatus, SaysThatThereAreNoElements) {
    group.setProperty(property, statuses({}));
    post();
    EXPECT_EQ(taken(),
              Lines{"error: No elements in GroupOperationalStatus in PYLUtil::postStatus()"});
}

TEST_F(PostStatus, ThrowsOnWhatAnElementWithoutAValueIs) {
    group.setProperty(property, CmpiCpp::makeCmpiArray(host.broker(), 1, CMPI_uint16));
    EXPECT_TRUE(outcomeOf([&] { post(); }).starts_with("status "));
    EXPECT_EQ(taken(), Lines{});
}

TEST_F(PostStatus, IgnoresWhatTheMethodAnswers) {
    group.setProperty(property, statuses({2}));
    host.onInvokeMethod = [](const auto&, const auto&, const auto&) {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "100%s not yours");
    };
    post();
    EXPECT_EQ(taken(), Lines{"information: ignoring exception thrown in invokeMethod() upcall in "
                             "PYLUtil::postStatus(): CMPI_RC_ERR_ACCESS_DENIED (2): 100%s not "
                             "yours"});
}

TEST_F(PostStatus, AsksForNoStatusOfItsArgumentLists) {
    static const CMPIBroker* real;
    static std::vector<CMPIStatus*> asked;
    real = host.broker().toCMPI();
    asked.clear();
    CMPIBrokerEncFT factories = *real->eft;
    factories.newArgs = [](const CMPIBroker*, CMPIStatus* status) {
        asked.push_back(status);
        return real->eft->newArgs(real, nullptr);
    };
    CMPIBroker broker = *real;
    broker.eft = &factories;
    PYLUtil::setBroker(CmpiCpp::CmpiBroker(&broker));
    group.setProperty(property, statuses({2}));
    post();
    EXPECT_EQ(asked, (std::vector<CMPIStatus*>{nullptr, nullptr}));
    EXPECT_EQ(taken(), callWith(2));
}

TEST_F(PostStatus, ReadsNothingOnAServerThatIsManagedWithoutAgents) {
    inFreshProcess([this] {
        dumpIs("wavek");
        group = CmpiInstance();
        post();
        EXPECT_EQ(taken(), Lines{"information: skipping post as server is agentless in "
                                 "PYLUtil::postStatus()"});
    });
}

struct PostStatusFaults : PostStatus {
    FaultyBroker faulty{host.real()};

    PostStatusFaults() {
        host.use(faulty.handle());
        group = CmpiCpp::makeCmpiInstance(host.broker(), host.path("PYL_Thing", "group"));
        group.setProperty(property, statuses({2}));
        host.onInvokeMethod = [](const auto&, const auto&, const auto&) {};
    }
    std::string run() {
        const cimhost::CallScope scope;
        return outcomeOf([&] { post(); });
    }
};

TEST_F(PostStatusFaults, OfTheReadingAreThrownOnUnlessThePropertyIsMissing) {
    for (int code = 1; code <= 20; ++code) {
        faulty.failFrom("CMPIInstanceFT.getProperty", 1, FaultyBroker::Fault::status,
                        static_cast<CMPIrc>(code));
        const bool missing = code == CMPI_RC_ERR_NOT_FOUND || code == CMPI_RC_ERR_NO_SUCH_PROPERTY;
        const auto outcome = run();
        if (missing) {
            EXPECT_EQ(outcome, "none");
        } else {
            EXPECT_TRUE(outcome.starts_with("status " + std::to_string(code))) << outcome;
        }
        EXPECT_EQ(taken().size(), missing ? 1U : 0U) << code;
        EXPECT_EQ(faulty.calls("CMPIBrokerFT.invokeMethod"), 0U);
    }
    faulty.failFrom("CMPIArrayFT.getElementAt", 1, FaultyBroker::Fault::status,
                    CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_TRUE(run().starts_with("status 12"));
}

TEST_F(PostStatusFaults, OfEverySlotAreThrownOrLogged) {
    for (const auto& slot : FaultyBroker::slots()) {
        faulty.heal();
        ASSERT_EQ(run(), "none");
        const auto count = faulty.calls(slot);
        for (const auto fault : {FaultyBroker::Fault::status, FaultyBroker::Fault::null,
                                 FaultyBroker::Fault::wrongType}) {
            for (unsigned nth = 1; nth <= count; ++nth) {
                taken();
                faulty.failCall(slot, nth, fault);
                const auto outcome = run();
                const bool read = faulty.calls("CMPIBrokerEncFT.newArgs") > 0;
                const bool isReading =
                    slot == "CMPIInstanceFT.getProperty" || slot.starts_with("CMPIArrayFT.");
                EXPECT_TRUE(outcome == "none" || (isReading && !read)) << slot << ": " << outcome;
                EXPECT_TRUE(faulty.hasFailed()) << slot;
            }
        }
    }
}

TEST_F(PostStatusFaults, OfTheInvocationAreALineInTheLog) {
    faulty.failCall("CMPIBrokerFT.invokeMethod", 1, FaultyBroker::Fault::status,
                    CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(run(), "none");
    const auto lines = taken();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(
        lines[0].starts_with("information: ignoring exception thrown in "
                             "invokeMethod() upcall in PYLUtil::postStatus(): "
                             "CMPI_RC_ERR_NOT_FOUND (6)"))
        << lines[0];
}

TEST_F(PostStatusFaults, OfThePreparationAreALineThatDoesNotBlameTheInvocation) {
    for (const auto* slot :
         {"CMPIBrokerEncFT.newObjectPath", "CMPIBrokerEncFT.newArgs", "CMPIArgsFT.addArg"}) {
        faulty.failCall(slot, 1, FaultyBroker::Fault::status);
        EXPECT_EQ(run(), "none");
        const auto lines = taken();
        ASSERT_EQ(lines.size(), 1U) << slot;
        EXPECT_TRUE(
            lines[0].starts_with("error: the post could not be prepared in "
                                 "PYLUtil::postStatus(): CMPI_RC_ERR_"))
            << lines[0];
        EXPECT_EQ(faulty.calls("CMPIBrokerFT.invokeMethod"), 0U) << slot;
    }
}

TEST_F(PostStatusFaults, OfMemoryAreExceptions) {
    auto quiet = silentLogger();
    for (const bool forever : {false, true}) {
        for (int nth = 1; nth == 1 || cimtest::allocationHasFailed(); ++nth) {
            const auto outcome = outcomeOf([&] {
                const cimtest::FailingAllocation failing(nth, forever);
                const cimhost::CallScope scope;
                PYLUtil::postStatus(quiet, host.context(), group);
            });
            EXPECT_TRUE(outcome == "none" || outcome == "bad_alloc" ||
                        outcome.starts_with("status "))
                << outcome;
            ASSERT_LT(nth, 5000);
        }
    }
    EXPECT_EQ(run(), "none");
}

}  // namespace
