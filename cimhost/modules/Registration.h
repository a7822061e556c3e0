#pragma once

#include "cimhost/repository/Names.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace cimhost {

enum class ProviderType : std::uint8_t { instance, association, method, indication };

constexpr std::size_t providerTypeCount = 4;

/// Which provider of which module serves a class in a namespace, and in what.
struct Registration {
    std::string className;
    std::string nameSpace;
    std::string provider;  ///< as the module's entry points name it
    std::string module;    ///< base name: Fans for libFans.so
    std::bitset<providerTypeCount> types;
    std::string place{};  ///< "file:line"; empty for one that is from no file

    /// Wherever they are written.
    bool operator==(const Registration& other) const noexcept;

    bool serves(ProviderType type) const noexcept { return types[static_cast<std::size_t>(type)]; }
};

/// Why a registration was refused. From a file, what() reads "file:line: message".
class RegistrationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// All registrations of a host.
///
/// A file has one registration a line: `Class Namespace Provider Module type...`, where a type is
/// `instance`, `association`, `method` or `indication`. A class in several namespaces takes several
/// lines. `#` begins a comment. Classes and namespaces compare without regard to case, providers
/// and modules exactly.
///
/// Or it has sections, as sfcb's: `[Class]`, and below it the lines `provider: Provider`,
/// `location: Module`, `type: type...` and `namespace: Namespace...`. The keys unload, parameters,
/// group and user are passed over.
///
/// What is repeated in the same words, in a file or in two, counts once.
///
/// Filled before the host starts by one thread; from then on constant and safe to read from
/// several.
class Registrations {
public:
    Registrations() = default;
    Registrations(Registrations&&) = default;
    Registrations& operator=(Registrations&&) = default;

    /// Throws RegistrationError for a line or section that is broken, for one that registers what
    /// another has registered, and for a file that cannot be read. What came before it stays.
    void readFile(const std::filesystem::path& file);

    /// From now on readFile and readText throw nothing: what they refuse is kept, the rest read.
    void keepErrors() noexcept { _keepsErrors = true; }
    const std::vector<std::string>& errors() const noexcept { return _errors; }

    /// `name` stands for the file in messages.
    void readText(std::string_view text, const std::string& name);

    /// Throws RegistrationError, without a place: a field is empty or malformed; the provider
    /// serves this class already; another provider serves its instances or methods; the provider is
    /// in another module.
    void add(Registration registration);

    /// The first registration of exactly this class, or nullptr. Good as long as this object.
    const Registration* find(ProviderType type, std::string_view nameSpace,
                             std::string_view className) const noexcept;

    /// All of a type in a namespace, in order of registration.
    const std::vector<const Registration*>& all(ProviderType type,
                                                std::string_view nameSpace) const noexcept;

    const std::deque<Registration>& all() const noexcept { return _registrations; }

    /// What was repeated, as "file:line: message": all, or what concerns this module.
    std::vector<std::string> warnings(std::string_view module = {}) const;

    /// The same again, but for errors.
    Registrations clone() const;

private:
    struct Index {
        std::vector<const Registration*> inOrder;
        std::unordered_map<std::string_view, const Registration*, NameHash, NameEqual> byClass;
    };
    using Indexes = std::array<Index, providerTypeCount>;

    template <typename Work>
    void _tryTo(Work&& work);
    void _read(Registration registration, const std::string& place);
    const Index* _find(ProviderType type, std::string_view nameSpace) const noexcept;
    void _check(const Registration& registration) const;

    // A deque, since the indexes point into it.
    std::deque<Registration> _registrations;
    std::map<std::string, Indexes, NameLess> _nameSpaces;
    std::map<std::string, std::string> _modules;                 // by provider
    std::vector<std::pair<std::string, std::string>> _warnings;  // module and text
    bool _keepsErrors = false;
    std::vector<std::string> _errors;
};

}  // namespace cimhost
