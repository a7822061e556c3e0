#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// What happens in a server, told to those who look at it as it happens.
///
/// Whoever has something to tell asks isWatched() first and makes the event up only then: while
/// nobody looks, that is all it costs. An event is one text for all viewers. Nobody waits for a
/// viewer: each has a queue of its own, whose oldest events make room when it is full. Safe from
/// several threads.
class EventFeed {
public:
    static constexpr std::size_t queueEvents = 1000;        ///< that wait for one viewer
    static constexpr std::size_t queueBytes = 1024 * 1024;  ///< of these

    /// As text/event-stream has it: `event: log`, `data: {...}` and an empty line.
    using Event = std::shared_ptr<const std::string>;

    /// What waited for a viewer.
    struct Batch {
        std::deque<Event> events;
        std::uint64_t dropped = 0;  ///< before these, since the last batch
    };

    /// One who looks, from its making on. For one thread, as a local variable; the feed outlives
    /// it.
    class Viewer {
    public:
        explicit Viewer(EventFeed& feed);
        ~Viewer();
        Viewer(const Viewer&) = delete;
        Viewer& operator=(const Viewer&) = delete;

        /// What waits, as soon as there is something. Empty at the deadline, and at the end of the
        /// feed once all has been taken.
        Batch take(std::chrono::steady_clock::time_point deadline);

        /// Waits for the deadline or the end of the feed. False for the latter.
        bool pause(std::chrono::steady_clock::time_point deadline);

    private:
        friend class EventFeed;
        void _put(const Event& event);
        void _dropOldest() noexcept;

        EventFeed& _feed;
        std::condition_variable _changed;
        Batch _waiting;  ///< this and the next guarded by the feed's mutex
        std::size_t _bytes = 0;
    };

    EventFeed() = default;
    EventFeed(const EventFeed&) = delete;
    EventFeed& operator=(const EventFeed&) = delete;

    /// Somebody looks, or has until a moment ago.
    bool isWatched() const noexcept { return _isWatched.load(std::memory_order_relaxed); }

    /// Puts an event into every queue. `data` is JSON in one line. False when nobody looks. Throws
    /// std::bad_alloc.
    bool publish(std::string_view name, std::string_view data);

    /// Viewers take what waits, and no more.
    void end() noexcept;

private:
    std::atomic<bool> _isWatched = false;
    std::mutex _mutex;  ///< guards all below
    std::vector<Viewer*> _viewers;
    bool _isEnded = false;
};

}  // namespace cimhost
