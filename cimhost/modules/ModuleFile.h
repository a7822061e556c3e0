#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// The names in the file of a module, read without running any of its code. Its own names and
/// those that it wants of others are as the linker knows them: see demangled().
struct ModuleFile {
    std::vector<std::string> entryPoints;  ///< functions like Fans_Create_InstanceMI, in order
    std::vector<std::string> wanted;       ///< what others must have

    /// Throws std::runtime_error, without the path, for a file that cannot be read or is no
    /// library of this machine.
    static ModuleFile read(const std::filesystem::path& path);

    /// True when the module can make MIs of a kind ("Instance") for the provider, as far as names
    /// tell: one factory for all providers may refuse this one.
    bool offers(std::string_view provider, std::string_view kind) const;

    /// `it has Fans_Create_InstanceMI, Fans_Create_MethodMI`, or what it means that it has none.
    std::string entryPointWords() const;
};

/// The text with each C++ name that the compiler has mangled as it was written.
std::string demangled(std::string_view text);

}  // namespace cimhost
