#include "cimhost/objects/MemoryBlocks.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace cimhost {

MemoryBlocks::~MemoryBlocks() {
    for (Shard& shard : _shards) {
        for (const auto& [block, facts] : shard.blocks) std::free(block);
    }
}

std::size_t MemoryBlocks::count() noexcept {
    std::size_t blocks = 0;
    for (Shard& shard : _shards) {
        const std::lock_guard lock(shard.mutex);
        blocks += shard.blocks.size();
    }
    return blocks;
}

MemoryBlocks::Shard& MemoryBlocks::_shardOf(const void* block) noexcept {
    // The low four bits are the same for all blocks.
    return _shards[(reinterpret_cast<std::uintptr_t>(block) >> 4U) % _shards.size()];
}

void* MemoryBlocks::_record(void* block, std::size_t size, Use use) noexcept {
    if (!block) return nullptr;
    try {
        Shard& shard = _shardOf(block);
        const std::lock_guard lock(shard.mutex);
        shard.blocks.emplace(block, Block{size, use});
        return block;
    } catch (const std::bad_alloc&) {
        std::free(block);
        return nullptr;
    }
}

std::optional<std::size_t> MemoryBlocks::_sizeOf(void* block) noexcept {
    Shard& shard = _shardOf(block);
    const std::lock_guard lock(shard.mutex);
    const auto found = shard.blocks.find(block);
    if (found == shard.blocks.end() || found->second.use != Use::block) return std::nullopt;
    return found->second.size;
}

bool MemoryBlocks::_forget(void* block, Use use) noexcept {
    Shard& shard = _shardOf(block);
    const std::lock_guard lock(shard.mutex);
    const auto found = shard.blocks.find(block);
    if (found == shard.blocks.end() || found->second.use != use) return false;
    shard.blocks.erase(found);
    return true;
}

void* MemoryBlocks::allocate(std::size_t size) noexcept {
    return _record(std::malloc(size ? size : 1), size, Use::block);
}

void* MemoryBlocks::allocateZeroed(std::size_t count, std::size_t size) noexcept {
    if (count == 0 || size == 0) return _record(std::calloc(1, 1), 0, Use::block);
    // calloc refuses a product that overflows; then there is nothing to record.
    return _record(std::calloc(count, size), count * size, Use::block);
}

void* MemoryBlocks::resize(void* block, std::size_t size) noexcept {
    if (!block) return allocate(size);
    const std::optional<std::size_t> oldSize = _sizeOf(block);
    if (!oldSize) return nullptr;
    // Not realloc: recording the new place may fail too, and the old block must survive that.
    void* const moved = allocate(size);
    if (!moved) return nullptr;
    std::memcpy(moved, block, std::min(*oldSize, size));
    free(block, Use::block);
    return moved;
}

char* MemoryBlocks::copyText(std::string_view bytes) {
    const std::size_t size = bytes.size() + 2;
    auto* const text = static_cast<char*>(_record(std::calloc(size, 1), size, Use::text));
    if (!text) throw std::bad_alloc();
    if (!bytes.empty()) std::memcpy(text, bytes.data(), bytes.size());
    return text;
}

bool MemoryBlocks::free(void* block, Use use) noexcept {
    if (!_forget(block, use)) return false;
    std::free(block);
    return true;
}

}  // namespace cimhost
