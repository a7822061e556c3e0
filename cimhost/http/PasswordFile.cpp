#include "cimhost/http/PasswordFile.h"

#include "cimhost/http/Descriptor.h"
#include "cimhost/http/PasswordHash.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

namespace cimhost {
namespace {

constexpr std::size_t maximumFileBytes = 1024 * 1024;
constexpr std::size_t maximumNameBytes = 255;

[[noreturn]] void throwSystem(const std::string& what, const std::filesystem::path& file) {
    throw std::system_error(errno, std::generic_category(), what + " " + file.string());
}

void checkAccess(int descriptor, const std::filesystem::path& file) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) throwSystem("cannot look at the password file", file);
    if (!S_ISREG(status.st_mode)) {
        throw std::runtime_error("the password file " + file.string() + " is not a regular file");
    }
    if ((status.st_mode & (S_IROTH | S_IWOTH | S_IWGRP)) != 0) {
        throw std::runtime_error("the password file " + file.string() +
                                 " may be read or changed by others; chmod 600 helps");
    }
}

std::string readAll(int descriptor, const std::filesystem::path& file) {
    std::string text(maximumFileBytes + 1, '\0');
    std::size_t size = 0;
    while (size < text.size()) {
        const ssize_t count = read(descriptor, text.data() + size, text.size() - size);
        if (count == 0) break;
        if (count < 0 && errno != EINTR) throwSystem("cannot read the password file", file);
        if (count > 0) size += static_cast<std::size_t>(count);
    }
    if (size > maximumFileBytes) {
        throw std::runtime_error("the password file " + file.string() + " is larger than 1 MiB");
    }
    text.resize(size);
    return text;
}

void writeAll(int descriptor, std::string_view text, const std::filesystem::path& file) {
    while (!text.empty()) {
        const ssize_t count = write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR) throwSystem("cannot write", file);
        if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
    }
}

/// Removes the half-made file unless all went well.
struct TemporaryFile {
    std::filesystem::path name;
    Descriptor descriptor;

    explicit TemporaryFile(const std::filesystem::path& target) {
        std::string pattern = target.string() + ".XXXXXX";
        descriptor = Descriptor(mkostemp(pattern.data(), O_CLOEXEC));
        if (!descriptor) throwSystem("cannot make a file beside", target);
        name = pattern;
    }
    ~TemporaryFile() {
        if (!name.empty()) std::remove(name.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
};

}  // namespace

PasswordFile::PasswordFile(const std::filesystem::path& file) {
    const Descriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor) throwSystem("cannot open the password file", file);
    checkAccess(descriptor.get(), file);
    const std::string text = readAll(descriptor.get(), file);
    std::string_view rest = text;
    for (std::size_t number = 1; !rest.empty(); ++number) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        try {
            _readLine(line);
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(file.string() + ":" + std::to_string(number) + ": " +
                                     error.what());
        }
    }
}

void PasswordFile::_readLine(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.starts_with('#')) return;
    const std::size_t colon = line.find(':');
    if (colon == line.npos) throw std::runtime_error("no colon between user and hash");
    const std::string user(line.substr(0, colon));
    if (_entries.contains(user)) throw std::runtime_error("user " + user + " is there twice");
    set(user, std::string(line.substr(colon + 1)));
}

void PasswordFile::set(const std::string& user, const std::string& hash) {
    if (!isUserName(user)) {
        throw std::runtime_error(
            "a user name has 1 to 255 bytes, no colon, no control character and no '#' in front");
    }
    if (!isUsableHash(hash)) {
        throw std::runtime_error("the password hash of user " + user +
                                 " is none, or of a method that is not trusted");
    }
    _entries[user] = hash;
}

void PasswordFile::save(const std::filesystem::path& file) const {
    std::string text;
    for (const auto& [user, hash] : _entries) {
        text.append(user).append(":").append(hash).append("\n");
    }
    TemporaryFile temporary(file);
    writeAll(temporary.descriptor.get(), text, temporary.name);
    if (fsync(temporary.descriptor.get()) != 0) throwSystem("cannot write", temporary.name);
    if (std::rename(temporary.name.c_str(), file.c_str()) != 0) throwSystem("cannot replace", file);
    temporary.name.clear();
}

bool isUserName(std::string_view name) noexcept {
    return !name.empty() && name.size() <= maximumNameBytes && name.front() != '#' &&
           std::ranges::none_of(name, [](char character) {
               const auto byte = static_cast<unsigned char>(character);
               return byte < 0x20 || byte == 0x7F || character == ':';
           });
}

}  // namespace cimhost
