#include "cimhost/indications/IndicationRoutes.h"

#include "cimhost/query/WqlParser.h"
#include "tests/cimhost/indications/IndicationFixture.h"
#include "tests/support/BrokerFixture.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace cimhost {
namespace {

using Texts = std::vector<std::string>;

class FailingQueue final : public IndicationQueue {
public:
    void put(const OutgoingIndication&) override { throw std::runtime_error("cannot be written"); }
};

class IndicationRoutesTest : public testing::Test {
protected:
    IndicationRoutesTest() {
        NameSpace& nameSpace = repository.make("root/test");
        Class alarm;
        alarm.name = "TST_Alarm";
        nameSpace.addClass(alarm);
        Class loud;
        loud.name = "TST_Loud";
        loud.superClass = "TST_Alarm";
        nameSpace.addClass(loud);
    }

    std::shared_ptr<const IndicationRoute> route(const std::string& name, const std::string& text,
                                                 std::shared_ptr<IndicationQueue> queue = {}) {
        auto query = std::make_shared<const WqlQuery>(parseQuery("WQL", text));
        PropertySelection selection = selectionOf(*query);
        if (!queue) queue = outlet.open(name, {});
        return std::make_shared<const IndicationRoute>(
            IndicationRoute{{"root/test"}, query, name, selection, queue});
    }

    void deliver(const Instance& indication, std::string_view nameSpace = "root/test") {
        routes.deliver({}, nameSpace, indication);
    }

    Repository repository;
    CapturingLog log;
    RecordingOutlet outlet;
    IndicationRoutes routes{repository, log};
};

TEST_F(IndicationRoutesTest, BringIndicationsToEveryoneWhoseFilterSelectsThem) {
    routes.set({route("all", "SELECT * FROM TST_Alarm"),
                route("some", "SELECT * FROM TST_Alarm WHERE Number > 1"),
                route("loud", "SELECT * FROM TST_Loud")});
    deliver(indicationOf("TST_Alarm", 1));
    EXPECT_EQ(outlet.take(), (Texts{"all<all:TST_Alarm.1"}));
    deliver(indicationOf("TST_Loud", 2));
    EXPECT_EQ(outlet.take(),
              (Texts{"all<all:TST_Loud.2", "some<some:TST_Loud.2", "loud<loud:TST_Loud.2"}));
}

TEST_F(IndicationRoutesTest, ComeFromTheirNamespacesOnly) {
    routes.set({route("all", "SELECT * FROM TST_Alarm")});
    deliver(indicationOf("TST_Alarm", 1), "root/other");
    EXPECT_EQ(outlet.take(), Texts{});
    deliver(indicationOf("TST_Alarm", 1), "/ROOT/Test/");
    EXPECT_EQ(outlet.take().size(), 1U);
}

TEST_F(IndicationRoutesTest, SelectWhatTheQueryNamesAndTheSequence) {
    routes.set({route("few", "SELECT Number FROM TST_Alarm")});
    Instance indication = indicationOf("TST_Alarm", 7);
    indication.set("Text", Value::string("left out"));
    indication.set("SequenceContext", Value::string("kept"));
    deliver(indication);
    EXPECT_EQ(outlet.take(), (Texts{"few<few:TST_Alarm.7.SequenceContext"}));
}

TEST_F(IndicationRoutesTest, GoOnAfterOneThatFails) {
    routes.set({route("bad", "SELECT * FROM TST_Alarm", std::make_shared<FailingQueue>()),
                route("good", "SELECT * FROM TST_Alarm")});
    deliver(indicationOf("TST_Alarm", 1));
    EXPECT_EQ(outlet.take().size(), 1U);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].message, "cannot be written");
}

TEST_F(IndicationRoutesTest, AreGoneWhenOthersAreSet) {
    routes.set({route("old", "SELECT * FROM TST_Alarm")});
    routes.set({});
    deliver(indicationOf("TST_Alarm", 1));
    EXPECT_EQ(outlet.take(), Texts{});
}

}  // namespace
}  // namespace cimhost
