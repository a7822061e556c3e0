#include "cimhost/server/events/ConsoleOutlet.h"

#include "cimhost/repository/CimError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::HasSubstr;

/// Takes all, and counts one.
class OtherOutlet final : public IndicationOutlet {
public:
    std::shared_ptr<IndicationQueue> open(const std::string& name, const ListenerUrl&) override {
        opened.push_back(name);
        return nullptr;
    }
    DeliveryManner manner() const override { return {7, std::chrono::seconds(8)}; }
    std::vector<DeliveryCounts> counts() const override { return {{"other", 3, 1, 1, 1, 0}}; }

    std::vector<std::string> opened;
};

struct ConsoleOutletTest : testing::Test {
    EventFeed feed;
    OtherOutlet others;
    ConsoleOutlet outlet{others, &feed};
    Instance indication;
    PropertySelection everything;

    ConsoleOutletTest() {
        indication.path.className = "TST_<Alarm";
        indication.set("Text", Value::string("<script>\n\"&\xFF"));
        indication.set("Number", Value::unsignedInteger(CimType::uint16, 5));
    }

    void put(IndicationQueue& queue) {
        queue.put({indication, nullptr, everything, "my \"filter\""});
    }

    std::string counts() {
        const DeliveryCounts mine = outlet.counts().at(1);
        return mine.name + " " + std::to_string(mine.raised) + " " + std::to_string(mine.sent) +
               " " + std::to_string(mine.dropped) + " " + std::to_string(mine.waiting);
    }
};

const ListenerUrl console{.isConsole = true};

TEST_F(ConsoleOutletTest, TellsWhoLooksTheWholeIndication) {
    EventFeed::Viewer viewer(feed);
    const auto queue = outlet.open("page", console);
    put(*queue);
    const std::string event = *viewer.take({}).events.at(0);
    EXPECT_THAT(event, testing::StartsWith("event: alert\ndata: {\"time\":\"20"));
    EXPECT_THAT(event, HasSubstr(R"(Z","filter":"my \"filter\"","instance":")"
                                 R"(<INSTANCE CLASSNAME=\"TST_&lt;Alarm\"><PROPERTY NAME=\"Text\")"
                                 R"( TYPE=\"string\"><VALUE>&lt;script&gt;\u000a)"));
    EXPECT_THAT(event, HasSubstr("&amp;\xEF\xBF\xBD</VALUE></PROPERTY>")) << "what is no UTF-8";
    EXPECT_THAT(event, testing::EndsWith("</INSTANCE>\"}\n\n"));
}

TEST_F(ConsoleOutletTest, LeavesOutWhatIsNotSelected) {
    EventFeed::Viewer viewer(feed);
    everything.names = {"Number"};
    put(*outlet.open("page", console));
    EXPECT_THAT(*viewer.take({}).events.at(0), testing::Not(HasSubstr("script")));
}

TEST_F(ConsoleOutletTest, CountsWhatIsPublishedAsSentAndWhatNobodySeesAsDropped) {
    const auto queue = outlet.open("page", console);
    put(*queue);
    EXPECT_EQ(counts(), "page 1 0 1 0");
    {
        const EventFeed::Viewer viewer(feed);
        put(*queue);
        put(*queue);
        EXPECT_EQ(counts(), "page 3 2 1 0");
        indication.set("Bad", Value::array(CimType::reference, {}));
        EXPECT_THROW(put(*queue), CimError) << "no form for it";
    }
    put(*queue);
    EXPECT_EQ(counts(), "page 5 2 3 0");
}

TEST_F(ConsoleOutletTest, LeavesTheOthersToTheOther) {
    EXPECT_FALSE(outlet.open("listener", {"localhost"}));
    EXPECT_EQ(others.opened, std::vector<std::string>{"listener"});
    EXPECT_EQ(outlet.manner().attempts, 7);
    outlet.open("page", console).reset();
    const auto counts = outlet.counts();
    ASSERT_EQ(counts.size(), 1U) << "a queue that is gone counts no more";
    EXPECT_EQ(counts[0].name, "other");
}

TEST_F(ConsoleOutletTest, RefusesTheConsoleWhereThereIsNone) {
    ConsoleOutlet without(others, nullptr);
    try {
        without.open("page", console);
        FAIL();
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::notSupported);
        EXPECT_STREQ(error.what(), "this server has no console to send indications to");
    }
}

}  // namespace
}  // namespace cimhost
