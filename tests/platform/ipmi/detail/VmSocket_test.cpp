// Controllers behind a socket that do not do what they should.

#include "platform/ipmi/Bmc.h"
#include "platform/ipmi/detail/BmcWays.h"
#include "platform/ipmi/detail/VmCodec.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <thread>

namespace {

using ipmi::commandMark;
using ipmi::escapeMark;
using ipmi::messageMark;
using ipmi::openVmSocket;
using ipmi::vmGreeting;
using Bytes = std::vector<std::uint8_t>;

/// Accepts one client and does with it what the test says.
class Listener {
public:
    explicit Listener(std::function<void(int)> serve) : _serve(std::move(serve)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        _descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ::bind(_descriptor, reinterpret_cast<sockaddr*>(&address), size);
        ::listen(_descriptor, 1);
        ::getsockname(_descriptor, reinterpret_cast<sockaddr*>(&address), &size);
        port = std::to_string(ntohs(address.sin_port));
        _thread = std::thread([this] {
            const int client = ::accept(_descriptor, nullptr, nullptr);
            if (client < 0) return;
            _serve(client);
            ::close(client);
        });
    }
    ~Listener() {
        ::shutdown(_descriptor, SHUT_RDWR);
        _thread.join();
        ::close(_descriptor);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::string port;

private:
    std::function<void(int)> _serve;
    int _descriptor = -1;
    std::thread _thread;
};

void send(int client, const Bytes& bytes) {
    EXPECT_EQ(::send(client, bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
}

/// Until the client is gone.
void waitForEnd(int client) {
    char buffer[256];
    while (::recv(client, buffer, sizeof buffer, 0) > 0) {
    }
}

/// A response frame, with or without a good checksum.
Bytes reply(std::uint8_t sequence, std::uint8_t command, std::uint8_t damage = 0) {
    Bytes frame{sequence, 0x1C, command, 0};
    int sum = 0;
    for (const auto byte : frame) sum += byte;
    frame.push_back(static_cast<std::uint8_t>(-sum + damage));
    frame.push_back(messageMark);
    return frame;
}

int exchange(const Listener& listener,
             std::chrono::milliseconds patience = std::chrono::seconds(20)) {
    std::unique_ptr<BmcTransport> transport;
    EXPECT_EQ(openVmSocket("127.0.0.1", listener.port, transport), 0);
    IpmiResponse response;
    return transport->exchange({0x06, 0x01, {}}, response,
                               std::chrono::steady_clock::now() + patience);
}

TEST(VmSocket, FindsItsAnswerAmongOthers) {
    const Listener listener([](int client) {
        send(client, vmGreeting());
        send(client, {0x00, commandMark});
        send(client, reply(9, 1));
        send(client, reply(1, 2));
        send(client, reply(1, 1, 1));
        send(client, {messageMark, messageMark, escapeMark, messageMark});
        send(client, reply(1, 1));
        waitForEnd(client);
    });
    EXPECT_EQ(exchange(listener), 0);
}

TEST(VmSocket, TakesAnAnswerInSinglePieces) {
    const Listener listener([](int client) {
        for (const auto byte : reply(1, 1)) send(client, {byte});
        waitForEnd(client);
    });
    EXPECT_EQ(exchange(listener), 0);
}

TEST(VmSocket, SaysThatTheControllerHungUp) {
    const Listener listener([](int) {});
    const int status = exchange(listener);
    EXPECT_TRUE(status == ECONNRESET || status == EPIPE) << status;
}

TEST(VmSocket, LeavesOnceTheControllerHasNoticedIt) {
    std::atomic<bool> noticed{false};
    const Listener listener([&](int client) {
        waitForEnd(client);
        send(client, reply(1, 1));  // a last word that nobody waits for
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        noticed = true;
    });
    std::unique_ptr<BmcTransport> transport;
    ASSERT_EQ(openVmSocket("127.0.0.1", listener.port, transport), 0);
    transport.reset();
    EXPECT_TRUE(noticed);
}

TEST(VmSocket, LeavesAControllerThatDoesNotCare) {
    std::promise<void> left;
    const Listener listener([&](int) { left.get_future().wait(); });
    std::unique_ptr<BmcTransport> transport;
    ASSERT_EQ(openVmSocket("127.0.0.1", listener.port, transport), 0);
    transport.reset();
    left.set_value();
}

TEST(VmSocket, GivesUpAtTheDeadline) {
    const Listener listener(waitForEnd);
    EXPECT_EQ(exchange(listener, std::chrono::milliseconds(30)), ETIMEDOUT);
}

TEST(VmSocket, GivesUpAtTheDeadlineOnAControllerThatKeepsAnsweringSomethingElse) {
    std::atomic<bool> isOver{false};
    const Listener listener([&](int client) {
        Bytes others;
        for (int i = 0; i < 500; ++i) {
            for (const auto byte : reply(9, 1)) others.push_back(byte);
        }
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (::send(client, others.data(), others.size(), MSG_NOSIGNAL) > 0) {
            if (std::chrono::steady_clock::now() > end) isOver = true;
            if (isOver) return;
        }
    });
    EXPECT_EQ(exchange(listener, std::chrono::milliseconds(30)), ETIMEDOUT);
    EXPECT_FALSE(isOver) << "the controller had to stop first";
}

TEST(VmSocket, GivesUpWhenItIsInterrupted) {
    std::promise<void> asked;
    const Listener listener([&](int client) {
        char byte = 0;
        ::recv(client, &byte, 1, 0);
        asked.set_value();
        waitForEnd(client);
    });
    const int interruption = ::eventfd(0, EFD_CLOEXEC);
    std::thread interrupting([&] {
        asked.get_future().wait();
        ::eventfd_write(interruption, 1);
    });
    {
        const BmcInterruption interruptible(interruption);
        EXPECT_EQ(exchange(listener, std::chrono::milliseconds(3'600'000)), ECANCELED);
    }
    interrupting.join();
    ::close(interruption);
    EXPECT_EQ(BmcInterruption::descriptor(), -1);
}

TEST(VmSocket, GivesUpOnAStreamWithoutEnd) {
    const Listener listener([](int client) {
        const Bytes junk(4096, 'x');
        while (::send(client, junk.data(), junk.size(), MSG_NOSIGNAL) > 0) {
        }
    });
    EXPECT_EQ(exchange(listener), EPROTO);
}

TEST(VmSocket, RefusesARequestThatIsTooLong) {
    const Listener listener(waitForEnd);
    std::unique_ptr<BmcTransport> transport;
    ASSERT_EQ(openVmSocket("127.0.0.1", listener.port, transport), 0);
    IpmiResponse response;
    EXPECT_EQ(
        transport->exchange({0x06, 0x01, Bytes(241)}, response, std::chrono::steady_clock::now()),
        EMSGSIZE);
}

/// Both ways to a controller wait by it. A descriptor without end stands for a controller that
/// always has something to say.
TEST(BmcWays, WaitsNoLongerThanTheDeadlineForWhatIsAlwaysReady) {
    const int endless = ::open("/dev/zero", O_RDONLY | O_CLOEXEC);
    const auto now = std::chrono::steady_clock::now();
    EXPECT_EQ(ipmi::waitFor(endless, POLLIN, now + std::chrono::seconds(20)), 0);
    EXPECT_EQ(ipmi::waitFor(endless, POLLIN, now), ETIMEDOUT);
    ::close(endless);
}

TEST(VmSocket, SaysWhereNobodyListens) {
    std::unique_ptr<BmcTransport> transport;
    EXPECT_EQ(openVmSocket("127.0.0.1", "1", transport), ECONNREFUSED);
    EXPECT_EQ(openVmSocket("no such host", "1", transport), EADDRNOTAVAIL);
    EXPECT_EQ(openVmSocket("127.0.0.1", "no such port", transport), EADDRNOTAVAIL);
    EXPECT_EQ(transport, nullptr);
}

}  // namespace
