#include "cimhost/server/Installation.h"

#include "cimhost/modules/Registration.h"
#include "cimhost/mof/MofLexer.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>

namespace cimhost {
namespace {

using std::filesystem::path;

constexpr const char* interop = "interop";

path fromProgram(const char* relative) {
    const path program = std::filesystem::read_symlink("/proc/self/exe");
    return (program.parent_path() / relative).lexically_normal();
}

/// The files below the folder with this extension, in order of name.
std::vector<path> filesBelow(const path& folder, const char* extension) {
    std::vector<path> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             folder, std::filesystem::directory_options::skip_permission_denied, error)) {
        if (entry.path().extension() == extension) found.push_back(entry.path());
    }
    std::ranges::sort(found);
    return found;
}

/// What a MOF file declares, and all that it mentions.
struct MofNames {
    std::set<std::string, NameLess> declared;
    std::set<std::string, NameLess> mentioned;
};

MofNames namesIn(const path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const std::string name = file.string();
    MofNames names;
    MofLexer lexer(text, name);
    bool isAfterClass = false;
    for (MofToken token = lexer.next(); token.kind != MofToken::Kind::end; token = lexer.next()) {
        const bool isName = token.kind == MofToken::Kind::name;
        if (isName && isAfterClass) names.declared.emplace(token.text);
        if (isName) names.mentioned.emplace(token.text);
        isAfterClass = token.isName("class");
    }
    return names;
}

/// Puts the files of one namespace in order.
class Choice {
public:
    Choice(const std::vector<path>& files, const path& base) : _base(base) {
        for (const path& file : files) {
            const path folder = file.parent_path();
            if (folder == base.parent_path()) continue;
            MofNames names = namesIn(file);
            for (const std::string& each : names.declared) _homes.emplace(each, file);
            _names.emplace(file, std::move(names));
        }
    }

    std::vector<SchemaFile> of(const std::string& nameSpace,
                               const std::set<std::string, NameLess>& classes) {
        _chosen.clear();
        _seen.clear();
        if (std::filesystem::exists(_base)) _chosen.push_back({_base, nameSpace});
        for (const std::string& each : classes) _add(each, nameSpace);
        return std::move(_chosen);
    }

private:
    void _add(const std::string& className, const std::string& nameSpace) {
        const auto home = _homes.find(className);
        if (home == _homes.end() || !_seen.insert(home->second).second) return;
        for (const std::string& each : _names.at(home->second).mentioned) _add(each, nameSpace);
        _chosen.push_back({home->second, nameSpace});
    }

    path _base;
    std::map<path, MofNames> _names;
    std::map<std::string, path, NameLess> _homes;  ///< the file of each class
    std::set<path> _seen;
    std::vector<SchemaFile> _chosen;
};

}  // namespace

path installedModules() { return fromProgram(CIMHOST_MODULES_FROM_PROGRAM); }

path installedData() { return fromProgram(CIMHOST_DATA_FROM_PROGRAM); }

InstalledSchema findInstalled(const path& data) {
    InstalledSchema found;
    found.registrations = filesBelow(data, ".registration");
    if (found.registrations.empty()) return found;
    Registrations registrations;
    for (const path& file : found.registrations) registrations.readFile(file);
    std::map<std::string, std::set<std::string, NameLess>, NameLess> classes;
    classes.try_emplace(interop);  // what subscriptions need
    for (const Registration& each : registrations.all()) {
        classes[each.nameSpace].insert(each.className);
    }
    Choice choice(filesBelow(data, ".mof"), data / "mof/base/base.mof");
    for (const auto& [nameSpace, wanted] : classes) {
        const std::vector<SchemaFile> files = choice.of(nameSpace, wanted);
        found.files.insert(found.files.end(), files.begin(), files.end());
    }
    return found;
}

}  // namespace cimhost
