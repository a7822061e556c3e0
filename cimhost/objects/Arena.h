#pragma once

#include <array>
#include <cstddef>

/// Memory for the many small objects of one call: taken from chunks, all given back at once.
namespace cimhost {

/// Not safe from several threads. Freed chunks are kept for the thread's next arena, up to a few.
class Arena {
public:
    static constexpr std::size_t largestBlock = 512;

    Arena() = default;
    ~Arena();
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    /// A block for any object that needs no more than 16 bytes of alignment; `size` is at most
    /// largestBlock. Throws std::bad_alloc.
    void* allocate(std::size_t size);

    /// Makes the block available to the next allocation of this size.
    void recycle(void* block, std::size_t size) noexcept;

private:
    struct Chunk {
        Chunk* next;
    };
    struct FreeBlock {
        FreeBlock* next;
    };
    friend class ChunkCache;

    static constexpr std::size_t granularity = 16;

    void _addChunk();

    Chunk* _chunks = nullptr;
    std::byte* _free = nullptr;
    std::byte* _end = nullptr;
    std::array<FreeBlock*, largestBlock / granularity> _recycled{};
};

}  // namespace cimhost
