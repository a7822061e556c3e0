#include "cimhost/server/ModuleCheck.h"

#include "cimhost/http/Descriptor.h"
#include "cimhost/modules/Module.h"
#include "cimhost/modules/ModuleFile.h"
#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/operations/UpCalls.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ModelText.h"
#include "cimhost/server/RegistrationCheck.h"

#include <dlfcn.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <system_error>

namespace cimhost {
namespace {

using Clock = std::chrono::steady_clock;

// What the child says: a line each, with one of these before it.
constexpr char step = '>';
constexpr char finding = '!';
constexpr char doubt = '?';
constexpr char end = '.';

/// The child's side of the pipe. What the host warns of in an answer is a finding.
class Teller final : public BrokerLog {
public:
    explicit Teller(int descriptor) noexcept : _descriptor(descriptor) {}

    void tell(char kind, std::string text) {
        if (kind == finding) ++_findings;
        std::replace(text.begin(), text.end(), '\n', ' ');
        text.insert(text.begin(), kind);
        text += '\n';
        [[maybe_unused]] const auto written = ::write(_descriptor, text.data(), text.size());
    }

    void write(Level level, std::string_view, std::string_view message) noexcept override try {
        if (_hears && level == Level::warning) tell(finding, std::string(message));
    } catch (const std::bad_alloc&) {
        return;
    }

    void hear(bool hears) noexcept { _hears = hears; }
    std::size_t findings() const noexcept { return _findings; }

private:
    int _descriptor;
    std::atomic<bool> _hears = false;
    std::atomic<std::size_t> _findings = 0;
};

/// Keeps the paths that a provider names.
struct FirstPath final : PathSink {
    std::optional<ObjectPath> path;
    void deliver(const ObjectPath& each) override {
        if (!path) path = each;
    }
};

struct NoInstances final : InstanceSink {
    void deliver(const Instance&, const Class*, const PropertySelection&) override {}
};

/// What the child does: it opens one module.
class Opening {
public:
    Opening(const Repository& repository, const Registrations& all, const std::string& module,
            const ModuleCheckOptions& options, Teller& teller)
        : _module(module),
          _options(options),
          _teller(teller),
          _broker(repository, teller, fillUpCalls),
          _modules(_broker, all.clone(), options.folders),
          _operations(_broker, _modules) {
        _broker.setOperations(&_operations);
    }

    void run() {
        if (!_loads()) return;
        for (const Registration& each : _modules.registrations().all()) {
            if (each.module == _module) _make(each);
        }
        if (!_options.asks) return;
        for (const Registration& each : _modules.registrations().all()) {
            if (each.module == _module && each.serves(ProviderType::instance)) _ask(each);
        }
    }

private:
    // The loader tells of the first symbol only: here are all.
    bool _loads() {
        _teller.tell(step, "is loaded");
        const std::filesystem::path path = Module::find(_module, _options.folders);
        if (openLibrary(path, RTLD_NOW | RTLD_GLOBAL)) return true;
        const std::string reason = demangled(dlerror());
        std::size_t missing = 0;
        if (void* const library = openLibrary(path, RTLD_LAZY | RTLD_GLOBAL)) {
            for (const std::string& name : ModuleFile::read(path).wanted) {
                if (dlsym(library, name.c_str())) continue;
                ++missing;
                _teller.tell(finding, "module " + _module + " cannot be loaded: nobody has " +
                                          demangled(name));
            }
        }
        if (missing == 0) {
            _teller.tell(finding, "module " + _module + " cannot be loaded: " + reason);
        }
        return false;
    }

    void _make(const Registration& each) {
        _make<CMPIInstanceMI>(each);
        _make<CMPIAssociationMI>(each);
        _make<CMPIMethodMI>(each);
        _make<CMPIIndicationMI>(each);
    }

    template <typename MI>
    void _make(const Registration& each) {
        const std::string kind(MiKind<MI>::word);
        const std::string what = "provider " + each.provider + " makes its " + kind + " MI";
        if (!each.serves(MiKind<MI>::type) || !_made.insert(what).second) return;
        _teller.tell(step, what);
        try {
            _modules.use<MI>(each);
        } catch (const CimError& error) {
            // An entry point that is missing shows in the file already.
            const std::string text = error.what();
            if (text.find(" has no entry point ") != std::string::npos) return;
            _teller.tell(finding, placed(each, text));
            _failed.insert(each.provider);
        }
    }

    void _ask(const Registration& each) {
        if (_failed.contains(each.provider)) return;
        RequestContext request;
        request.nameSpace = each.nameSpace;
        const ObjectPath path{{}, each.nameSpace, each.className, {}};
        const std::size_t before = _teller.findings();
        _teller.hear(true);
        FirstPath first;
        const bool isNaming = _try(each, "enumerateInstanceNames", [&] {
            _operations.enumerateInstanceNames(request, path, first);
        });
        NoInstances instances;
        _try(each, "enumerateInstances",
             [&] { _operations.enumerateInstances(request, path, {}, instances); });
        if (_teller.findings() != before) return _teller.hear(false);
        if (first.path) {
            _try(each, "getInstance", [&] { _find(each, request, *first.path); });
        } else if (isNaming) {
            _teller.tell(doubt,
                         placed(each, "provider " + each.provider + " names no instance of " +
                                          each.nameSpace + ":" + each.className +
                                          ": there is none, or getClassName() or the "
                                          "namespace of getPath() is another"));
        }
        _teller.hear(false);
    }

    void _find(const Registration& each, const RequestContext& request, const ObjectPath& path) {
        NoInstances instances;
        try {
            _operations.getInstance(request, path, {}, instances);
        } catch (const CimError& error) {
            if (error.code() != CimCode::notFound) throw;
            _teller.tell(finding,
                         placed(each, "provider " + each.provider + " names " + describe(path) +
                                          " and does not find it: is its path without setHost(), "
                                          "or has it another class or key?"));
        }
    }

