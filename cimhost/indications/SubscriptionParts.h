#pragma once

#include "cimhost/indications/Subscriptions.h"
#include "cimhost/objects/Description.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/DateTime.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <chrono>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <utility>

/// What the sources of Subscriptions share.
namespace cimhost {

/// What the three kinds have in common.
struct Subscriptions::Part {
    Instance instance;
    bool isStatic = false;  ///< it came with the MOF
};

struct Subscriptions::Filter : Part {
    FilterMeaning meaning;
    std::size_t subscribers = 0;  ///< active or not
    std::size_t activeSubscribers = 0;
    std::shared_ptr<FilterActivation::Active> active;
};

struct Subscriptions::Destination : Part {
    ListenerUrl url;
    std::size_t subscribers = 0;
    std::shared_ptr<IndicationQueue> queue;
};

struct Subscriptions::Subscription : Part {
    Filter* filter = nullptr;
    Destination* destination = nullptr;
    std::shared_ptr<const IndicationRoute> route;  ///< while it is active
    bool isRefused = false;                        ///< by a provider, when it was restored
};

/// One change at a time, and none within another.
class Subscriptions::Change {
public:
    Change(Subscriptions& subscriptions, std::chrono::milliseconds patience)
        : _subscriptions(subscriptions) {
        if (subscriptions._changer == std::this_thread::get_id()) {
            throw CimError(CimCode::failed,
                           "subscriptions cannot be changed while a provider is asked about one");
        }
        std::unique_lock lock(subscriptions._changing);
        _holds = subscriptions._changeEnded.wait_for(
            lock, patience, [&subscriptions] { return !subscriptions._isChanging; });
        if (!_holds) return;
        subscriptions._isChanging = true;
        subscriptions._changeBegan = std::chrono::steady_clock::now();
        subscriptions._changer = std::this_thread::get_id();
    }

    explicit Change(Subscriptions& subscriptions)
        : Change(subscriptions, subscriptions._longestWait) {
        if (!_holds) _refuse();
        if (subscriptions._isStopped) {
            _release();
            throw CimError(CimCode::serverIsShuttingDown, "the server is shutting down");
        }
    }

    ~Change() { _release(); }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    bool holds() const noexcept { return _holds; }

private:
    [[noreturn]] void _refuse() const {
        const std::lock_guard lock(_subscriptions._changing);
        const auto elapsed = std::chrono::steady_clock::now() - _subscriptions._changeBegan;
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
        throw CimError(CimCode::failed, "another change of subscriptions has not ended for " +
                                            std::to_string(seconds) + " s");
    }

    void _release() noexcept {
        if (!std::exchange(_holds, false)) return;
        _subscriptions._changer = std::thread::id();
        {
            const std::lock_guard lock(_subscriptions._changing);
            _subscriptions._isChanging = false;
        }
        _subscriptions._changeEnded.notify_one();
    }

    Subscriptions& _subscriptions;
    bool _holds = false;
};

/// The present time as a CIM datetime, or NULL.
inline Value now() {
    const auto elapsed = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::system_clock::now().time_since_epoch());
    const auto text = dateTimeOf(static_cast<std::uint64_t>(elapsed.count()), false);
    return text ? Value(CimType::dateTime, *text) : Value::null(CimType::dateTime);
}

inline bool isAt(const Instance& instance, const ObjectPath& path) {
    return equalNames(instance.path.nameSpace, trimmedSlashes(path.nameSpace)) &&
           sameModelPath(instance.path, path);
}

[[noreturn]] inline void refuseChange(const ObjectPath& path) {
    throw CimError(CimCode::notSupported,
                   "instances of class " + path.className + " can only be read");
}

template <typename Kind>
Kind* Subscriptions::_find(std::list<Kind>& parts, const ObjectPath& path) {
    const auto found =
        std::ranges::find_if(parts, [&](const Kind& part) { return isAt(part.instance, path); });
    return found == parts.end() ? nullptr : &*found;
}

}  // namespace cimhost
