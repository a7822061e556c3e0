#include "cimhost/server/FileTrust.h"

#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace cimhost {
namespace {

bool isSudoUser(uid_t user) noexcept {
    const char* const text = geteuid() == 0 ? std::getenv("SUDO_UID") : nullptr;
    if (!text) return false;
    const std::string_view digits = text;
    uid_t found = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), found);
    return error == std::errc() && end == digits.data() + digits.size() && found == user;
}

bool isTrustedUser(uid_t user) noexcept {
    return user == 0 || user == geteuid() || isSudoUser(user);
}

const char* nameOf(FileUse use) noexcept {
    switch (use) {
        case FileUse::passwords: return "the password file ";
        case FileUse::privateKey: return "the TLS key ";
        case FileUse::state: return "the file of subscriptions ";
        case FileUse::project: return "the project file ";
        case FileUse::registration: return "the registration file ";
        case FileUse::module: return "the module ";
        case FileUse::moduleFolder: return "the folder ";
    }
    return "";
}

bool isOwn(FileUse use) noexcept {
    return use == FileUse::passwords || use == FileUse::privateKey || use == FileUse::state;
}

Distrust ofOwner(const std::string& what, uid_t owner, bool isRefusal) {
    return {isRefusal, what + " belongs to user " + std::to_string(owner) +
                           ", who is neither root nor the user of this process"};
}

/// A file that nobody but the process has to do with.
std::optional<Distrust> judgeOwn(const std::string& what, FileUse use, const struct stat& facts) {
    const mode_t others = S_IWOTH | S_IWGRP | (use == FileUse::state ? 0U : S_IROTH);
    if (!isTrustedUser(facts.st_uid)) return ofOwner(what, facts.st_uid, true);
    if ((facts.st_mode & others) == 0) return std::nullopt;
    return Distrust{true, what + " may be read or changed by others; chmod 600 helps"};
}

/// What root runs, and folders of anything that root uses.
std::optional<Distrust> judgeForRoot(const std::string& what, const struct stat& facts) {
    const bool isSticky = S_ISDIR(facts.st_mode) && (facts.st_mode & S_ISVTX) != 0;
    const bool isGroupOfOne = facts.st_gid == facts.st_uid || facts.st_gid == 0;
    const bool mayGroupWrite = (facts.st_mode & S_IWGRP) != 0 && !isGroupOfOne;
    if (!isSticky && ((facts.st_mode & S_IWOTH) != 0 || mayGroupWrite)) {
        return Distrust{true, what +
                                  " may be changed by others, and this process is root's; "
                                  "chmod go-w helps"};
    }
    if (isTrustedUser(facts.st_uid)) return std::nullopt;
    return ofOwner(what, facts.st_uid, false);
}

}  // namespace

std::optional<Distrust> distrustOf(const std::filesystem::path& file, FileUse use) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(file, error);
    struct stat facts {};
    if (error || stat(target.c_str(), &facts) != 0) return std::nullopt;
    const std::string what = nameOf(use) + file.string();
    std::optional<Distrust> found;
    if (isOwn(use)) found = judgeOwn(what, use, facts);
    if (found || geteuid() != 0) return found;
    if (!isOwn(use)) found = judgeForRoot(what, facts);
    if (found || use == FileUse::moduleFolder) return found;
    return distrustOf(target.parent_path(), FileUse::moduleFolder);
}

}  // namespace cimhost
