#pragma once

#include "cimhost/server/SchemaOptions.h"

#include <filesystem>
#include <vector>

namespace cimhost {

/// Where this program's installation, whatever its prefix, keeps modules.
std::filesystem::path installedModules();

/// The same for MOF and registration files.
std::filesystem::path installedData();

/// Everything that serves a class below a folder of data.
struct InstalledSchema {
    std::vector<SchemaFile> files;  ///< in the order in which they are to be read
    std::vector<std::filesystem::path> registrations;
};

/// All *.registration files below the folder, whoever put them there. Each namespace that they
/// name, and interop, gets the base classes, mof/base/base.mof, and the files that declare the
/// classes registered for it, each after those that declare what it mentions. Empty when nothing is
/// there. Throws RegistrationError and MofError for what cannot be read.
InstalledSchema findInstalled(const std::filesystem::path& data);

}  // namespace cimhost
