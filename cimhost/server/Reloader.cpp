#include "cimhost/server/Reloader.h"

#include "cimhost/mof/MofReader.h"
#include "cimhost/server/RegistrationCheck.h"
#include "cimhost/server/ServeOptions.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace cimhost {
namespace {

using std::chrono::milliseconds;

/// Who writes several files, or one in pieces, is done when nothing has changed for this long.
constexpr milliseconds quietTime{200};
constexpr milliseconds longestUnrest{3'000};
/// How often something that was replaced, and is in use still, is looked at.
constexpr milliseconds releaseInterval{50};

Descriptor require(int descriptor, const char* what) {
    if (descriptor < 0) throw std::system_error(errno, std::generic_category(), what);
    return Descriptor(descriptor);
}

bool isReadable(int descriptor, milliseconds patience) noexcept {
    pollfd entry{descriptor, POLLIN, 0};
    return descriptor >= 0 && poll(&entry, 1, static_cast<int>(patience.count())) > 0;
}

std::string joined(const std::set<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
    return text;
}

}  // namespace

Reloader::Reloader(const ServeOptions& options, Repository& repository, ObjectManager& manager,
                   BrokerLog& log)
    : _options(options),
      _repository(repository),
      _manager(manager),
      _log(log),
      _files(options, manager.modules()),
      _bell(require(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "eventfd")) {
    if (options.watches) {
        _notifier = require(inotify_init1(IN_CLOEXEC | IN_NONBLOCK), "inotify");
        _watch();
    }
    _thread = std::thread([this] { _run(); });
}

Reloader::~Reloader() {
    end();
    _thread.join();
}

void Reloader::end() noexcept {
    _isEnding = true;
    reload();
}

void Reloader::reload() noexcept {
    _isAsked = true;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(_bell.get(), &one, sizeof one);
}

void Reloader::_watch() {
    for (const std::filesystem::path& folder : _files.folders()) {
        // A folder that is not there cannot be watched; a known one is not watched twice.
        // What was refused may be taken once its owner or mode has changed.
        inotify_add_watch(_notifier.get(), folder.c_str(),
                          IN_CLOSE_WRITE | IN_MOVED_TO | IN_ATTRIB);
    }
}

void Reloader::_drain() noexcept {
    std::array<char, 4096> events;
    while (::read(_notifier.get(), events.data(), events.size()) > 0) {
    }
}

void Reloader::_settle() noexcept {
    const auto end = std::chrono::steady_clock::now() + longestUnrest;
    do {
        _drain();
    } while (!_isEnding && isReadable(_notifier.get(), quietTime) &&
             std::chrono::steady_clock::now() < end);
}

void Reloader::_run() noexcept {
    bool isLeft = false;
    for (;;) {
        std::array<pollfd, 2> entries{{{_bell.get(), POLLIN, 0}, {_notifier.get(), POLLIN, 0}}};
        const int patience = isLeft ? static_cast<int>(releaseInterval.count()) : -1;
        const bool isRung = poll(entries.data(), entries.size(), patience) > 0;
        if (isRung) _settle();
        if (_isEnding) return;
        std::uint64_t rings = 0;
        [[maybe_unused]] const auto count = ::read(_bell.get(), &rings, sizeof rings);
        try {
            if (isRung) _look();
            isLeft = _manager.releaseReplaced();
        } catch (const std::exception& error) {
            _log.write(BrokerLog::Level::error, "cimhost", std::string("reload: ") + error.what());
        }
    }
}

std::optional<Registrations> Reloader::_readSchema(Repository& repository) try {
    _options.schema.loadInto(repository);
    Registrations registrations;
    _options.schema.loadInto(registrations);
    for (const std::string& warning : checkClasses(repository, registrations)) {
        _log.write(BrokerLog::Level::warning, "cimhost", warning);
    }
    return registrations;
} catch (const std::exception& error) {
    _log.write(BrokerLog::Level::error, "cimhost",
               std::string("reload: the schema stays as it was: ") + error.what());
    return std::nullopt;
}

bool Reloader::_mayTake(const Registrations& registrations) try {
    _options.checkCode(registrations);
    return true;
} catch (const std::exception& error) {
    _log.write(BrokerLog::Level::error, "cimhost",
               std::string("reload: all stays as it was: ") + error.what());
    return false;
}

FileChanges::Found Reloader::_findChanges() {
    FileChanges::Found found = _files.look(_manager.modules());
    FileChanges::Found refused = std::exchange(_refused, {});
    found.hasSchema = found.hasSchema || refused.hasSchema;
    found.modules.merge(refused.modules);
    return found;
}

void Reloader::_look() {
    const bool isAsked = _isAsked.exchange(false);
    const FileChanges::Found found = _findChanges();
    if (!found.hasSchema && found.modules.empty()) {
        if (isAsked) {
            _log.write(BrokerLog::Level::information, "cimhost", "reload: no file has changed");
        }
        return;
    }
    Repository repository;
    std::optional<Registrations> registrations;
    if (found.hasSchema) registrations = _readSchema(repository);
    if (!_mayTake(registrations ? *registrations : _manager.registrations())) {
        _refused = found;
        return;
    }
    if (registrations) _repository.replaceBy(repository);
    std::string words = registrations ? "the schema" : "";
    if (!found.modules.empty()) {
        words += (words.empty() ? "modules " : ", modules ") + joined(found.modules);
    }
    if (words.empty()) return;
    _manager.renew(std::move(registrations), found.modules);
    _log.write(BrokerLog::Level::information, "cimhost", "reload: " + words);
    if (_notifier.get() >= 0) _watch();
}

}  // namespace cimhost
