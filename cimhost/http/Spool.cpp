#include "cimhost/http/Spool.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>
#include <system_error>

namespace cimhost {
namespace {

/// What each reply that waits in a file has in memory: few bytes, as there may be many of them.
constexpr std::size_t pageBytes = 16 * 1024;

std::string folderOr(std::string folder) {
    if (!folder.empty()) return folder;
    const char* const variable = std::getenv("TMPDIR");
    return !variable || *variable == '\0' ? "/tmp" : variable;
}

std::size_t sizeOf(std::span<const std::string_view> pieces) noexcept {
    std::size_t size = 0;
    for (const std::string_view piece : pieces) size += piece.size();
    return size;
}

}  // namespace

std::string joined(std::span<const std::string_view> pieces, std::size_t skipped) {
    std::string block;
    block.reserve(sizeOf(pieces) - skipped);
    for (const std::string_view piece : pieces) {
        const std::size_t left = std::min(skipped, piece.size());
        block.append(piece.substr(left));
        skipped -= left;
    }
    return block;
}

SpoolStore::SpoolStore(std::uint64_t memoryBytes, std::uint64_t diskBytes, std::string wanted)
    : memory(ByteBudget::Kind::other, memoryBytes),
      disk(ByteBudget::Kind::other, diskBytes),
      folder(folderOr(std::move(wanted))) {}

void SpoolStore::noteWaiting(std::uint64_t replyBytes) noexcept {
    constexpr std::uint64_t trimBytes = 4 * 1024 * 1024;
    std::uint64_t bytes = untrimmed.fetch_add(replyBytes) + replyBytes;
    if (bytes >= trimBytes && untrimmed.compare_exchange_strong(bytes, 0)) malloc_trim(0);
}

void Spool::append(std::span<const std::string_view> pieces, std::size_t skipped) {
    const std::size_t size = sizeOf(pieces) - skipped;
    if (size == 0) return;
    const bool isOnDisk = _readAt < _writeAt;
    if (isOnDisk || !_memory.grow(size)) return _appendToFile(joined(pieces, skipped));
    try {
        _blocks.emplace_back(pieces, skipped, size);
    } catch (...) {
        _memory.shrink(size);
        throw;
    }
}

Spool::Block::Block(std::span<const std::string_view> pieces, std::size_t skipped, std::size_t size)
    : _data(static_cast<char*>(
          mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))),
      _size(size) {
    if (_data == MAP_FAILED) throw std::bad_alloc();
    char* end = _data;
    for (const std::string_view piece : pieces) {
        const std::string_view rest = piece.substr(std::min(skipped, piece.size()));
        skipped -= piece.size() - rest.size();
        end = std::ranges::copy(rest, end).out;
    }
}

Spool::Block::~Block() { munmap(_data, _size); }

void Spool::_appendToFile(std::string_view block) {
    if (!_disk.grow(block.size())) {
        throw SpoolError(SpoolError::Kind::full,
                         "the client reads too slowly, and no more of the reply can wait for it");
    }
    try {
        if (!_file) _openFile();
        for (std::size_t done = 0; done < block.size();) {
            const ssize_t count = pwrite(_file.get(), block.data() + done, block.size() - done,
                                         static_cast<off_t>(_writeAt + done));
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) _fail("write to", count < 0 ? errno : ENOSPC);
            done += static_cast<std::size_t>(count);
        }
    } catch (...) {
        _disk.shrink(block.size());
        throw;
    }
    _writeAt += block.size();
}

void Spool::_openFile() {
    std::string name = _store.folder + "/cimhost.XXXXXX";
    _file = Descriptor(mkostemp(name.data(), O_CLOEXEC));
    if (!_file) _fail("make", errno);
    unlink(name.c_str());
}

void Spool::_fail(const char* what, int error) const {
    throw SpoolError(SpoolError::Kind::failed,
                     "the client reads too slowly, and the reply cannot wait for it: cannot " +
                         std::string(what) + " a temporary file in " + _store.folder + ": " +
                         std::generic_category().message(error));
}

std::string_view Spool::front() {
    if (!_blocks.empty()) return _blocks.front().text().substr(_popped);
    if (_popped < _page.size()) return std::string_view(_page).substr(_popped);
    _popped = 0;
    _page.resize(std::min<std::uint64_t>(pageBytes, _writeAt - _readAt));
    if (_page.empty()) return {};
    ssize_t count = 0;
    do {
        count = pread(_file.get(), _page.data(), _page.size(), static_cast<off_t>(_readAt));
    } while (count < 0 && errno == EINTR);
    _page.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count <= 0) _fail("read", count < 0 ? errno : EIO);
    return _page;
}

void Spool::pop(std::size_t count) {
    _popped += count;
    if (!_blocks.empty()) {
        const std::size_t size = _blocks.front().text().size();
        if (_popped < size) return;
        _blocks.pop_front();
        _popped = 0;
        return _memory.shrink(size);
    }
    _readAt += count;
    if (_readAt == _writeAt) _closeFile();
}

void Spool::_closeFile() noexcept {
    _file.reset();
    _readAt = _writeAt = 0;
    std::string().swap(_page);
    _popped = 0;
    _disk.clear();
}

void Spool::clear() noexcept {
    _blocks.clear();
    _memory.clear();
    _closeFile();
}

}  // namespace cimhost
