#include "cimhost/server/FileTrust.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace cimhost {
namespace {

/// A folder, a link or a file, and what it is like itself.
struct Step {
    std::filesystem::path place;
    struct stat facts {};
};

/// How a file is reached from the root, links followed one at a time.
struct Way {
    std::vector<Step> steps;     ///< folders and links
    std::optional<Step> target;  ///< none when it is not there
};

/// Names of a path, the next one last.
using Names = std::vector<std::filesystem::path>;

void follow(const std::filesystem::path& path, Names& names) {
    const Names parts(path.begin(), path.end());
    std::copy_if(parts.rbegin(), parts.rend(), std::back_inserter(names),
                 [](const auto& part) { return !part.empty(); });
}

/// The folder is without links, so that what is above it is in its path.
std::filesystem::path placeOf(const std::filesystem::path& name,
                              const std::filesystem::path& folder) {
    if (name == ".") return folder;
    return name == ".." ? folder.parent_path() : folder / name;
}

Way wayTo(const std::filesystem::path& file) {
    constexpr unsigned mostLinks = 40;  // as the kernel has it
    std::error_code error;
    Names names;
    follow(std::filesystem::absolute(file, error), names);
    Way way;
    std::filesystem::path folder;
    for (unsigned links = 0; !names.empty();) {
        Step step{placeOf(names.back(), folder)};
        names.pop_back();
        if (lstat(step.place.c_str(), &step.facts) != 0) break;
        const bool isLink = S_ISLNK(step.facts.st_mode);
        if (isLink) {
            follow(std::filesystem::read_symlink(step.place, error), names);
            if (error || ++links > mostLinks) break;
        } else {
            folder = step.place;
        }
        if (names.empty() && !isLink) {
            way.target = std::move(step);
        } else {
            way.steps.push_back(std::move(step));
        }
    }
    return way;
}

/// How this program is reached: whoever has a hand in that has one in it already.
const Way& wayToProgram() {
    static const Way way = wayTo("/proc/self/exe");
    return way;
}

bool isOnWayToProgram(const std::filesystem::path& place) {
    return std::ranges::any_of(wayToProgram().steps,
                               [&place](const Step& each) { return each.place == place; });
}

bool ownsTheProgram(uid_t user) {
    const Way& way = wayToProgram();
    return (way.target && way.target->facts.st_uid == user) ||
           std::ranges::any_of(way.steps,
                               [user](const Step& each) { return each.facts.st_uid == user; });
}

bool isSudoUser(uid_t user) noexcept {
    const char* const text = geteuid() == 0 ? std::getenv("SUDO_UID") : nullptr;
    if (!text) return false;
    const std::string_view digits = text;
    uid_t found = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), found);
    return error == std::errc() && end == digits.data() + digits.size() && found == user;
}

bool isTrustedUser(uid_t user) {
    return user == 0 || user == geteuid() || isSudoUser(user) || ownsTheProgram(user);
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

std::string ofOwner(const std::string& what, uid_t owner) {
    return what + " belongs to user " + std::to_string(owner) +
           ", who is neither root nor the user of this process";
}

/// A file that nobody but the process has to do with.
std::optional<std::string> judgeOwn(const std::string& what, FileUse use,
                                    const struct stat& facts) {
    const mode_t others = S_IWOTH | S_IWGRP | (use == FileUse::state ? 0U : S_IROTH);
    if (!isTrustedUser(facts.st_uid)) return ofOwner(what, facts.st_uid);
    if ((facts.st_mode & others) == 0) return std::nullopt;
    return what + " may be read or changed by others; chmod 600 helps";
}

/// What root runs, and what leads to anything that root uses.
std::optional<std::string> judgeForRoot(const std::string& what, const struct stat& facts,
                                        bool holdsModules = false) {
    if (!isTrustedUser(facts.st_uid)) return ofOwner(what, facts.st_uid);
    const bool isGroupOfOne = facts.st_gid == facts.st_uid || facts.st_gid == 0;
    const bool mayGroupWrite = (facts.st_mode & S_IWGRP) != 0 && !isGroupOfOne;
    const bool mayOthersWrite = (facts.st_mode & S_IWOTH) != 0 || mayGroupWrite;
    // What a link's mode says counts nowhere.
    if (!mayOthersWrite || S_ISLNK(facts.st_mode)) return std::nullopt;
    const bool isSticky = S_ISDIR(facts.st_mode) && (facts.st_mode & S_ISVTX) != 0;
    if (!isSticky) {
        return what +
               " may be changed by others, and this process is root's; "
               "chmod go-w helps";
    }
    if (!holdsModules) return std::nullopt;
    return what +
           " lets others put modules into it, sticky as it is, and this process is root's; "
           "a folder that only root may write helps";
}

}  // namespace

std::optional<std::string> distrustOf(const std::filesystem::path& file, FileUse use) {
    const Way way = wayTo(file);
    const std::string what = nameOf(use) + file.string();
    std::optional<std::string> found;
    if (way.target && isOwn(use)) found = judgeOwn(what, use, way.target->facts);
    if (found || geteuid() != 0) return found;
    if (way.target && !isOwn(use)) {
        found = judgeForRoot(what, way.target->facts, use == FileUse::moduleFolder);
    }
    for (auto step = way.steps.rbegin(); !found && step != way.steps.rend(); ++step) {
        if (isOnWayToProgram(step->place)) continue;
        const char* const kind = S_ISLNK(step->facts.st_mode) ? "the link " : "the folder ";
        found = judgeForRoot(kind + step->place.string(), step->facts);
    }
    return found;
}

}  // namespace cimhost
