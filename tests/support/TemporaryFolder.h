#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace cimhost {

/// A folder of one test, gone with it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "cimhost.XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp");
        _path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const noexcept { return _path; }
    std::filesystem::path operator/(const std::string& name) const { return _path / name; }

    /// Writes a file that only its owner may read, in folders that are made where need be.
    std::filesystem::path write(const std::string& name, std::string_view text) const {
        const std::filesystem::path file = _path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        std::filesystem::permissions(file, std::filesystem::perms(0600));
        return file;
    }

    std::string read(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(_path / name, std::ios::binary).rdbuf();
        return text.str();
    }

private:
    std::filesystem::path _path;
};

}  // namespace cimhost
