#include "platform/host/HostFiles.h"

#include <fstream>
#include <utility>

namespace {

std::string currentRoot;

}  // namespace

const std::string& hostRoot() noexcept { return currentRoot; }

void setHostRoot(std::string root) { currentRoot = std::move(root); }

HostFiles::HostFiles(std::string root) : _root(std::move(root)) {}

std::optional<std::string> HostFiles::text(std::string_view path) const {
    constexpr std::size_t sizeLimit = 65536;
    constexpr std::size_t pieceSize = 1024;  // most of the files that are asked for have a line
    std::ifstream file(_root + std::string(path), std::ios::binary);
    std::string content;
    while (file && content.size() < sizeLimit) {
        const std::size_t done = content.size();
        content.resize(done + pieceSize);
        file.read(content.data() + done, pieceSize);
        content.resize(done + static_cast<std::size_t>(file.gcount()));
    }
    if (!file.is_open() || file.bad()) return std::nullopt;
    return content;
}

std::optional<std::string> HostFiles::line(std::string_view path) const {
    constexpr std::string_view blanks = " \t\r";
    const std::string content = text(path).value_or("");
    std::string_view first = std::string_view(content).substr(0, content.find('\n'));
    const std::size_t begin = first.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return std::nullopt;
    return std::string(first.substr(begin, first.find_last_not_of(blanks) - begin + 1));
}
