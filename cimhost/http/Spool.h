#pragma once

#include "cimhost/http/ByteBudget.h"
#include "cimhost/http/Descriptor.h"

#include <atomic>
#include <cstdint>
#include <list>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace cimhost {

/// What the spools of one server share. Safe from several threads.
struct SpoolStore {
    ByteBudget memory;
    ByteBudget disk;
    std::string folder;  ///< of temporary files
    /// Bytes of the replies that had to wait since the heap gave memory back.
    std::atomic<std::uint64_t> untrimmed{0};

    /// An empty folder stands for the one that TMPDIR names, or else /tmp.
    SpoolStore(std::uint64_t memoryBytes, std::uint64_t diskBytes, std::string folder = {});

    /// To be called when a reply of this size has been made and waits. Its provider has left about
    /// as much in the heap of its thread, which now sleeps: every 4 MiB the system gets it back.
    void noteWaiting(std::uint64_t replyBytes) noexcept;
};

/// There is no room for what should wait, or the disk failed; what() tells which.
class SpoolError : public std::runtime_error {
public:
    enum class Kind { full, failed };
    SpoolError(Kind kind, const std::string& message) : std::runtime_error(message), _kind(kind) {}

    Kind kind() const noexcept { return _kind; }

private:
    Kind _kind;
};

/// The pieces as one text, without their first `skipped` bytes.
std::string joined(std::span<const std::string_view> pieces, std::size_t skipped);

/// Bytes of one reply that wait for their client, first in, first out: in memory as long as the
/// server's budget for all of them lasts, and beyond it in a temporary file without a name. An
/// empty spool holds neither memory nor file. Used by one thread.
class Spool {
public:
    /// The store outlives the spool.
    explicit Spool(SpoolStore& store) noexcept
        : _store(store), _memory(store.memory), _disk(store.disk) {}
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;

    bool isEmpty() const noexcept { return _blocks.empty() && _readAt == _writeAt; }
    std::uint64_t size() const noexcept { return _memory.size() + _disk.size(); }

    /// Appends all of the pieces but their first `skipped` bytes. Throws SpoolError, and then has
    /// appended nothing.
    void append(std::span<const std::string_view> pieces, std::size_t skipped = 0);

    /// Some of the bytes that are next; of an empty spool none. Good until the next call of another
    /// operation. Throws SpoolError.
    std::string_view front();
    /// Drops so many of the bytes that front() returned last.
    void pop(std::size_t count);

    void clear() noexcept;

private:
    /// Pages of their own: a block in a heap, made while a provider fills it with objects, would
    /// hold on to all that these leave behind.
    class Block {
    public:
        Block(std::span<const std::string_view> pieces, std::size_t skipped, std::size_t size);
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;
        ~Block();

        std::string_view text() const noexcept { return {_data, _size}; }

    private:
        char* _data;
        std::size_t _size;
    };

    void _appendToFile(std::string_view text);
    void _openFile();
    void _closeFile() noexcept;
    [[noreturn]] void _fail(const char* what, int error) const;

    SpoolStore& _store;
    // Declared first, returned last: what they stand for is freed by then.
    ByteBudget::Share _memory;
    ByteBudget::Share _disk;
    std::list<Block> _blocks;  ///< older than what is in the file
    std::size_t _popped = 0;   ///< of the first block, or of the page
    Descriptor _file;
    std::uint64_t _readAt = 0;
    std::uint64_t _writeAt = 0;
    std::string _page;  ///< what was read of the file and is not popped yet
};

}  // namespace cimhost
