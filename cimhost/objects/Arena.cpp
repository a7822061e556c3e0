#include "cimhost/objects/Arena.h"

#include <cassert>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace cimhost {

namespace {

constexpr std::size_t chunkSize = 32 * 1024;
constexpr std::size_t chunkHeader = 32;  // keeps blocks aligned
constexpr std::size_t cacheCapacity = 4;

// Outlives the cache: an arena may end later in the exit of a thread than the cache does.
constinit thread_local bool cacheIsGone = false;

// Under AddressSanitizer, memory that no object has is out of bounds like any other. The first
// bytes of a recycled block stay readable: by them a handle is told to be no longer one.
#if defined(__SANITIZE_ADDRESS__)
void forbid(const void* memory, std::size_t size) { __asan_poison_memory_region(memory, size); }
void permit(const void* memory, std::size_t size) { __asan_unpoison_memory_region(memory, size); }
#else
void forbid(const void*, std::size_t) {}
void permit(const void*, std::size_t) {}
#endif

constexpr std::size_t readableWhenFree = 16;

}  // namespace

/// Chunks of arenas that ended on this thread, for the next ones.
class ChunkCache {
public:
    constexpr ChunkCache() = default;
    ~ChunkCache() {
        while (Arena::Chunk* const chunk = _take()) std::free(chunk);
        cacheIsGone = true;
    }

    Arena::Chunk* get() {
        if (Arena::Chunk* const chunk = _take()) return chunk;
        void* const memory = std::malloc(chunkSize);
        if (!memory) throw std::bad_alloc();
        return ::new (memory) Arena::Chunk{nullptr};
    }

    void put(Arena::Chunk* chunk) noexcept {
        if (_count == cacheCapacity) {
            std::free(chunk);
            return;
        }
        chunk->next = _chunks;
        _chunks = chunk;
        ++_count;
    }

private:
    Arena::Chunk* _take() noexcept {
        Arena::Chunk* const chunk = _chunks;
        if (chunk) {
            _chunks = chunk->next;
            --_count;
        }
        return chunk;
    }

    Arena::Chunk* _chunks = nullptr;
    std::size_t _count = 0;
};

namespace {

constinit thread_local ChunkCache chunkCache;

}  // namespace

Arena::~Arena() {
    while (_chunks) {
        Chunk* const chunk = _chunks;
        _chunks = chunk->next;
        permit(chunk, chunkSize);
        if (cacheIsGone) {
            std::free(chunk);
        } else {
            chunkCache.put(chunk);
        }
    }
}

void* Arena::allocate(std::size_t size) {
    assert(size > 0 && size <= largestBlock);
    const std::size_t index = (size - 1) / granularity;
    if (FreeBlock* const block = _recycled[index]) {
        _recycled[index] = block->next;
        permit(block, size);
        return block;
    }
    const std::size_t rounded = (index + 1) * granularity;
    if (static_cast<std::size_t>(_end - _free) < rounded) _addChunk();
    void* const block = _free;
    _free += rounded;
    permit(block, size);
    return block;
}

void Arena::recycle(void* block, std::size_t size) noexcept {
    const std::size_t index = (size - 1) / granularity;
    _recycled[index] = ::new (block) FreeBlock{_recycled[index]};
    forbid(static_cast<std::byte*>(block) + readableWhenFree,
           (index + 1) * granularity - readableWhenFree);
}

void Arena::_addChunk() {
    Chunk* const chunk = chunkCache.get();
    chunk->next = _chunks;
    _chunks = chunk;
    _free = reinterpret_cast<std::byte*>(chunk) + chunkHeader;
    _end = reinterpret_cast<std::byte*>(chunk) + chunkSize;
    forbid(_free, chunkSize - chunkHeader);
}

}  // namespace cimhost
