#include "providers/baseserver/ServerWatch.h"

#include "common/DataStoreTxt.h"
#include "tests/providers/baseserver/BaseServerFixture.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using baseserver::ServerWatch;
using std::chrono::seconds;

/// Root's marker: a link to a file that root owns whoever runs the test.
void put(const char* marker) { fs::create_symlink("/etc/passwd", RedirectedFiles::real(marker)); }

struct ServerWatchTest : BaseServerFixture {
    std::chrono::steady_clock::time_point now{};
    ServerWatch watch{host.broker(), host.logger(), [this] { return now; }};

    ServerWatchTest() {
        PYL::setDataStoreLogger(host.logger());
        machine.write("/proc/sys/kernel/random/boot_id", "0d7a1f0e-1111-4222-8333-444455556666");
    }

    using Summaries = std::vector<std::string>;

    Summaries raised() {
        Summaries summaries;
        for (const auto& each : host.alerts().take()) summaries.push_back(each["Summary"].text());
        return summaries;
    }
    Summaries look() {
        watch.look(host.context());
        return raised();
    }
};

TEST_F(ServerWatchTest, GreetsOnceAndTellsABootOnce) {
    EXPECT_EQ(look(), (Summaries{"WBEM Providers started ", "OS boot completed"}));
    EXPECT_EQ(look(), Summaries{});
    ServerWatch restarted(host.broker(), host.logger(), [this] { return now; });
    restarted.look(host.context());
    EXPECT_EQ(raised(), Summaries{"WBEM Providers started "});
}

TEST_F(ServerWatchTest, BeatsWhileTheSwitchIsOn) {
    look();
    put("/tmp/PYL.heartbeats");
    EXPECT_EQ(look(), Summaries{"Base Server Heart Beat indication Id:1"});
    EXPECT_EQ(look(), Summaries{});
    now += ServerWatch::heartBeatInterval;
    EXPECT_EQ(look(), Summaries{"Base Server Heart Beat indication Id:2"});
    fs::remove(RedirectedFiles::real("/tmp/PYL.heartbeats"));
    now += ServerWatch::heartBeatInterval;
    EXPECT_EQ(look(), Summaries{});
    put("/tmp/PYL.heartbeats");
    EXPECT_EQ(look(), Summaries{"Base Server Heart Beat indication Id:3"});
}

TEST_F(ServerWatchTest, BeatsFasterAfterTheTriggerForIt) {
    look();
    put("/tmp/PYL.heartbeats");
    look();
    now += ServerWatch::shortInterval;
    EXPECT_EQ(look(), Summaries{});
    put("/tmp/PYL.EVConf");
    EXPECT_EQ(look(), Summaries{"Base Server Heart Beat indication Id:2"});
    EXPECT_FALSE(fs::is_symlink(RedirectedFiles::real("/tmp/PYL.EVConf")));
    now += ServerWatch::shortInterval;
    EXPECT_EQ(look(), Summaries{"Base Server Heart Beat indication Id:3"});
}

TEST_F(ServerWatchTest, RaisesTheThreeTestEventsAtEachTrigger) {
    look();
    put("/tmp/PYL.test");
    EXPECT_EQ(look(), (Summaries{"Test Event Id: 1", "Test Event Id: 2", "Test Event Id: 3"}));
    EXPECT_EQ(look(), Summaries{});
    put("/tmp/PYL.test");
    EXPECT_EQ(look(), (Summaries{"Test Event Id: 4", "Test Event Id: 5", "Test Event Id: 6"}));
}

TEST_F(ServerWatchTest, TakesNoTriggerOfAnybodyElse) {
    look();
    const auto marker = RedirectedFiles::real("/tmp/PYL.test");
    std::ofstream(marker).close();
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(marker.c_str(), 65534, 65534), 0);
    }
    EXPECT_EQ(look(), Summaries{});
    EXPECT_FALSE(fs::exists(marker));
}

TEST_F(ServerWatchTest, WatchesUntilItIsStopped) {
    watch.start(host.context());
    host.alerts().waitFor("OS boot completed");
    watch.stop();
    raised();
    put("/tmp/PYL.test");
    EXPECT_TRUE(fs::is_symlink(RedirectedFiles::real("/tmp/PYL.test"))) << "nobody looks";
    EXPECT_EQ(raised(), Summaries{});
    watch.start(host.context());
    host.alerts().waitFor("Test Event Id: 3");
    watch.stop();
    EXPECT_EQ(raised(), (Summaries{"Test Event Id: 1", "Test Event Id: 2", "Test Event Id: 3"}));
}

}  // namespace
