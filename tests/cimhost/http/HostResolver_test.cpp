#include "cimhost/http/HostResolver.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <netinet/in.h>

#include <atomic>
#include <condition_variable>
#include <future>
#include <thread>

namespace cimhost {
namespace {

using namespace std::chrono_literals;

/// What the system's look-up does with the names of these tests; every other goes to the system.
class NameService {
public:
    static NameService& instance() {
        static NameService* service = new NameService;  // look-ups may outlive main()
        return *service;
    }

    static bool isOurs(const char* host, int flags) noexcept {
        return host != nullptr && (flags & AI_NUMERICHOST) == 0 &&
               std::string_view(host).ends_with(".test");
    }

    /// 127.0.0.7 for "known.test", nothing for others; "slow.test" is known once it is let go.
    int answer(const char* host) {
        ++lookUps;
        if (std::string_view(host) == "slow.test") {
            std::unique_lock lock(_mutex);
            _changed.wait(lock, [this] { return !_isHanging; });
        }
        return std::string_view(host) == "unknown.test" ? EAI_NONAME : 0;
    }

    void hang() {
        const std::lock_guard lock(_mutex);
        _isHanging = true;
    }
    void letGo() {
        const std::lock_guard lock(_mutex);
        _isHanging = false;
        _changed.notify_all();
    }

    std::atomic<int> lookUps = 0;

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _isHanging = false;
};

struct HostResolverTest : testing::Test {
    HostResolverTest() { names.lookUps = 0; }
    ~HostResolverTest() override { names.letGo(); }

    static std::string failure(HostResolver& resolver, Clock::duration time = 60s) {
        try {
            resolver.resolve(Clock::now() + time);
            return "none";
        } catch (const StreamError& error) {
            const bool isTimeout = error.kind() == StreamError::Kind::timeout;
            return (isTimeout ? "timeout: " : "lost: ") + std::string(error.what());
        }
    }

    NameService& names = NameService::instance();
};

in_addr_t firstAddress(const std::vector<SocketAddress>& addresses) {
    const auto* address = reinterpret_cast<const sockaddr_in*>(&addresses.at(0).storage);
    return address->sin_family == AF_INET ? ntohl(address->sin_addr.s_addr) : 0;
}

TEST_F(HostResolverTest, FindsTheAddressAndPortOfAHost) {
    const auto found = HostResolver("known.test", 5988).resolve(Clock::now() + 60s);
    EXPECT_EQ(firstAddress(found), 0x7F000007U);
    EXPECT_EQ(found.at(0).size, sizeof(sockaddr_in));
    EXPECT_EQ(ntohs(reinterpret_cast<const sockaddr_in*>(&found.at(0).storage)->sin_port), 5988);
}

TEST_F(HostResolverTest, AsksNobodyForLocalhostAndNumbers) {
    EXPECT_EQ(HostResolver("localhost", 1).resolve(Clock::now()).size(), 2U);
    EXPECT_EQ(firstAddress(HostResolver("127.0.0.9", 1).resolve(Clock::now())), 0x7F000009U);
    EXPECT_EQ(HostResolver("::1", 1).resolve(Clock::now()).size(), 1U);
    EXPECT_EQ(names.lookUps, 0);
}

TEST_F(HostResolverTest, NamesAHostThatNobodyKnowsAndAsksAgain) {
    HostResolver resolver("unknown.test", 1);
    const std::string expected =
        std::string("lost: host unknown.test is not known: ") + gai_strerror(EAI_NONAME);
    EXPECT_EQ(failure(resolver), expected);
    EXPECT_EQ(failure(resolver), expected);
    EXPECT_EQ(names.lookUps, 2);
}

TEST_F(HostResolverTest, GivesUpAtTheDeadlineAndTakesTheSameLookUpLater) {
    names.hang();
    HostResolver resolver("slow.test", 1);
    EXPECT_EQ(failure(resolver, 1ms), "timeout: looking up host slow.test took too long");
    EXPECT_EQ(failure(resolver, 1ms), "timeout: looking up host slow.test took too long");
    names.letGo();
    EXPECT_EQ(resolver.resolve(Clock::now() + 60s).size(), 1U);
    EXPECT_EQ(names.lookUps, 1);
}

TEST_F(HostResolverTest, EndsALookUpThatHangsWhenAborted) {
    names.hang();
    HostResolver resolver("slow.test", 1);
    auto outcome = std::async(std::launch::async, [&] { return failure(resolver); });
    while (names.lookUps == 0) std::this_thread::yield();
    resolver.abort();
    EXPECT_EQ(outcome.get(), "lost: delivery ends");
}

TEST_F(HostResolverTest, BeginsNoLookUpAfterAnAbort) {
    HostResolver resolver("known.test", 1);
    resolver.abort();
    EXPECT_EQ(failure(resolver), "lost: delivery ends");
    EXPECT_EQ(names.lookUps, 0);
}

TEST_F(HostResolverTest, OutlivesItsOwner) {
    names.hang();
    {
        HostResolver resolver("slow.test", 1);
        EXPECT_EQ(failure(resolver, 1ms), "timeout: looking up host slow.test took too long");
    }
    names.letGo();
}

/// One resolver a round, aborted again and again from about the moment when its look-up ends.
bool resolveAgainstAbort(std::chrono::microseconds delay) {
    HostResolver resolver("known.test", 1);
    std::atomic<bool> begins = false;
    std::thread aborting([&] {
        while (!begins) std::this_thread::yield();
        while (NameService::instance().lookUps == 0) std::this_thread::yield();
        const auto end = Clock::now() + delay;
        while (Clock::now() < end) std::this_thread::yield();
        for (int i = 0; i < 200; ++i) resolver.abort();
    });
    NameService::instance().lookUps = 0;
    begins = true;
    std::string outcome = "found";
    try {
        resolver.resolve(Clock::now() + 60s);
    } catch (const StreamError& error) {
        outcome = error.what();
    }
    aborting.join();
    return outcome == "found" || outcome == "delivery ends";
}

TEST_F(HostResolverTest, IsAbortedAtAnyMomentOfALookUp) {
    struct Rounds {
        std::atomic<int> done = 0;
        std::atomic<bool> isWrong = false;
    };
    constexpr int rounds = 4000;
    const auto shared = std::make_shared<Rounds>();
    // Left to itself when it hangs, so that this test fails rather than waits for ever.
    std::thread([shared] {
        while (shared->done < rounds) {
            const std::chrono::microseconds delay(shared->done % 64);
            if (!resolveAgainstAbort(delay)) shared->isWrong = true;
            ++shared->done;
        }
    }).detach();
    int seen = -1;
    while (shared->done != seen && shared->done < rounds) {
        seen = shared->done;
        for (int i = 0; i < 1000 && shared->done == seen; ++i) std::this_thread::sleep_for(10ms);
    }
    EXPECT_EQ(shared->done, rounds) << "hangs in round " << shared->done;
    EXPECT_FALSE(shared->isWrong);
}

}  // namespace
}  // namespace cimhost

/// In the place of the C library's for the whole test program.
extern "C" int getaddrinfo(const char* host, const char* port, const addrinfo* hints,
                           addrinfo** found) {
    using Function = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getaddrinfo"));
    if (!cimhost::NameService::isOurs(host, hints != nullptr ? hints->ai_flags : 0)) {
        return real(host, port, hints, found);
    }
    const int error = cimhost::NameService::instance().answer(host);
    return error != 0 ? error : real("127.0.0.7", port, hints, found);
}
