#include "platform/smbios/SmbiosSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace {

// Both forms of the entry point fit (DSP0134, clause 5.2).
constexpr std::size_t entryPointLimit = 32;

SmbiosError fileError(const std::string& verb, const std::string& path, int number) {
    return SmbiosError("cannot " + verb + " " + path + ": " +
                       std::generic_category().message(number));
}

/// An open regular file.
class File {
public:
    explicit File(const std::string& path)
        : _path(path), _descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        if (_descriptor < 0) throw fileError("open", path, errno);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { ::close(_descriptor); }

    /// A device or a pipe could feed us for ever.
    bool isRegular() const noexcept {
        struct stat status {};
        return ::fstat(_descriptor, &status) == 0 && S_ISREG(status.st_mode);
    }

    /// Bytes from this offset on: `limit` of them, fewer when the file ends earlier.
    SmbiosSource::Bytes read(std::uint64_t offset, std::size_t limit) const {
        SmbiosSource::Bytes bytes;
        while (bytes.size() < limit) {
            const std::size_t done = bytes.size();
            bytes.resize(std::min(limit, done + chunkSize));
            bytes.resize(done + _readOnce(bytes.data() + done, bytes.size() - done, offset + done));
            if (bytes.size() == done) break;
        }
        return bytes;
    }

private:
    static constexpr std::size_t chunkSize = 65536;

    std::size_t _readOnce(std::uint8_t* buffer, std::size_t size, std::uint64_t offset) const {
        ssize_t count = 0;
        do {
            count = ::pread(_descriptor, buffer, size, static_cast<off_t>(offset));
        } while (count < 0 && errno == EINTR);
        if (count < 0) throw fileError("read", _path, errno);
        return static_cast<std::size_t>(count);
    }

    const std::string& _path;
    int _descriptor;
};

SmbiosSource::Bytes readFile(const std::string& path, std::uint64_t offset, std::size_t limit) {
    const File file(path);
    if (!file.isRegular()) throw SmbiosError("cannot read " + path + ": not a regular file");
    return file.read(offset, limit);
}

}  // namespace

SmbiosError::~SmbiosError() = default;

SmbiosSource::~SmbiosSource() = default;

SmbiosKernelTables::SmbiosKernelTables(std::string directory) : _directory(std::move(directory)) {}

SmbiosSource::Bytes SmbiosKernelTables::entryPoint() const {
    return readFile(_directory + "/smbios_entry_point", 0, entryPointLimit);
}

SmbiosSource::Bytes SmbiosKernelTables::table(std::uint64_t, std::size_t length) const {
    return readFile(_directory + "/DMI", 0, length);
}

SmbiosDumpFile::SmbiosDumpFile(std::string path) : _path(std::move(path)) {}

SmbiosSource::Bytes SmbiosDumpFile::entryPoint() const {
    return readFile(_path, 0, entryPointLimit);
}

SmbiosSource::Bytes SmbiosDumpFile::table(std::uint64_t address, std::size_t length) const {
    // Beyond what a file offset can say there is nothing to read.
    if (address > INT64_MAX - length) return {};
    return readFile(_path, address, length);
}

SmbiosSource::Bytes SmbiosMemory::entryPoint() const { return table(0, entryPointLimit); }

SmbiosSource::Bytes SmbiosMemory::table(std::uint64_t address, std::size_t length) const {
    if (address >= _dump.size()) return {};
    const auto first = _dump.begin() + static_cast<std::ptrdiff_t>(address);
    const auto size = std::min<std::uint64_t>(length, _dump.size() - address);
    return {first, first + static_cast<std::ptrdiff_t>(size)};
}
