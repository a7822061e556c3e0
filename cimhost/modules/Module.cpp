#include "cimhost/modules/Module.h"

#include "cimhost/modules/ModuleFile.h"
#include "cimhost/modules/PrivateCopy.h"
#include "cimhost/repository/CimError.h"

#include <dlfcn.h>

#include <optional>
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

std::string fileOf(const std::string& name) { return "lib" + name + ".so"; }

void* open(const std::filesystem::path& path) {
    // Now: a symbol that is missing shows here rather than in the middle of a call. Global: so it
    // is in established hosts; names that clash there are to clash here, where they are looked for.
    void* const library = openLibrary(path, RTLD_NOW | RTLD_GLOBAL);
    if (library) return library;
    const char* const reason = dlerror();
    throw CimError(CimCode::failed,
                   reason ? demangled(reason) : path.string() + " cannot be loaded");
}

}  // namespace

void* openLibrary(const std::filesystem::path& file, int flags) noexcept {
    // By its declaration it throws nothing. Clang believes that, and would stop nothing that it
    // does throw.
    void* (*const volatile open)(const char*, int) = dlopen;
    return open(file.c_str(), flags);
}

std::filesystem::path Module::find(const std::string& name,
                                   const std::vector<std::filesystem::path>& folders) {
    for (const std::filesystem::path& folder : folders) {
        std::error_code error;
        // A path with a slash, lest the loader look in its own folders.
        std::filesystem::path path = std::filesystem::absolute(folder / fileOf(name), error);
        if (!error && std::filesystem::exists(path, error)) return path;
    }
    return {};
}

std::unique_ptr<Module> Module::load(const std::string& name,
                                     const std::vector<std::filesystem::path>& folders,
                                     ModuleSource source) {
    const std::filesystem::path path = find(name, folders);
    if (path.empty()) notFound(fileOf(name), folders);
    std::optional<PrivateCopy> copy;
    try {
        if (source == ModuleSource::copy) copy.emplace(path);
    } catch (const std::system_error& error) {
        throw CimError(CimCode::failed, error.what());
    }
    Library library(open(copy ? copy->path() : path));
    return std::unique_ptr<Module>(new Module(std::move(library), path));
}

void Module::refuseProvider(const std::string& module, const std::string& provider,
                            std::string_view kind) const {
    std::string message = "module " + module + " has no entry point " + provider + "_Create_" +
                          std::string(kind) + "MI";
    try {
        if (_library) message += "; " + ModuleFile::read(_path).entryPointWords();
    } catch (const std::runtime_error&) {
        // What is loaded already need not be there any more.
    }
    throw CimError(CimCode::failed, message);
}

void Module::Close::operator()(void* library) const noexcept { dlclose(library); }

void* Module::_symbol(const std::string& name) const noexcept {
    return dlsym(_library.get(), name.c_str());
}

}  // namespace cimhost
