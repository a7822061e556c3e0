#include "cimhost/objects/MemoryBlocks.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <thread>
#include <vector>

namespace cimhost {
namespace {

using Use = MemoryBlocks::Use;

TEST(MemoryBlocks, FreesWhatIsLeftAtItsEnd) {
    MemoryBlocks blocks;
    EXPECT_NE(blocks.allocate(100), nullptr);
    EXPECT_NE(blocks.copyText("text"), nullptr);
}

TEST(MemoryBlocks, FreesABlockOnce) {
    MemoryBlocks blocks;
    void* const block = blocks.allocate(8);
    EXPECT_TRUE(blocks.free(block, Use::block));
    EXPECT_FALSE(blocks.free(block, Use::block));
}

TEST(MemoryBlocks, FreesNeitherForeignBlocksNorOtherUses) {
    MemoryBlocks blocks;
    int foreign = 0;
    EXPECT_FALSE(blocks.free(&foreign, Use::block));
    char* const text = blocks.copyText("text");
    EXPECT_FALSE(blocks.free(text, Use::block));
    EXPECT_TRUE(blocks.free(text, Use::text));
}

TEST(MemoryBlocks, AllocatesEmptyBlocksToo) {
    MemoryBlocks blocks;
    void* const first = blocks.allocate(0);
    void* const second = blocks.allocateZeroed(0, 8);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_NE(first, second);
}

TEST(MemoryBlocks, ZeroesOnRequestAndSeesOverflow) {
    MemoryBlocks blocks;
    const auto* const bytes = static_cast<char*>(blocks.allocateZeroed(4, 4));
    EXPECT_EQ(std::string_view(bytes, 16),
              std::string_view("\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 16));
    // Not a constant, or the compiler would warn of the call.
    volatile std::size_t huge = std::numeric_limits<std::size_t>::max() / 2;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static_cast<void>(huge);  // sanitizers end the program instead of returning null
#else
    EXPECT_EQ(blocks.allocateZeroed(huge, 4), nullptr);
    void* const block = blocks.allocate(8);
    EXPECT_EQ(blocks.resize(block, huge), nullptr);
    EXPECT_TRUE(blocks.free(block, Use::block));
#endif
}

TEST(MemoryBlocks, KeepsTheContentWhenItResizes) {
    MemoryBlocks blocks;
    auto* block = static_cast<char*>(blocks.resize(nullptr, 4));
    std::memcpy(block, "abc", 4);
    block = static_cast<char*>(blocks.resize(block, 4000));
    EXPECT_STREQ(block, "abc");
    block = static_cast<char*>(blocks.resize(block, 2));
    EXPECT_EQ(std::string_view(block, 2), "ab");
    int foreign = 0;
    EXPECT_EQ(blocks.resize(&foreign, 4), nullptr);
}

TEST(MemoryBlocks, EndsTextsWithTwoZeroBytes) {
    MemoryBlocks blocks;
    const char* const text = blocks.copyText("ab");
    EXPECT_EQ(std::string_view(text, 4), std::string_view("ab\0\0", 4));
}

TEST(MemoryBlocks, ServesSeveralThreads) {
    MemoryBlocks blocks;
    const auto work = [&blocks] {
        for (std::size_t i = 1; i < 500; ++i) {
            void* const block = blocks.allocate(i);
            const bool isFreed = i % 2 != 0 || blocks.free(block, Use::block);
            EXPECT_TRUE(isFreed);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(work);
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace cimhost
