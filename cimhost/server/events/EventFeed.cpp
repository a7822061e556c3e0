#include "cimhost/server/events/EventFeed.h"

#include <utility>

namespace cimhost {

EventFeed::Viewer::Viewer(EventFeed& feed) : _feed(feed) {
    const std::lock_guard lock(feed._mutex);
    feed._viewers.push_back(this);
    feed._isWatched = !feed._isEnded;
}

EventFeed::Viewer::~Viewer() {
    const std::lock_guard lock(_feed._mutex);
    std::erase(_feed._viewers, this);
    if (_feed._viewers.empty()) _feed._isWatched = false;
}

void EventFeed::Viewer::_put(const Event& event) {
    const bool wasEmpty = _waiting.events.empty();
    _waiting.events.push_back(event);
    _bytes += event->size();
    while (_waiting.events.size() > queueEvents || _bytes > queueBytes) _dropOldest();
    if (wasEmpty) _changed.notify_one();
}

void EventFeed::Viewer::_dropOldest() noexcept {
    _bytes -= _waiting.events.front()->size();
    _waiting.events.pop_front();
    ++_waiting.dropped;
}

EventFeed::Batch EventFeed::Viewer::take(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock lock(_feed._mutex);
    _changed.wait_until(lock, deadline, [this] {
        return _feed._isEnded || !_waiting.events.empty() || _waiting.dropped != 0;
    });
    _bytes = 0;
    return std::exchange(_waiting, {});
}

bool EventFeed::Viewer::pause(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock lock(_feed._mutex);
    return !_changed.wait_until(lock, deadline, [this] { return _feed._isEnded; });
}

bool EventFeed::publish(std::string_view name, std::string_view data) {
    std::string text;
    text.reserve(name.size() + data.size() + 16);
    text.append("event: ").append(name).append("\ndata: ").append(data).append("\n\n");
    const Event event = std::make_shared<const std::string>(std::move(text));
    const std::lock_guard lock(_mutex);
    if (_isEnded) return false;
    for (Viewer* const viewer : _viewers) viewer->_put(event);
    return !_viewers.empty();
}

void EventFeed::end() noexcept {
    const std::lock_guard lock(_mutex);
    _isEnded = true;
    _isWatched = false;
    for (Viewer* const viewer : _viewers) viewer->_changed.notify_all();
}

}  // namespace cimhost
