#include "cimhost/http/PlainStream.h"

#include "cimhost/http/Descriptor.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <array>
#include <thread>

namespace cimhost {
namespace {

struct PlainStreamTest : testing::Test {
    Descriptor ours;
    Descriptor theirs;

    PlainStreamTest() {
        std::array<int, 2> pair{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, pair.data()),
                  0);
        ours = Descriptor(pair[0]);
        theirs = Descriptor(pair[1]);
    }

    PlainStream stream() const { return PlainStream(ours.get()); }
    PlainStream peer() const { return PlainStream(theirs.get()); }
    static Clock::time_point in(int milliseconds) {
        return Clock::now() + std::chrono::milliseconds(milliseconds);
    }
    static void send(PlainStream stream, std::initializer_list<std::string_view> pieces,
                     Clock::time_point deadline) {
        stream.send({pieces.begin(), pieces.size()}, deadline);
    }

    static StreamError::Kind failureOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const StreamError& error) {
            return error.kind();
        }
        throw std::logic_error("it did not fail");
    }
};

TEST_F(PlainStreamTest, SendsPiecesInOrder) {
    send(peer(), {"one ", "", "two"}, in(1000));
    std::array<char, 100> buffer;
    const std::size_t count = stream().receive(buffer, in(1000));
    EXPECT_EQ(std::string_view(buffer.data(), count), "one two");
}

TEST_F(PlainStreamTest, ReturnsNothingAtTheEnd) {
    peer().endSending();
    std::array<char, 100> buffer;
    EXPECT_EQ(stream().receive(buffer, in(1000)), 0U);
}

TEST_F(PlainStreamTest, KnowsThatThePeerHasSentItsLastBeforeAllIsRead) {
    send(peer(), {"one"}, in(1000));
    EXPECT_FALSE(stream().hasPeerEnded());
    peer().endSending();
    EXPECT_TRUE(stream().hasPeerEnded());
    std::array<char, 100> buffer;
    EXPECT_EQ(stream().receive(buffer, in(1000)), 3U);
}

TEST_F(PlainStreamTest, GivesUpAtTheDeadline) {
    std::array<char, 100> buffer;
    EXPECT_EQ(failureOf([&] { stream().receive(buffer, in(5)); }), StreamError::Kind::timeout);
    EXPECT_EQ(failureOf([&] { stream().receive(buffer, in(-5)); }), StreamError::Kind::timeout);
    const std::string much(10'000'000, 'x');
    EXPECT_EQ(failureOf([&] { send(stream(), {much}, in(5)); }), StreamError::Kind::timeout);
}

TEST_F(PlainStreamTest, SaysThatThePeerIsGoneAndRaisesNoSignal) {
    theirs.reset();
    EXPECT_EQ(failureOf([&] { send(stream(), {"x"}, in(1000)); }), StreamError::Kind::lost);
}

TEST_F(PlainStreamTest, SendsNoMoreThanThePeerTakesWithoutAWait) {
    const std::string_view parts[] = {"one ", "", "two"};
    EXPECT_EQ(stream().trySend(parts), 7U);
    const std::string much(10'000'000, 'x');
    const std::string_view piece = much;
    const std::size_t taken = stream().trySend({&piece, 1});
    EXPECT_GT(taken, 0U);
    EXPECT_LT(taken, much.size());
    EXPECT_EQ(stream().trySend({&piece, 1}), 0U);
    std::array<char, 100> buffer;
    EXPECT_EQ(std::string_view(buffer.data(), peer().receive(buffer, in(1000))).substr(0, 8),
              "one twox");
    theirs.reset();
    EXPECT_EQ(failureOf([&] { stream().trySend({&piece, 1}); }), StreamError::Kind::lost);
}

TEST_F(PlainStreamTest, SendsMoreThanTheSystemTakesAtOnce) {
    std::string much;
    for (int i = 0; i < 2'000'000; ++i) much += static_cast<char>('a' + i % 23);
    std::string received;
    std::thread reader([&] {
        std::array<char, 30'001> buffer;
        while (received.size() < 2 * much.size()) {
            received.append(buffer.data(), peer().receive(buffer, in(10'000)));
        }
    });
    send(stream(), {much, much}, in(10'000));
    reader.join();
    EXPECT_EQ(received, much + much);
}

}  // namespace
}  // namespace cimhost
