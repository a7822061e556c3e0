#include "cimhost/indications/SubscriptionFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace cimhost {

namespace {

constexpr std::size_t largestFile = 16 * 1024 * 1024;

[[noreturn]] void fail(const std::filesystem::path& file, const char* what, int error) {
    throw std::runtime_error(file.string() + ": " + what + ": " +
                             std::generic_category().message(error));
}

class OpenFile {
public:
    OpenFile(const std::filesystem::path& file, int flags)
        : _file(file), _descriptor(open(file.c_str(), flags | O_CLOEXEC)) {}
    /// A new one beside the file, for its owner alone, whose name nobody can foresee.
    explicit OpenFile(std::string pattern) : _descriptor(mkostemp(pattern.data(), O_CLOEXEC)) {
        _file = pattern;
        requireOpen();
    }
    ~OpenFile() {
        if (_descriptor >= 0) close(_descriptor);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    const std::filesystem::path& name() const noexcept { return _file; }
    bool isOpen() const noexcept { return _descriptor >= 0; }

    void requireOpen() const {
        if (!isOpen()) fail(_file, "cannot be opened", errno);
    }

    std::string readAll() const {
        std::string text;
        std::string block(64 * 1024, '\0');
        for (;;) {
            const ssize_t count = ::read(_descriptor, block.data(), block.size());
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) fail(_file, "cannot be read", errno);
            if (count == 0) return text;
            text.append(block, 0, static_cast<std::size_t>(count));
            if (text.size() > largestFile) fail(_file, "cannot be read", EFBIG);
        }
    }

    void writeAll(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t count = ::write(_descriptor, text.data(), text.size());
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) fail(_file, "cannot be written", errno);
            text.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    void sync() const {
        if (fsync(_descriptor) != 0) fail(_file, "cannot be brought to the disk", errno);
    }

private:
    std::filesystem::path _file;
    int _descriptor;
};

}  // namespace

std::optional<std::string> readWholeFile(const std::filesystem::path& file) {
    const OpenFile source(file, O_RDONLY);
    if (!source.isOpen() && errno == ENOENT) return std::nullopt;
    source.requireOpen();
    return source.readAll();
}

void replaceFile(const std::filesystem::path& file, std::string_view text) {
    if (text.size() > largestFile) fail(file, "cannot be written", EFBIG);
    const OpenFile next(file.string() + ".XXXXXX");
    try {
        next.writeAll(text);
        next.sync();
        if (rename(next.name().c_str(), file.c_str()) != 0) fail(file, "cannot be replaced", errno);
    } catch (...) {
        unlink(next.name().c_str());
        throw;
    }
    // The new name is on the disk when its folder is.
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    const OpenFile home(folder, O_RDONLY | O_DIRECTORY);
    if (home.isOpen()) home.sync();
}

}  // namespace cimhost
