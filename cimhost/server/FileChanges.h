#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace cimhost {

struct ServeOptions;

/// Which of the files behind a running server are no longer what they were. For one thread.
class FileChanges {
public:
    struct Found {
        bool hasSchema = false;         ///< a MOF or registration file
        std::set<std::string> modules;  ///< by name
    };

    /// MOF files count in the folders of those that the options name, and in the folders for
    /// includes. The options outlive this.
    FileChanges(const ServeOptions& options, const std::set<std::string>& modules);

    /// What has changed since the last look, for good: it is not told again.
    Found look(const std::set<std::string>& modules);

    /// The folders in which changes show, seen from either end of links.
    std::set<std::filesystem::path> folders() const;

private:
    /// What tells a file from another that has taken its place.
    struct Print {
        std::uint64_t device = 0;
        std::uint64_t number = 0;
        std::int64_t size = -1;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;

        bool operator==(const Print&) const = default;
    };
    using Prints = std::map<std::filesystem::path, Print>;

    static Print _printOf(const std::filesystem::path& file) noexcept;
    Prints _schema() const;
    std::map<std::string, Print> _prints(const std::set<std::string>& modules) const;

    const ServeOptions& _options;
    Prints _knownSchema;
    std::map<std::string, Print> _knownModules;
};

}  // namespace cimhost