    // False when it fails, which is a finding; nobody need support everything.
    template <typename Work>
    bool _try(const Registration& each, const char* operation, Work&& work) {
        _teller.tell(
            step, "provider " + each.provider + " answers " + operation + " of " + each.className);
        try {
            work();
            return true;
        } catch (const CimError& error) {
            if (error.code() == CimCode::notSupported) return false;
            _teller.tell(finding, placed(each, "provider " + each.provider + ", " + operation +
                                                   " of " + each.nameSpace + ":" + each.className +
                                                   ": " + error.what()));
            return false;
        }
    }

    const std::string& _module;
    const ModuleCheckOptions& _options;
    Teller& _teller;
    Broker _broker;
    ModuleHost _modules;
    Operations _operations;
    std::set<std::string> _made;
    std::set<std::string> _failed;
};

/// What the parent hears of one child.
class Hearing {
public:
    Hearing(const std::string& module, ModuleFindings& findings)
        : _module(module), _findings(findings) {}

    /// False when the time is over.
    bool listen(int descriptor, Clock::time_point deadline) {
        std::array<char, 4096> bytes;
        for (;;) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
            pollfd ready{descriptor, POLLIN, 0};
            const int polled = ::poll(&ready, 1, static_cast<int>(std::max<long long>(left, 0)));
            if (polled < 0 && errno == EINTR) continue;
            if (polled <= 0) return false;
            const auto count = ::read(descriptor, bytes.data(), bytes.size());
            if (count <= 0) return true;
            _take({bytes.data(), static_cast<std::size_t>(count)});
            // A process that the module has left behind keeps the pipe open.
            if (_isWhole) return true;
        }
    }

    bool isWhole() const noexcept { return _isWhole; }
    void tell(const std::string& what, const std::string& lastWords = {}) const {
        _findings.errors.push_back("module " + _module + ": " + what + " while " +
                                   (_step.starts_with("provider") ? _step : "it " + _step) +
                                   (lastWords.empty() ? "" : ": " + lastWords));
    }

private:
    void _take(std::string_view bytes) {
        for (const char byte : bytes) {
            if (byte != '\n') {
                _line += byte;
                continue;
            }
            if (_line.starts_with(step)) _step = _line.substr(1);
            if (_line.starts_with(finding)) _add(_findings.errors);
            if (_line.starts_with(doubt)) _add(_findings.doubts);
            if (_line.starts_with(end)) _isWhole = true;
            _line.clear();
        }
    }

    void _add(Findings& findings) const {
        const std::string text = _line.substr(1);
        const bool isKnown = std::ranges::find(findings, text) != findings.end();
        if (!isKnown) findings.push_back(text);
    }

    const std::string& _module;
    ModuleFindings& _findings;
    std::string _line;
    std::string _step = "is loaded";
    bool _isWhole = false;
};

[[noreturn]] void runChild(const Repository& repository, const Registrations& registrations,
                           const std::string& module, const ModuleCheckOptions& options,
                           int descriptor, int words) {
    ::dup2(words, STDERR_FILENO);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    constexpr rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);  // a crash is told of, and nobody is to find its file
    Teller teller(descriptor);
    try {
        // Never destroyed: what the module has running goes on to the end of the process.
        (new Opening(repository, registrations, module, options, teller))->run();
    } catch (const std::exception& error) {
        teller.tell(finding, "module " + module + ": " + error.what());
    }
    teller.tell(end, {});
    ::_exit(0);
}

std::string endOf(int status) {
    if (WIFSIGNALED(status)) {
        const char* const name = ::sigabbrev_np(WTERMSIG(status));
        return std::string("crashes with SIG") + (name ? name : "?");
    }
    return "ends the process with status " + std::to_string(WEXITSTATUS(status));
}

// The last that the process said, which for an exception that nobody catches tells what it was.
std::string lastLineOf(int words) {
    std::array<char, 1024> bytes;
    const off_t size = ::lseek(words, 0, SEEK_END);
    const auto count = ::pread(words, bytes.data(), bytes.size(),
                               std::max<off_t>(size - static_cast<off_t>(bytes.size()), 0));
    std::string_view text(bytes.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    while (text.ends_with('\n')) text.remove_suffix(1);
    return std::string(text.substr(text.rfind('\n') + 1));
}

void open(const Repository& repository, const Registrations& registrations,
          const std::string& module, const ModuleCheckOptions& options, ModuleFindings& findings) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    const Descriptor words(::memfd_create("words", MFD_CLOEXEC));
    const pid_t child = ::fork();
    if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) runChild(repository, registrations, module, options, ends[1], words.get());
    writing.reset();
    Hearing hearing(module, findings);
    const bool isOver = hearing.listen(reading.get(), Clock::now() + options.patience);
    if (!isOver || hearing.isWhole()) ::kill(child, SIGKILL);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!isOver) {
        hearing.tell("does not return within " + std::to_string(options.patience.count()) +
                     " seconds");
    } else if (!hearing.isWhole()) {
        hearing.tell(endOf(status), lastLineOf(words.get()));
    }
}

}  // namespace

ModuleFindings checkModules(const Repository& repository, const Registrations& registrations,
                            const ModuleCheckOptions& options) {
    ModuleFindings findings;
    std::set<std::string> opened;
    for (const Registration& each : registrations.all()) {
        const bool isNew = opened.insert(each.module).second;
        if (isNew && !Module::find(each.module, options.folders).empty()) {
            open(repository, registrations, each.module, options, findings);
        }
    }
    return findings;
}

}  // namespace cimhost
