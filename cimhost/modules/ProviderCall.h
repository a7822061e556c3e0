#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/modules/OperationName.h"
#include "cimhost/modules/ProviderStatus.h"
#include "cimhost/modules/RunningCall.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/objects/CloneCount.h"
#include "cimhost/objects/Objects.h"

#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

namespace cimhost {

/// Counts the provider calls that this thread is inside of.
class CallNesting {
public:
    /// Providers that call each other in a circle end here rather than on the end of the stack.
    static constexpr unsigned limit = 32;

    /// Throws CimError failed beyond the limit.
    CallNesting();
    ~CallNesting() { --depth; }
    CallNesting(const CallNesting&) = delete;
    CallNesting& operator=(const CallNesting&) = delete;

    /// Those of the calling thread.
    static unsigned count() noexcept { return depth; }

    /// While it lives, the thread counts as inside of so many calls, made by another process that
    /// waits for it.
    class Elsewhere {
    public:
        explicit Elsewhere(unsigned calls) noexcept : _before(depth) { depth = calls; }
        ~Elsewhere() { depth = _before; }
        Elsewhere(const Elsewhere&) = delete;
        Elsewhere& operator=(const Elsewhere&) = delete;

    private:
        unsigned _before;
    };

private:
    inline static constinit thread_local unsigned depth = 0;
};

/// While it lives, what fails in providers that the thread calls is logged by another process,
/// which waits for it and tells its client.
class ToldElsewhere {
public:
    ToldElsewhere() noexcept { isTold = true; }
    ~ToldElsewhere() { isTold = false; }
    ToldElsewhere(const ToldElsewhere&) = delete;
    ToldElsewhere& operator=(const ToldElsewhere&) = delete;

    static bool here() noexcept { return isTold; }

private:
    inline static constinit thread_local bool isTold = false;
};

/// A property list in the form of MI functions. Good as long as the names that it was made of.
class PropertyNames {
public:
    explicit PropertyNames(const std::optional<std::vector<std::string>>& names) {
        if (!names) return;
        for (const std::string& name : *names) _names.push_back(name.c_str());
        _names.push_back(nullptr);
    }

    /// Null for all properties.
    const char** get() noexcept { return _names.empty() ? nullptr : _names.data(); }

private:
    std::vector<const char*> _names;
};

/// One call of an MI function: the objects made during it live as long as this, the arguments
/// included. For one thread, as a local variable.
class ProviderCall {
public:
    /// Throws CimError failed when provider calls are nested too deeply.
    ProviderCall(const Broker& broker, const RequestContext& request, ResultSink& sink)
        : ProviderCall(broker, request, sink, makeContext) {}

    /// The same for what no request makes: the start of indications.
    static ProviderCall atStart(const Broker& broker, const RequestContext& request,
                                ResultSink& sink) {
        return {broker, request, sink, makeStartContext};
    }

    /// Calls the function in this slot of the MI's table, with the context, the result and the
    /// arguments. Throws what the sink threw, else the provider's failure as a CimError:
    /// notSupported for a null slot. A failure without a code that says more, and an exception, are
    /// logged as well: `module Fans, provider FanProvider, operation getInstance, path ...: text`.
    template <typename MI, typename Table, typename Function, typename... Arguments>
    void run(const MiUse<MI>& use, Function Table::*slot, Arguments... arguments) {
        _requireSlot(use, slot);
        const CloneCount clones;
        const CMPIStatus status =
            _call(use, operationName(slot), use.get()->ft->*slot, _result, arguments...);
        if (clones.left() > 0 && isReading(slot)) {
            _tellLeak(use, operationName(slot), clones.left());
        }
        if (const std::exception_ptr failure = failureOf(_result)) std::rethrow_exception(failure);
        requireSuccess(status, use.provider(), _result);
    }

    /// The same for functions that have no result.
    template <typename MI, typename Table, typename Function, typename... Arguments>
    void tell(const MiUse<MI>& use, Function Table::*slot, Arguments... arguments) {
        _requireSlot(use, slot);
        tellAs(use, operationName(slot), use.get()->ft->*slot, arguments...);
    }

    /// The same for a function that is known already.
    template <typename MI, typename Function, typename... Arguments>
    void tellAs(const MiUse<MI>& use, std::string_view operation, Function function,
                Arguments... arguments) {
        const CMPIStatus status = _call(use, operation, function, arguments...);
        requireSuccess(status, use.provider());
    }

private:
    using MakeContext = CMPIContext* (*)(const Broker&, const RequestContext&);

    ProviderCall(const Broker& broker, const RequestContext& request, ResultSink& sink,
                 MakeContext make)
        : _broker(broker), _context(make(broker, request)), _result(makeResult(broker, sink)) {}

    template <typename MI, typename Function, typename... Arguments>
    CMPIStatus _call(const MiUse<MI>& use, std::string_view operation, Function function,
                     Arguments... arguments) {
        const AskedOfProvider asked{use.module(), use.provider(), operation,
                                    _methodAmong<MI>(arguments...)};
        const RunningCall running(asked, _pathAmong(arguments...));
        try {
            const CMPIStatus status = callProvider(
                use.provider(), [&] { return function(use.get(), _context, arguments...); });
            _tellFailure(running, status);
            return status;
        } catch (const CimError& error) {
            _tellFailure(running, error.what());
            throw;
        }
    }

    // Other codes answer the client's request; this one says that something is wrong here.
    void _tellFailure(const RunningCall& running, const CMPIStatus& status) const;
    void _tellFailure(const RunningCall& running, const std::string& text) const;

    // A provider may keep what it clones once. One that does so again leaks, or fills a cache.
    template <typename MI>
    void _tellLeak(const MiUse<MI>& use, std::string_view operation, std::ptrdiff_t left) const {
        if (use.countLeak() != 2) return;
        _broker.log().write(BrokerLog::Level::warning, use.provider(),
                            "provider " + std::string(use.provider()) + " did not release " +
                                std::to_string(left) + " of the objects that it cloned in " +
                                std::string(operation) + ", the second call that leaves some");
    }

    // The first path among the arguments is what the call is about.
    static const ObjectPath* _pathAmong() noexcept { return nullptr; }
    template <typename First, typename... Rest>
    static const ObjectPath* _pathAmong(First first, Rest... rest) {
        if constexpr (std::is_convertible_v<First, const CMPIObjectPath*> &&
                      !std::is_null_pointer_v<First>) {
            return first ? &modelOf(first) : nullptr;
        } else {
            return _pathAmong(rest...);
        }
    }

    template <typename MI, typename... Arguments>
    static std::string_view _methodAmong(Arguments... arguments) noexcept {
        if constexpr (std::is_same_v<MI, CMPIMethodMI> && sizeof...(Arguments) > 2) {
            return std::get<2>(std::make_tuple(arguments...));
        } else {
            return {};
        }
    }

    template <typename MI, typename Slot>
    static void _requireSlot(const MiUse<MI>& use, Slot slot) {
        if (use.get()->ft && use.get()->ft->*slot) return;
        throw CimError(CimCode::notSupported, "provider " + std::string(use.provider()) +
                                                  " does not offer this operation");
    }

    const Broker& _broker;
    CallNesting _nesting;
    CallScope _scope;
    CMPIContext* _context;
    CMPIResult* _result;
};

}  // namespace cimhost
