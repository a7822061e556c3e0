#pragma once

#include "cimhost/modules/Registration.h"
#include "cimhost/objects/Manner.h"
#include "cimhost/repository/Repository.h"
#include "cimhost/server/Findings.h"

#include <chrono>
#include <filesystem>
#include <vector>

namespace cimhost {

struct ModuleCheckOptions {
    std::vector<std::filesystem::path> folders;
    bool asks = false;                  ///< each provider for its instances, too
    std::chrono::seconds patience{30};  ///< for each module
};

struct ModuleFindings {
    Findings errors;
    Findings doubts;  ///< what may be meant as it is
};

/// Opens each registered module and makes the MIs that it is registered for, as a host would when
/// the first request comes, and tells what goes wrong: symbols that nobody has, factories that
/// refuse, throw or crash. With `asks` the providers of instances are asked for them, and each for
/// the first one that it names: what the answers are held against is what a strict host does.
///
/// Each module runs in a process of its own, which nothing that it does outlives; what it writes to
/// standard error is dropped, but for the last line before it crashes. From a program
/// that has one thread. Throws std::system_error when there can be no more processes.
ModuleFindings checkModules(const Repository& repository, const Registrations& registrations,
                            const ModuleCheckOptions& options);

}  // namespace cimhost
