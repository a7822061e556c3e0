// One collection, asked and changed from many threads at once. For the thread sanitizer above all.

#include "tests/common/CollectionFixture.h"
#include "tests/common/CollectionRequests.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

/// Instances that build their paths on each call, as those of providers do: handles belong to a
/// thread.
class LiveThing : public PYL::CmpiManagedInstance {
public:
    LiveThing(const TestBroker& host, std::string key, std::atomic<int>& alive)
        : _host(host), _key(std::move(key)), _alive(alive) {
        ++_alive;
    }
    ~LiveThing() override { --_alive; }

    CmpiCpp::CmpiObjectPath getPath() override { return _host.path("PYL_Thing", _key); }
    CmpiCpp::CmpiInstance getInstance() override {
        return CmpiCpp::makeCmpiInstance(_host.broker(), getPath());
    }
    CmpiCpp::CmpiName getClassName() override { return "PYL_Thing"; }

private:
    const TestBroker& _host;
    std::string _key;
    std::atomic<int>& _alive;
};

class LiveLink : public PYL::CmpiManagedInstanceAssociation {
public:
    LiveLink(const TestBroker& host, std::string left, std::string right)
        : _host(host), _left(std::move(left)), _right(std::move(right)) {}

    CmpiCpp::CmpiObjectPath getPath() override { return _host.path("PYL_Link", _left + _right); }
    CmpiCpp::CmpiInstance getInstance() override {
        return CmpiCpp::makeCmpiInstance(_host.broker(), getPath());
    }
    CmpiCpp::CmpiName getClassName() override { return "PYL_Link"; }
    CmpiCpp::CmpiObjectPath getAssociatedPath(const CmpiCpp::CmpiObjectPath& path) override {
        auto left = _host.path("PYL_Thing", _left);
        auto right = _host.path("PYL_Thing", _right);
        if (path == left) return right;
        if (path == right) return left;
        return {};
    }

private:
    const TestBroker& _host;
    std::string _left;
    std::string _right;
};

TEST(CollectionThreads, AskAddHideRemoveAndCleanUpAtOnce) {
    constexpr int threadCount = 8;
    constexpr int turns = 60;
    TestBroker host;
    Logger log = silentLogger();
    std::atomic<int> alive = 0;
    OpenCollection collection(log);
    for (const auto* key : {"a", "b", "c"}) {
        collection.createInstance(new LiveThing(host, key, alive));
    }
    collection.createInstance(new LiveLink(host, "a", "b"));
    collection.createInstance(new LiveLink(host, "a", "c"));
    collection.createInstance(new LiveLink(host, "a", "far"));
    host.onGetInstance = [&host](const CmpiCpp::CmpiObjectPath& path) {
        return CmpiCpp::makeCmpiInstance(host.broker(), path);
    };

    std::atomic<int> asked = 0;
    const auto work = [&](int thread) {
        for (int turn = 0; turn < turns; ++turn) {
            const cimhost::CallScope scope;
            const auto key = std::to_string(thread) + "-" + std::to_string(turn);
            auto* const own = new LiveThing(host, key, alive);
            collection.createInstance(own);
            EXPECT_EQ(collection.getManagedInstance(host.path("PYL_Thing", key)), own);
            const auto& requests = collectionRequests();
            const auto& request =
                requests[static_cast<std::size_t>(thread + turn) % requests.size()];
            EXPECT_GT(request.run(collection, host), 0) << request.name;
            ++asked;
            log.setLevel(turn % 2 == 0 ? LogLevel::error : LogLevel::information);
            if (turn % 2 == 0) {
                EXPECT_TRUE(collection.deleteInstance(host.path("PYL_Thing", key)));
            } else {
                own->setVisible(false);  // from here on anybody's clean-up deletes it
                if (turn % 3 == 0) collection.cleanup();
            }
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) threads.emplace_back(work, i);
    for (auto& thread : threads) thread.join();

    EXPECT_EQ(asked, threadCount * turns);
    collection.cleanup();
    EXPECT_EQ(collection.size(), 6U);
    EXPECT_EQ(alive, 3);
    EXPECT_FALSE(collection.isLocked());
}

}  // namespace
