#pragma once

#include "cimhost/modules/Registration.h"
#include "cmpi/cmpift.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace cimhost {

/// What tells the kinds of MI apart: the type that providers are registered with, and the word in
/// the names of entry points.
template <typename MI>
struct MiKind;

template <>
struct MiKind<CMPIInstanceMI> {
    static constexpr ProviderType type = ProviderType::instance;
    static constexpr std::string_view word = "Instance";
};

template <>
struct MiKind<CMPIAssociationMI> {
    static constexpr ProviderType type = ProviderType::association;
    static constexpr std::string_view word = "Association";
};

template <>
struct MiKind<CMPIMethodMI> {
    static constexpr ProviderType type = ProviderType::method;
    static constexpr std::string_view word = "Method";
};

template <>
struct MiKind<CMPIIndicationMI> {
    static constexpr ProviderType type = ProviderType::indication;
    static constexpr std::string_view word = "Indication";
};

/// Makes the MI of a provider, in the form of CMPI's generic factories. Empty: not offered.
template <typename MI>
using MiFactory =
    std::function<MI*(const CMPIBroker*, const CMPIContext*, const char* provider, CMPIStatus*)>;

/// The factories of a module that is part of this program.
using StaticModule = std::tuple<MiFactory<CMPIInstanceMI>, MiFactory<CMPIAssociationMI>,
                                MiFactory<CMPIMethodMI>, MiFactory<CMPIIndicationMI>>;

/// dlopen(), which no exception of a module's initialisers leaves: the loader would keep its locks.
/// The process ends with the exception's words instead. Null: dlerror() tells why.
void* openLibrary(const std::filesystem::path& file, int flags) noexcept;

enum class ModuleSource { file, copy };

/// The code of a module: a loaded library or a part of this program. Nothing made by it may be used
/// once it is destroyed. Safe from several threads.
class Module {
public:
    /// Loads lib<name>.so from the first of the folders that has it.
    /// Throws CimError failed that says what was looked for or what the loader refused, with C++
    /// names as they were written. Of a copy it stays what it is when the file changes, and can be
    /// loaded beside what was loaded from the file before (see PrivateCopy.h).
    static std::unique_ptr<Module> load(const std::string& name,
                                        const std::vector<std::filesystem::path>& folders,
                                        ModuleSource source = ModuleSource::file);

    explicit Module(StaticModule factories) : _factories(std::move(factories)) {}

    /// The first of the folders' lib<name>.so, or an empty path.
    static std::filesystem::path find(const std::string& name,
                                      const std::vector<std::filesystem::path>& folders);

    /// Throws CimError failed for an entry point that is missing, with those that are there.
    [[noreturn]] void refuseProvider(const std::string& module, const std::string& provider,
                                     std::string_view kind) const;

    /// The generic entry point where there is one, else that of the provider; empty without either.
    template <typename MI>
    MiFactory<MI> factory(const std::string& provider) const {
        if (!_library) return std::get<MiFactory<MI>>(_factories);
        const std::string ending = "_Create_" + std::string(MiKind<MI>::word) + "MI";
        using Generic = MI* (*)(const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*);
        if (void* const found = _symbol("_Generic" + ending)) {
            return reinterpret_cast<Generic>(found);
        }
        using Specific = MI* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
        const auto create = reinterpret_cast<Specific>(_symbol(provider + ending));
        if (!create) return {};
        return [create](const CMPIBroker* broker, const CMPIContext* context, const char*,
                        CMPIStatus* status) { return create(broker, context, status); };
    }

private:
    struct Close {
        void operator()(void* library) const noexcept;
    };
    using Library = std::unique_ptr<void, Close>;

    Module(Library library, std::filesystem::path path)
        : _library(std::move(library)), _path(std::move(path)) {}

    void* _symbol(const std::string& name) const noexcept;

    Library _library;
    std::filesystem::path _path;
    StaticModule _factories;
};

}  // namespace cimhost
