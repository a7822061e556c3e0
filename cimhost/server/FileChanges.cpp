#include "cimhost/server/FileChanges.h"

#include "cimhost/modules/Module.h"
#include "cimhost/server/ServeOptions.h"

#include <sys/stat.h>

#include <utility>

namespace cimhost {

using std::filesystem::path;

FileChanges::FileChanges(const ServeOptions& options, const std::set<std::string>& modules)
    : _options(options), _knownSchema(_schema()), _knownModules(_prints(modules)) {}

FileChanges::Print FileChanges::_printOf(const path& file) noexcept {
    struct stat facts {};
    if (stat(file.c_str(), &facts) != 0) return {};
    return {facts.st_dev, facts.st_ino, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
}

FileChanges::Prints FileChanges::_schema() const {
    Prints prints;
    std::set<path> all;
    for (const SchemaFile& each : _options.schema.files()) {
        all.insert(std::filesystem::absolute(each.file).parent_path());
    }
    all.insert(_options.schema.includeFolders().begin(), _options.schema.includeFolders().end());
    for (const path& folder : all) {
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
            const path& file = entry.path();
            if (file.extension() == ".mof") prints.emplace(file, _printOf(file));
        }
    }
    for (const SchemaFile& each : _options.schema.files()) {
        prints.emplace(std::filesystem::absolute(each.file), _printOf(each.file));
    }
    for (const path& file : _options.schema.registrations()) prints.emplace(file, _printOf(file));
    return prints;
}

std::map<std::string, FileChanges::Print> FileChanges::_prints(
    const std::set<std::string>& modules) const {
    std::map<std::string, Print> prints;
    for (const std::string& name : modules) {
        prints.emplace(name, _printOf(Module::find(name, _options.providerFolders)));
    }
    return prints;
}

FileChanges::Found FileChanges::look(const std::set<std::string>& modules) {
    Found found;
    const Prints schema = std::exchange(_knownSchema, _schema());
    found.hasSchema = schema != _knownSchema;
    const auto before = std::exchange(_knownModules, _prints(modules));
    for (const auto& [name, print] : _knownModules) {
        const auto known = before.find(name);
        // One that is not there, while it is built, is no other.
        const bool isThere = print.size >= 0;
        if (known == before.end()) continue;
        if (isThere && known->second != print) found.modules.insert(name);
        if (!isThere) _knownModules[name] = known->second;
    }
    return found;
}

std::set<path> FileChanges::folders() const {
    std::set<path> files(_options.providerFolders.begin(), _options.providerFolders.end());
    for (const auto& [file, print] : _knownSchema) files.insert(file.parent_path());
    for (const auto& [name, print] : _knownModules) {
        const path file = Module::find(name, _options.providerFolders);
        std::error_code error;
        const path target = std::filesystem::canonical(file, error);
        if (!error) files.insert(target.parent_path());
    }
    return files;
}

}  // namespace cimhost
