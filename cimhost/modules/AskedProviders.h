#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// While it lives, keeps the names of the providers that its thread asks, each once; not of those
/// that providers ask. As a local variable.
class AskedProviders {
public:
    /// The names are put here, which outlives it.
    explicit AskedProviders(std::vector<std::string>& names) noexcept
        : _names(names), _outer(innermost) {
        innermost = this;
    }
    ~AskedProviders() { innermost = _outer; }
    AskedProviders(const AskedProviders&) = delete;
    AskedProviders& operator=(const AskedProviders&) = delete;

    /// The calling thread asks this one. Throws std::bad_alloc.
    static void note(std::string_view provider) {
        if (innermost) innermost->_note(provider);
    }

private:
    void _note(std::string_view provider) {
        if (std::ranges::find(_names, provider) == _names.end()) _names.emplace_back(provider);
    }

    inline static constinit thread_local AskedProviders* innermost = nullptr;
    std::vector<std::string>& _names;
    AskedProviders* _outer;
};

}  // namespace cimhost
