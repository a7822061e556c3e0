#include "cimhost/modules/RunningCall.h"

#include "cimhost/modules/AskedProviders.h"
#include "cimhost/modules/CrashWords.h"

#include <atomic>
#include <charconv>
#include <memory>
#include <mutex>

namespace cimhost {

namespace {

// What the thread's own signal handler reads: it needs no construction.
constinit thread_local const RunningCall* innermostHere = nullptr;

std::mutex threadsMutex;

/// A thread that calls providers, from its first call on.
struct CallingThread {
    CallingThread();
    ~CallingThread();
    CallingThread(const CallingThread&) = delete;
    CallingThread& operator=(const CallingThread&) = delete;

    std::mutex ends;  ///< held while a call ends, or while another thread reads it
    std::atomic<const RunningCall*> innermost = nullptr;
    CrashStack stack;
};

std::vector<CallingThread*>& callingThreads() {
    static auto& threads = *new std::vector<CallingThread*>;  // threads may outlive static objects
    return threads;
}

CallingThread::CallingThread() {
    const std::lock_guard lock(threadsMutex);
    callingThreads().push_back(this);
}

CallingThread::~CallingThread() {
    const std::lock_guard lock(threadsMutex);
    std::erase(callingThreads(), this);
}

CallingThread& thisThread() {
    thread_local CallingThread thread;
    return thread;
}

template <std::size_t room>
void write(BoundedText<room>& text, const ObjectPath& path);

template <std::size_t room>
struct ValueWriter {
    BoundedText<room>& text;

    void operator()(bool value) const { text.append(value ? "TRUE" : "FALSE"); }
    void operator()(std::uint64_t value) const { _number(value); }
    void operator()(std::int64_t value) const { _number(value); }
    void operator()(const Text& value) const {
        text.append("\"");
        text.append(value);
        text.append("\"");
    }
    void operator()(const std::shared_ptr<const ObjectPath>& value) const {
        text.append("\"");
        write(text, *value);
        text.append("\"");
    }
    void operator()(const auto&) const { text.append("?"); }

private:
    void _number(auto value) const {
        std::array<char, 24> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        text.append({digits.data(), end});
    }
};

template <std::size_t room>
void write(BoundedText<room>& text, const ObjectPath& path) {
    if (!path.nameSpace.empty()) {
        text.append(path.nameSpace);
        text.append(":");
    }
    text.append(path.className);
    std::string_view before = ".";
    for (const KeyBinding& key : path.keys) {
        text.append(before);
        text.append(key.name);
        text.append("=");
        std::visit(ValueWriter<room>{text}, key.value.data());
        before = ",";
    }
}

}  // namespace

RunningCall::RunningCall(const AskedOfProvider& asked, const ObjectPath* path)
    : _asked(asked), _outer(innermostHere) {
    if (path) write(_path, *path);
    if (!_outer) AskedProviders::note(asked.provider);
    thisThread().innermost.store(this, std::memory_order_release);
    innermostHere = this;
}

RunningCall::~RunningCall() {
    innermostHere = _outer;
    CallingThread& thread = thisThread();
    const std::lock_guard lock(thread.ends);
    thread.innermost.store(_outer, std::memory_order_relaxed);
}

const RunningCall* RunningCall::current() noexcept { return innermostHere; }

std::vector<std::string> RunningCall::all() {
    std::vector<std::string> all;
    const std::lock_guard lock(threadsMutex);
    for (CallingThread* const thread : callingThreads()) {
        const std::lock_guard alive(thread->ends);
        const RunningCall* const call = thread->innermost.load(std::memory_order_acquire);
        if (!call) continue;
        Words words;
        call->describe(words);
        all.emplace_back(words.view());
    }
    return all;
}

void RunningCall::describe(Words& words) const noexcept {
    words.append("module ");
    words.append(_asked.module);
    words.append(", provider ");
    words.append(_asked.provider);
    words.append(", operation ");
    words.append(_asked.operation);
    if (!_asked.method.empty()) {
        words.append(" ");
        words.append(_asked.method);
    }
    if (path().empty()) return;
    words.append(", path ");
    words.append(path());
}

void logHangingCalls(BrokerLog& log) {
    for (const std::string& words : RunningCall::all()) {
        log.write(BrokerLog::Level::error, "cimhost", words + ": does not return");
    }
}

}  // namespace cimhost
