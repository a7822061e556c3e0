#include "cimhost/http/ListenSocket.h"

#include "tests/support/Thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::HasSubstr;

std::string refusalOf(const std::string& address, std::uint16_t port) {
    return cimhost::refusalOf<std::runtime_error>(
        [&] { const ListenSocket socket(address, port); });
}

TEST(ListenSocket, TakesAFreePort) {
    const ListenSocket socket("127.0.0.1", 0);
    EXPECT_NE(socket.port(), 0);
    EXPECT_EQ(socket.name(), "127.0.0.1:" + std::to_string(socket.port()));
}

TEST(ListenSocket, TakesTheLoopbackByName) {
    EXPECT_THAT(ListenSocket("localhost", 0).name(), testing::StartsWith("127.0.0.1:"));
}

TEST(ListenSocket, NamesAPortInUse) {
    const ListenSocket socket("127.0.0.1", 0);
    EXPECT_THAT(
        refusalOf("127.0.0.1", socket.port()),
        HasSubstr("127.0.0.1 port " + std::to_string(socket.port()) + ": Address already in use"));
}

TEST(ListenSocket, FreesThePortWhenItCloses) {
    ListenSocket socket("127.0.0.1", 0);
    socket.close();
    EXPECT_EQ(refusalOf("127.0.0.1", socket.port()), "");
}

TEST(ListenSocket, AsksNoNameServer) {
    EXPECT_THAT(refusalOf("example.invalid", 0), HasSubstr("not a numeric address"));
    EXPECT_THAT(refusalOf("", 0), HasSubstr("not a numeric address"));
    EXPECT_NE(refusalOf("192.0.2.1", 0), "") << "an address of another machine";
}

TEST(ListenSocket, WritesIpv6AddressesInBrackets) {
    if (refusalOf("::1", 0) != "") {
        GTEST_SKIP() << "no IPv6 here";
    }
    EXPECT_THAT(ListenSocket("::1", 0).name(), testing::StartsWith("[::1]:"));
}

TEST(IsLoopback, KnowsTheAddressesThatStayOnThisMachine) {
    for (const std::string address :
         {"127.0.0.1", "127.1.2.3", "127.255.255.255", "::1", "localhost"}) {
        EXPECT_TRUE(isLoopback(address)) << address;
    }
    for (const std::string address : {"0.0.0.0", "::", "126.255.255.255", "128.0.0.0", "10.0.0.1",
                                      "::ffff:127.0.0.1", "::2", "example.invalid", ""}) {
        EXPECT_FALSE(isLoopback(address)) << address;
    }
}

}  // namespace
}  // namespace cimhost
