#include "platform/ipmi/detail/VmCodec.h"

#include "platform/ipmi/detail/BmcWays.h"

#include <gtest/gtest.h>

namespace {

using ipmi::commandMark;
using ipmi::decodeResponse;
using ipmi::encodeRequest;
using ipmi::escapeMark;
using ipmi::messageMark;
using ipmi::parseWay;
using ipmi::VmFrames;
using Bytes = std::vector<std::uint8_t>;

/// The frames in a stream, each with its kind.
std::vector<std::pair<VmFrames::Found, Bytes>> framesOf(const Bytes& stream) {
    VmFrames frames;
    std::vector<std::pair<VmFrames::Found, Bytes>> all;
    for (const auto byte : stream) {
        const auto found = frames.take(byte);
        if (found != VmFrames::Found::nothing) all.emplace_back(found, frames.frame());
    }
    return all;
}

TEST(VmCodec, ClosesAMessageWithItsChecksumAndMark) {
    EXPECT_EQ(encodeRequest({0x06, 0x01, {}}, 1), (Bytes{1, 0x18, 1, 0xE6, messageMark}));
}

TEST(VmCodec, EscapesMarks) {
    const auto wire = encodeRequest({0x06, 0x01, {messageMark, commandMark, escapeMark}}, 1);
    EXPECT_EQ(wire, (Bytes{1, 0x18, 1, 0xAA, 0xB0, 0xAA, 0xB1, 0xAA, 0xBA, 0xFB, messageMark}));
}

TEST(VmCodec, ReadsBackWhatItWrites) {
    for (int seed = 0; seed < 256; ++seed) {
        Bytes data;
        for (int i = 0; i < 240; ++i) data.push_back(static_cast<std::uint8_t>(seed * 7 + i * 13));
        const auto frames =
            framesOf(encodeRequest({0x06, 0x01, data}, static_cast<std::uint8_t>(seed)));
        ASSERT_EQ(frames.size(), 1U);
        EXPECT_EQ(frames[0].first, VmFrames::Found::message);
        EXPECT_EQ(Bytes(frames[0].second.begin() + 3, frames[0].second.end() - 1), data);
    }
}

TEST(VmCodec, TellsCommandsFromMessages) {
    const auto frames = framesOf({0xFF, 1, commandMark, 0x00, commandMark, 1, 2, messageMark});
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_EQ(frames[0], std::pair(VmFrames::Found::command, Bytes{0xFF, 1}));
    EXPECT_EQ(frames[1], std::pair(VmFrames::Found::command, Bytes{0}));
    EXPECT_EQ(frames[2], std::pair(VmFrames::Found::message, Bytes{1, 2}));
}

TEST(VmCodec, DoesNotKeepAStreamWithoutMarks) {
    VmFrames frames;
    for (std::size_t i = 0; i < VmFrames::longestFrame; ++i) {
        ASSERT_EQ(frames.take('x'), VmFrames::Found::nothing);
    }
    EXPECT_EQ(frames.take('x'), VmFrames::Found::tooLong);
}

TEST(VmCodec, TakesOnlyTheResponseToItsRequest) {
    const IpmiRequest request{0x06, 0x01, {}};
    const auto frame = [](Bytes bytes) {
        int sum = 0;
        for (const auto byte : bytes) sum += byte;
        bytes.push_back(static_cast<std::uint8_t>(-sum));
        return bytes;
    };
    const auto good = decodeResponse(frame({5, 0x1C, 1, 0xC0, 7, 8}), request, 5);
    ASSERT_TRUE(good);
    EXPECT_EQ(good->completionCode, 0xC0);
    EXPECT_EQ(good->data, (Bytes{7, 8}));
    EXPECT_TRUE(decodeResponse(frame({5, 0x1C, 1, 0}), request, 5));
    EXPECT_FALSE(decodeResponse(frame({4, 0x1C, 1, 0}), request, 5));
    EXPECT_FALSE(decodeResponse(frame({5, 0x18, 1, 0}), request, 5));
    EXPECT_FALSE(decodeResponse(frame({5, 0x1C, 2, 0}), request, 5));
    EXPECT_FALSE(decodeResponse(frame({5, 0x1C, 1}), request, 5));
    EXPECT_FALSE(decodeResponse({5, 0x1C, 1, 0, 0}, request, 5));
    EXPECT_FALSE(decodeResponse({}, request, 5));
}

TEST(BmcWay, IsReadFromOneLine) {
    const auto way = parseWay("vm localhost 9002\nwhatever\n");
    ASSERT_TRUE(way);
    EXPECT_EQ(way->host, "localhost");
    EXPECT_EQ(way->port, "9002");
    EXPECT_TRUE(parseWay("  vm\t::1   9002  "));
    for (const auto* text :
         {"", "\n", "vm", "vm localhost", "lan localhost 623", "vm a b c", "VM a 1"}) {
        EXPECT_FALSE(parseWay(text)) << text;
    }
}

}  // namespace
