#pragma once

#include "cimhost/http/Descriptor.h"
#include "cimhost/server/FileChanges.h"
#include "cimhost/server/ObjectManager.h"

#include <thread>

namespace cimhost {

/// Takes changed modules, MOF and registration files into service while requests run: when it is
/// told to, and, where the options want it, whenever files change. Files that are wrong, and those
/// that others have a hand in, are told in the log and leave in service what is.
class Reloader {
public:
    /// All outlive this. Nobody else renews the manager. Throws std::system_error.
    Reloader(const ServeOptions& options, Repository& repository, ObjectManager& manager,
             BrokerLog& log);
    /// As end(), and waits for a reload that runs.
    ~Reloader();
    Reloader(const Reloader&) = delete;
    Reloader& operator=(const Reloader&) = delete;

    /// Looks at the files soon. From any thread.
    void reload() noexcept;

    /// No reload begins any more. Does not wait for one that runs, which may be in code of a module
    /// that never returns.
    void end() noexcept;

private:
    void _run() noexcept;
    void _watch();
    void _settle() noexcept;
    void _drain() noexcept;
    void _look();
    FileChanges::Found _findChanges();
    std::optional<Registrations> _readSchema(Repository& repository);
    bool _mayTake(const Registrations& registrations);

    const ServeOptions& _options;
    Repository& _repository;
    ObjectManager& _manager;
    BrokerLog& _log;
    FileChanges _files;
    FileChanges::Found _refused;  ///< what has changed and was not trusted: tried again
    Descriptor _bell;             ///< rings for a reload, and for the end
    Descriptor _notifier;         ///< inotify's; none where files are not watched
    std::atomic<bool> _isEnding = false;
    std::atomic<bool> _isAsked = false;
    std::thread _thread;  ///< last: it uses the others
};

}  // namespace cimhost
