#include "cimhost/server/SchemaOptions.h"

#include "cimhost/mof/MofReader.h"
#include "cimhost/server/Command.h"
#include "cimhost/server/CommandOptions.h"
#include "cimhost/server/ConsoleClasses.h"
#include "cimhost/server/Installation.h"

#include <CLI/CLI.hpp>

namespace cimhost {
namespace {

constexpr const char* defaultNameSpace = "root/cimv2";

}  // namespace

void SchemaOptions::addTo(CLI::App& command) {
    _command = &command;
    const std::string group = "Schema";
    addList(command, "--namespace", _nameSpaces, "NAME",
            "Namespace of the --schema files that follow, up to the next --namespace; the "
            "first one named is also that of files before it [root/cimv2]")
        ->group(group);
    addList(command, "--schema", _files, "FILE",
            "MOF file with classes and instances; may be repeated")
        ->group(group);
    addList(command, "--include-dir", _includeFolders, "DIR",
            "Where '#pragma include' looks after the including file's folder; may be repeated")
        ->group(group);
    addList(command, "--registration", _registrations, "FILE",
            "File with lines 'Class Namespace Provider Module type...', or with sections "
            "'[Class]'; may be repeated")
        ->group(group);
}

std::vector<SchemaFile> SchemaOptions::files() const {
    std::vector<SchemaFile> result = _setFiles;
    auto nextFile = _files.begin();
    auto nextNameSpace = _nameSpaces.begin();
    std::string current = _nameSpaces.empty() ? defaultNameSpace : _nameSpaces.front();
    for (const CLI::Option* option : _command->parse_order()) {
        if (option->check_name("--namespace")) current = *nextNameSpace++;
        if (option->check_name("--schema")) result.push_back({*nextFile++, current});
    }
    return result;
}

void SchemaOptions::takeInstalledUnlessNamed(const std::filesystem::path& data) {
    if (!files().empty() || !_registrations.empty()) return;
    InstalledSchema found = findInstalled(data);
    if (found.files.empty()) {
        throw UsageError(
            "nothing is installed: there is no registration below " + data.string() +
            ". Install modules there, name a project file with --project, or MOF files "
            "with --schema and registrations with --registration; 'cimhost serve "
            "--help' has an example");
    }
    _setFiles = std::move(found.files);
    _registrations = std::move(found.registrations);
}

std::vector<std::string> SchemaOptions::arguments() const {
    std::vector<std::string> words;
    const auto add = [&words](const char* option, const std::string& value) {
        words.insert(words.end(), {option, value});
    };
    for (const SchemaFile& schema : files()) {
        add("--namespace", schema.nameSpace);
        add("--schema", schema.file);
    }
    for (const std::string& nameSpace : _nameSpaces) add("--namespace", nameSpace);
    for (const std::filesystem::path& folder : _includeFolders) add("--include-dir", folder);
    for (const std::filesystem::path& file : _registrations) add("--registration", file);
    return words;
}

void SchemaOptions::loadInto(Repository& repository, MofComplaints* complaints) const {
    const std::vector<SchemaFile> all = files();
    if (all.empty()) throw UsageError("name at least one MOF file with --schema");
    for (const std::string& nameSpace : _nameSpaces) repository.make(nameSpace);
    for (const SchemaFile& schema : all) {
        MofReader reader(repository, schema.nameSpace);
        if (complaints) reader.keepErrors(*complaints);
        for (const std::filesystem::path& folder : _includeFolders) reader.addSearchPath(folder);
        reader.readFile(schema.file);
    }
    if (_hasConsole) addConsoleClasses(repository);
}

void SchemaOptions::loadInto(Registrations& registrations) const {
    for (const std::filesystem::path& file : _registrations) registrations.readFile(file);
}

}  // namespace cimhost
