#include "platform/computersystem/HostFiles.h"

#include <fstream>
#include <utility>

HostFiles::HostFiles(std::string root) : _root(std::move(root)) {}

std::optional<std::string> HostFiles::text(std::string_view path) const {
    constexpr std::size_t sizeLimit = 65536;
    std::ifstream file(_root + std::string(path), std::ios::binary);
    std::string content(sizeLimit, '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.is_open() || file.bad()) return std::nullopt;
    content.resize(static_cast<std::size_t>(file.gcount()));
    return content;
}

std::optional<std::string> HostFiles::line(std::string_view path) const {
    constexpr std::string_view blanks = " \t\r";
    std::string const content = text(path).value_or("");
    std::string_view first = std::string_view(content).substr(0, content.find('\n'));
    std::size_t const begin = first.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return std::nullopt;
    return std::string(first.substr(begin, first.find_last_not_of(blanks) - begin + 1));
}
