#include "cimhost/server/events/EventFeed.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

namespace cimhost {
namespace {

using Clock = std::chrono::steady_clock;

Clock::time_point soon() { return Clock::now() + std::chrono::seconds(60); }

/// All that waits, and what is written in place of dropped events.
std::string textOf(const EventFeed::Batch& batch) {
    std::string text = batch.dropped == 0 ? "" : "-" + std::to_string(batch.dropped) + "\n";
    for (const EventFeed::Event& event : batch.events) text += *event;
    return text;
}

TEST(EventFeed, TellsAllWhoLookInOrder) {
    EventFeed feed;
    EventFeed::Viewer first(feed);
    EXPECT_TRUE(feed.publish("log", "{1}"));
    EventFeed::Viewer second(feed);
    EXPECT_TRUE(feed.publish("request", "{2}"));
    EXPECT_EQ(textOf(first.take(soon())), "event: log\ndata: {1}\n\nevent: request\ndata: {2}\n\n");
    EXPECT_EQ(textOf(second.take(soon())), "event: request\ndata: {2}\n\n");
}

TEST(EventFeed, IsOneTextForAllViewers) {
    EventFeed feed;
    EventFeed::Viewer first(feed);
    EventFeed::Viewer second(feed);
    feed.publish("log", "{}");
    EXPECT_EQ(first.take(soon()).events.front(), second.take(soon()).events.front());
}

TEST(EventFeed, IsWatchedWhileSomebodyLooks) {
    EventFeed feed;
    EXPECT_FALSE(feed.isWatched());
    EXPECT_FALSE(feed.publish("log", "{}"));
    std::optional<EventFeed::Viewer> first(std::in_place, feed);
    std::optional<EventFeed::Viewer> second(std::in_place, feed);
    first.reset();
    EXPECT_TRUE(feed.isWatched());
    second.reset();
    EXPECT_FALSE(feed.isWatched());
}

TEST(EventFeed, DropsTheOldestAndCountsThem) {
    EventFeed feed;
    EventFeed::Viewer viewer(feed);
    for (std::size_t i = 0; i < EventFeed::queueEvents + 3; ++i) {
        feed.publish("log", std::to_string(i));
    }
    const EventFeed::Batch batch = viewer.take(soon());
    EXPECT_EQ(batch.dropped, 3U);
    ASSERT_EQ(batch.events.size(), EventFeed::queueEvents);
    EXPECT_EQ(*batch.events.front(), "event: log\ndata: 3\n\n");
    feed.publish("log", "next");
    EXPECT_EQ(textOf(viewer.take(soon())), "event: log\ndata: next\n\n") << "told once";
}

TEST(EventFeed, KeepsNoMoreThanItsBytes) {
    EventFeed feed;
    EventFeed::Viewer viewer(feed);
    const std::string large(EventFeed::queueBytes / 2, 'x');
    feed.publish("log", "small");
    feed.publish("log", large);
    feed.publish("log", large);
    EventFeed::Batch batch = viewer.take(soon());
    EXPECT_EQ(batch.dropped, 2U);
    EXPECT_EQ(batch.events.size(), 1U);
    feed.publish("log", large + large);
    batch = viewer.take(soon());
    EXPECT_EQ(batch.dropped, 1U);
    EXPECT_TRUE(batch.events.empty()) << "one that fits nowhere";
}

TEST(EventFeed, WakesItsViewersAtItsEnd) {
    EventFeed feed;
    EventFeed::Viewer viewer(feed);
    feed.publish("log", "last");
    std::thread end([&] { feed.end(); });
    EXPECT_FALSE(viewer.pause(soon()));
    end.join();
    EXPECT_EQ(textOf(viewer.take(soon())), "event: log\ndata: last\n\n");
    EXPECT_TRUE(viewer.take(soon()).events.empty()) << "at once";
    EXPECT_FALSE(feed.isWatched());
    EXPECT_FALSE(feed.publish("log", "late"));
    EventFeed::Viewer late(feed);
    EXPECT_TRUE(late.take(soon()).events.empty());
    EXPECT_FALSE(feed.isWatched());
}

TEST(EventFeed, GivesNothingAtTheDeadline) {
    EventFeed feed;
    EventFeed::Viewer viewer(feed);
    EXPECT_TRUE(viewer.take(Clock::now()).events.empty());
    EXPECT_TRUE(viewer.pause(Clock::now()));
}

TEST(EventFeed, LosesNothingUncountedBetweenThreads) {
    constexpr std::size_t writers = 4;
    constexpr std::size_t each = 5000;
    EventFeed feed;
    EventFeed::Viewer viewer(feed);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < writers; ++i) {
        threads.emplace_back([&] {
            for (std::size_t j = 0; j < each; ++j) {
                if (feed.isWatched()) feed.publish("log", "{}");
            }
        });
    }
    threads.emplace_back([&] {
        for (std::size_t i = 0; i < 100; ++i) const EventFeed::Viewer passing(feed);
    });
    std::size_t count = 0;
    while (count < writers * each) {
        const EventFeed::Batch batch = viewer.take(soon());
        ASSERT_TRUE(batch.dropped != 0 || !batch.events.empty());
        count += batch.dropped + batch.events.size();
    }
    EXPECT_EQ(count, writers * each);
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace cimhost
