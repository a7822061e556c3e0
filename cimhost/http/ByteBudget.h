#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace cimhost {

/// How many bytes all users of something may hold together. Safe from several threads.
class ByteBudget {
public:
    enum class Kind {
        heap,  ///< the system gets it back as shares return: see malloc_trim(3)
        other,
    };

    ByteBudget(Kind kind, std::uint64_t limit) noexcept : _kind(kind), _limit(limit) {}

    std::uint64_t used() const noexcept { return _used; }

    /// What one user holds; it returns when the share ends. Used by one thread at a time, and
    /// outlived by the budget. Memory that it stands for is freed first.
    class Share {
    public:
        explicit Share(ByteBudget& budget) noexcept : _budget(budget) {}
        ~Share() { clear(); }
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;

        std::uint64_t size() const noexcept { return _size; }
        /// False when so much is not left; then nothing changes.
        bool grow(std::uint64_t count) noexcept;
        void shrink(std::uint64_t count) noexcept;
        void clear() noexcept { shrink(_size); }

    private:
        ByteBudget& _budget;
        std::uint64_t _size = 0;
    };

private:
    bool _take(std::uint64_t count) noexcept;
    void _giveBack(std::uint64_t count) noexcept;

    const Kind _kind;
    const std::uint64_t _limit;
    std::atomic<std::uint64_t> _used{0};
    std::atomic<std::uint64_t> _peak{0};  ///< since memory was given back
};

}  // namespace cimhost
