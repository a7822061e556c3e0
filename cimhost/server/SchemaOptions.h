#pragma once

#include "cimhost/modules/Registration.h"
#include "cimhost/mof/MofComplaints.h"
#include "cimhost/repository/Repository.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace cimhost {

struct SchemaFile {
    std::filesystem::path file;
    std::string nameSpace;
};

/// The options that say which classes there are and who serves them.
class SchemaOptions {
public:
    /// Adds the options to a command; this object must outlive the parsing.
    void addTo(CLI::App& command);

    /// Those that were set; then each file with the namespace that was named last before it, or
    /// else with the first one named.
    std::vector<SchemaFile> files() const;
    void setFiles(std::vector<SchemaFile> files) { _setFiles = std::move(files); }

    /// Files and registrations of an installation, where none are named at all. Throws UsageError
    /// that says what to do when nothing is installed there, and as findInstalled.
    void takeInstalledUnlessNamed(const std::filesystem::path& data);

    const std::vector<std::filesystem::path>& registrations() const noexcept {
        return _registrations;
    }

    const std::vector<std::filesystem::path>& includeFolders() const noexcept {
        return _includeFolders;
    }

    /// From now on the classes of ConsoleClasses.h are read last.
    void addConsole() noexcept { _hasConsole = true; }

    /// The options as a command line has them.
    std::vector<std::string> arguments() const;

    /// Reads the MOF files in order. Throws MofError, or tells the complaints all that is wrong;
    /// UsageError when no file was named.
    void loadInto(Repository& repository, MofComplaints* complaints = nullptr) const;

    /// Reads the registration files in order. Throws RegistrationError.
    void loadInto(Registrations& registrations) const;

private:
    const CLI::App* _command = nullptr;
    std::vector<std::string> _nameSpaces;
    std::vector<std::filesystem::path> _files;
    std::vector<std::filesystem::path> _includeFolders;
    std::vector<std::filesystem::path> _registrations;
    std::vector<SchemaFile> _setFiles;
    bool _hasConsole = false;
};

}  // namespace cimhost
