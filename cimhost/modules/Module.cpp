#include "cimhost/modules/Module.h"

#include "cimhost/repository/CimError.h"

#include <dlfcn.h>

#include <system_error>

namespace cimhost {

namespace {

[[noreturn]] void notFound(const std::string& file,
                           const std::vector<std::filesystem::path>& folders) {
    std::string message = file + " was not found";
    const char* before = " in ";
    for (const std::filesystem::path& folder : folders) {
        message += before + folder.string();
        before = ", ";
    }
    throw CimError(CimCode::failed, message);
}

std::filesystem::path findFile(const std::string& file,
                               const std::vector<std::filesystem::path>& folders) {
    for (const std::filesystem::path& folder : folders) {
        std::error_code error;
        // A path with a slash, lest the loader look in its own folders.
        std::filesystem::path path = std::filesystem::absolute(folder / file, error);
        if (!error && std::filesystem::exists(path, error)) return path;
    }
    notFound(file, folders);
}

}  // namespace

std::unique_ptr<Module> Module::load(const std::string& name,
                                     const std::vector<std::filesystem::path>& folders) {
    const std::filesystem::path path = findFile("lib" + name + ".so", folders);
    // Now: a symbol that is missing shows here rather than in the middle of a call. Global: so it
    // is in established hosts; names that clash there are to clash here, where they are looked for.
    Library library(dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL));
    if (!library) {
        const char* const reason = dlerror();
        throw CimError(CimCode::failed, reason ? reason : path.string() + " cannot be loaded");
    }
    return std::unique_ptr<Module>(new Module(std::move(library)));
}

void Module::Close::operator()(void* library) const noexcept { dlclose(library); }

void* Module::_symbol(const std::string& name) const noexcept {
    return dlsym(_library.get(), name.c_str());
}

}  // namespace cimhost
