#pragma once

#include "cimhost/modules/Registration.h"
#include "cimhost/repository/Repository.h"
#include "cimhost/server/Findings.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace cimhost {

/// What speaks against the registrations, held against the classes: a provider that would never be
/// asked, or asked for what cannot be. No module is looked at. Of all modules, or of this one.
Findings checkClasses(const Repository& repository, const Registrations& registrations,
                      std::string_view module = {});

/// The same for the files of modules: those that are not there, or lack the entry point for a
/// provider that is registered. No code of them runs.
Findings checkModuleFiles(const Registrations& registrations,
                          const std::vector<std::filesystem::path>& folders,
                          std::string_view module = {});

/// `file:line: text`, or the text where the registration is from no file.
std::string placed(const Registration& registration, const std::string& text);

}  // namespace cimhost
