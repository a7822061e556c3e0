#include "cimhost/http/LoginQueue.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace cimhost {
namespace {

constexpr std::chrono::minutes guessMemory{1};
constexpr std::size_t mostGuessers = 4096;

// One host may have all addresses of its network of 64 bits, but the network of link-local ones is
// the same for all hosts.
std::string networkOf(const std::string& address) {
    in6_addr bytes{};
    if (inet_pton(AF_INET6, address.c_str(), &bytes) != 1 || IN6_IS_ADDR_LINKLOCAL(&bytes)) {
        return address;
    }
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (IN6_IS_ADDR_V4MAPPED(&bytes)) {
        return inet_ntop(AF_INET, &bytes.s6_addr[12], text.data(), text.size());
    }
    std::fill_n(&bytes.s6_addr[8], 8, std::uint8_t{0});
    return inet_ntop(AF_INET6, &bytes, text.data(), text.size());
}

std::string addressOf(const std::string& peer) {
    std::string address = peer.substr(0, peer.rfind(':'));
    if (!address.starts_with('[') || !address.ends_with(']')) return address;
    return networkOf(address.substr(1, address.size() - 2));
}

}  // namespace

/// What the queue shares with its threads, which may outlive it.
class LoginQueue::Shared : public std::enable_shared_from_this<Shared> {
public:
    explicit Shared(const Limits& limits) : _limits(limits) {}

    Outcome judge(const Key& key, const std::string& peer, Proof proof);
    void end() noexcept;

private:
    /// Wrong guesses of the last minute by address and by connection.
    class Guesses {
    public:
        void note(const std::string& who) {
            const auto now = std::chrono::steady_clock::now();
            if (_entries.size() >= mostGuessers) {
                std::erase_if(_entries,
                              [&](const auto& entry) { return _isOld(entry.second, now); });
            }
            if (_entries.size() >= mostGuessers) _entries.clear();
            Entry& entry = _entries[who];
            if (_isOld(entry, now)) entry.count = 0;
            ++entry.count;
            entry.last = now;
        }

        std::size_t count(const std::string& who) const {
            const auto found = _entries.find(who);
            const bool isKnown =
                found != _entries.end() && !_isOld(found->second, std::chrono::steady_clock::now());
            return isKnown ? found->second.count : 0;
        }

    private:
        using Time = std::chrono::steady_clock::time_point;

        struct Entry {
            std::size_t count = 0;
            Time last{};
        };

        static bool _isOld(const Entry& entry, Time now) noexcept {
            return now - entry.last > guessMemory;
        }

        std::map<std::string, Entry> _entries;
    };

    struct Item {
        Key key;
        std::string peer;
        std::string address;
        Proof proof;
        bool isOver = false;
        Outcome outcome = Outcome::refused;
    };
    using ItemPointer = std::shared_ptr<Item>;
    using Items = std::vector<ItemPointer>;

    ItemPointer _find(const Key& key) const;
    bool _isTrustedMore(const ItemPointer& one, const ItemPointer& other) const;
    void _refuseOneTooMany(const std::string& address);
    void _startWorker();
    void _work() noexcept;
    static bool _isProven(Item& item) noexcept;

    const Limits _limits;
    std::mutex _mutex;  ///< guards all below
    std::condition_variable _changed;
    Items _waiting;  ///< in the order in which they came
    Items _atWork;
    std::size_t _workers = 0;
    Guesses _guesses;
    bool _isEnding = false;
};

LoginQueue::Shared::ItemPointer LoginQueue::Shared::_find(const Key& key) const {
    for (const Items* items : {&_waiting, &_atWork}) {
        for (const ItemPointer& item : *items) {
            if (item->key == key) return item;
        }
    }
    return nullptr;
}

bool LoginQueue::Shared::_isTrustedMore(const ItemPointer& one, const ItemPointer& other) const {
    const auto distrust = [this](const Item& item) {
        return std::pair(_guesses.count(item.address), _guesses.count(item.peer));
    };
    return distrust(*one) < distrust(*other);
}

/// Of the address when it has too many, else of all.
void LoginQueue::Shared::_refuseOneTooMany(const std::string& address) {
    const auto ofAddress = [&](const auto& item) { return item->address == address; };
    const auto count = std::ranges::count_if(_waiting, ofAddress);
    const bool isAddressFull = static_cast<std::size_t>(count) > _limits.ofOneAddress;
    if (!isAddressFull && _waiting.size() <= _limits.waiting) return;
    auto least = _waiting.end();
    for (auto item = _waiting.begin(); item != _waiting.end(); ++item) {
        if (isAddressFull && !ofAddress(*item)) continue;
        if (least == _waiting.end() || !_isTrustedMore(*item, *least)) least = item;
    }
    (*least)->isOver = true;
    _waiting.erase(least);
    _changed.notify_all();
}

LoginQueue::Outcome LoginQueue::Shared::judge(const Key& key, const std::string& peer,
                                              Proof proof) {
    std::unique_lock lock(_mutex);
    if (_isEnding) return Outcome::refused;
    ItemPointer item = _find(key);
    if (!item) {
        item = std::make_shared<Item>(Item{key, peer, addressOf(peer), std::move(proof)});
        _waiting.push_back(item);
        _refuseOneTooMany(item->address);
        _startWorker();
    }
    _changed.wait(lock, [&] { return item->isOver || _isEnding; });
    if (item->isOver && item->outcome == Outcome::wrong) {
        _guesses.note(peer);
        _guesses.note(addressOf(peer));
    }
    return item->outcome;
}

void LoginQueue::Shared::_startWorker() {
    if (_waiting.empty() || _workers >= _limits.atOnce) return;
    try {
        std::thread([self = shared_from_this()] { self->_work(); }).detach();
        ++_workers;
    } catch (const std::exception&) {
        if (_workers != 0) return;  // the one that works takes them all in the end
        for (const ItemPointer& item : _waiting) item->isOver = true;
        _waiting.clear();
        _changed.notify_all();
    }
}

void LoginQueue::Shared::_work() noexcept {
    std::unique_lock lock(_mutex);
    while (!_waiting.empty()) {
        const auto next = std::ranges::min_element(
            _waiting,
            [this](const auto& one, const auto& other) { return _isTrustedMore(one, other); });
        const ItemPointer item = *next;
        _atWork.push_back(item);
        _waiting.erase(next);
        lock.unlock();
        const bool isProven = _isProven(*item);
        lock.lock();
        std::erase(_atWork, item);
        item->outcome = isProven ? Outcome::proven : Outcome::wrong;
        item->isOver = true;
        _changed.notify_all();
    }
    --_workers;
}

bool LoginQueue::Shared::_isProven(Item& item) noexcept try {
    const Proof proof = std::exchange(item.proof, nullptr);
    return proof();
} catch (const std::exception&) {
    return false;
}

void LoginQueue::Shared::end() noexcept {
    const std::lock_guard lock(_mutex);
    _isEnding = true;
    _waiting.clear();
    _changed.notify_all();
}

LoginQueue::LoginQueue(const Limits& limits) : _shared(std::make_shared<Shared>(limits)) {}

LoginQueue::~LoginQueue() { end(); }

LoginQueue::Outcome LoginQueue::judge(const Key& key, const std::string& peer, Proof proof) {
    return _shared->judge(key, peer, std::move(proof));
}

void LoginQueue::end() noexcept { _shared->end(); }

}  // namespace cimhost
