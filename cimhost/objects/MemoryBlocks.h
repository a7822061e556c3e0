#pragma once

#include <array>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace cimhost {

/// The memory blocks that providers asked for and have not given back; all are freed with the
/// broker. Safe from several threads. Addresses are looked up before they are touched, so that a
/// foreign or twice freed one is told without harm.
class MemoryBlocks {
public:
    /// What a block may be given back with.
    enum class Use : unsigned char { block, text };

    MemoryBlocks() = default;
    ~MemoryBlocks();
    MemoryBlocks(const MemoryBlocks&) = delete;
    MemoryBlocks& operator=(const MemoryBlocks&) = delete;

    /// As malloc, calloc and realloc, nullptr on failure; a failed resize leaves the block alone,
    /// and so does one of a block that is not ours.
    void* allocate(std::size_t size) noexcept;
    void* allocateZeroed(std::size_t count, std::size_t size) noexcept;
    void* resize(void* block, std::size_t size) noexcept;

    /// A copy that ends with two zero bytes, enough for UTF-16 too. Throws std::bad_alloc.
    char* copyText(std::string_view bytes);

    /// False when the address is no block of this use.
    bool free(void* block, Use use) noexcept;

    std::size_t count() noexcept;

private:
    struct Block {
        std::size_t size;
        Use use;
    };
    struct Shard {
        std::mutex mutex;
        std::unordered_map<void*, Block> blocks;
    };

    Shard& _shardOf(const void* block) noexcept;
    void* _record(void* block, std::size_t size, Use use) noexcept;
    std::optional<std::size_t> _sizeOf(void* block) noexcept;
    bool _forget(void* block, Use use) noexcept;

    std::array<Shard, 16> _shards;
};

}  // namespace cimhost
