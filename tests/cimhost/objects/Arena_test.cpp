#include "cimhost/objects/Arena.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

namespace cimhost {
namespace {

TEST(Arena, GivesBlocksForObjectsOfAnyPlainAlignment) {
    Arena arena;
    for (std::size_t size = 1; size <= Arena::largestBlock; ++size) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(arena.allocate(size)) % 16, 0U) << size;
    }
}

TEST(Arena, KeepsBlocksApartAcrossItsChunks) {
    Arena arena;
    std::vector<unsigned char*> blocks;
    for (unsigned number = 0; number < 1000; ++number) {
        blocks.push_back(static_cast<unsigned char*>(arena.allocate(100)));
        std::memset(blocks.back(), static_cast<int>(number % 251), 100);
    }
    for (unsigned number = 0; number < blocks.size(); ++number) {
        ASSERT_EQ(blocks[number][0], number % 251);
        ASSERT_EQ(blocks[number][99], number % 251);
    }
}

TEST(Arena, GivesARecycledBlockToTheNextOfItsSize) {
    Arena arena;
    void* const first = arena.allocate(40);
    void* const second = arena.allocate(40);
    arena.recycle(first, 40);
    arena.recycle(second, 40);
    EXPECT_EQ(arena.allocate(48), second) << "sizes count by 16 bytes";
    EXPECT_EQ(arena.allocate(33), first);
}

TEST(Arena, GivesARecycledBlockToNoOtherSize) {
    Arena arena;
    void* const small = arena.allocate(16);
    void* const large = arena.allocate(Arena::largestBlock);
    arena.recycle(small, 16);
    arena.recycle(large, Arena::largestBlock);
    EXPECT_NE(arena.allocate(17), small);
    EXPECT_NE(arena.allocate(Arena::largestBlock - 16), large);
}

TEST(Arena, DoesNotGrowWhileBlocksAreRecycled) {
    Arena arena;
    std::set<void*> seen;
    for (int round = 0; round < 10'000; ++round) {
        void* const block = arena.allocate(64);
        seen.insert(block);
        arena.recycle(block, 64);
    }
    EXPECT_EQ(seen.size(), 1U);
}

TEST(Arena, LeavesItsMemoryToTheThreadsNextOne) {
    void* before = nullptr;
    {
        Arena arena;
        before = arena.allocate(16);
    }
    Arena next;
    EXPECT_EQ(next.allocate(16), before);
}

}  // namespace
}  // namespace cimhost
