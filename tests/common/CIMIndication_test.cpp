#include "common/CIMIndication.h"

#include "tests/common/IndicationFixture.h"
#include "tests/common/QuietResults.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <thread>
#include <utility>
#include <vector>

namespace {

using PYL::CIMIndication;

struct PlainIndication : IndicationFixture {
    CIMIndication indication{log.logger, "KT_AlertIndication", "root/ktq", 2};

    Lines properties() {
        auto instance = CmpiCpp::makeCmpiInstance(host.broker(), indication.getPath());
        indication.addProperties(instance);
        return propertiesOf(instance);
    }
};

TEST_F(PlainIndication, HasAPathWithHostNamespaceAndClass) {
    const auto path = indication.getPath();
    EXPECT_EQ(path.str(), "//server-1/root/ktq:KT_AlertIndication");
    EXPECT_EQ(path.getKeyCount(), 0U);
    const cimtest::HostNameIs name("other");
    EXPECT_EQ(indication.getPath().str(), "//other/root/ktq:KT_AlertIndication");
}

TEST_F(PlainIndication, HasAPathOfTheSharedBroker) {
    host.use(nullptr);
    EXPECT_THROW(indication.getPath(), CmpiCpp::CmpiStatus);
}

TEST_F(PlainIndication, TellsIdentitySeverityAndTime) {
    EXPECT_EQ(properties(), plainLayer(indication.getId(), "KT_AlertIndication"));
}

TEST_F(PlainIndication, SendsTheSeverityInSixteenBits) {
    for (const auto& [severity, text] : {std::pair{6, "6"}, std::pair{-1, "65535"}}) {
        CIMIndication severe(log.logger, "KT_AlertIndication", "root/ktq", severity);
        auto instance = CmpiCpp::makeCmpiInstance(host.broker(), severe.getPath());
        severe.addProperties(instance);
        EXPECT_EQ(instance.getProperty("PerceivedSeverity").str(), text);
    }
}

TEST_F(PlainIndication, CountsTheIndicationsOfEveryClass) {
    const auto first = indication.getId();
    const CIMIndication second(log.logger, "A", "root/ktq", 2);
    const PYL::CIMAlertIndication third(log.logger, "B", "root/ktq", 2);
    const PYL::KTAlertIndication fourth(log.logger, "C", "root/other", 2);
    EXPECT_EQ(second.getId(), first + 1);
    EXPECT_EQ(third.getId(), first + 2);
    EXPECT_EQ(fourth.getId(), first + 3);
}

TEST_F(PlainIndication, CountsFromOne) {
    // The statement runs in a process of its own that has made the indications of this test alone.
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(std::exit(alert.getId() == 1 ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST_F(PlainIndication, GivesEveryThreadNumbersOfItsOwn) {
    constexpr std::size_t threadCount = 8;
    constexpr std::size_t turns = 1000;
    auto quiet = silentLogger(LogLevel::error);
    std::vector<std::vector<std::uint64_t>> numbers(threadCount);
    std::vector<std::thread> threads;
    for (auto& mine : numbers) {
        threads.emplace_back([&mine, &quiet] {
            for (std::size_t turn = 0; turn < turns; ++turn) {
                mine.push_back(CIMIndication(quiet, "A", "root/ktq", 2).getId());
            }
        });
    }
    for (auto& thread : threads) thread.join();
    std::set<std::uint64_t> all;
    for (const auto& mine : numbers) {
        EXPECT_TRUE(std::is_sorted(mine.begin(), mine.end()));
        all.insert(mine.begin(), mine.end());
    }
    EXPECT_EQ(all.size(), threadCount * turns);
    EXPECT_EQ(*all.rbegin() - *all.begin(), threadCount * turns - 1);
}

TEST_F(PlainIndication, LogsItsLife) {
    log.journal->take();
    {
        CIMIndication own(log.logger, "KT_AlertIndication", "root/ktq", 2);
        auto instance = CmpiCpp::makeCmpiInstance(host.broker(), own.getPath());
        own.addProperties(instance);
    }
    EXPECT_EQ(log.journal->take(), (Lines{"information: CIMIndication cxtor()",
                                          "information: CIMIndication.addProperties()",
                                          "information: CIMIndication dxtor()"}));
}

}  // namespace
