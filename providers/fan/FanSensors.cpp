#include "providers/fan/FanSensors.h"

#include "platform/host/HostFiles.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace fan {

namespace fs = std::filesystem;

namespace {

constexpr const char* monitorsDirectory = "/sys/class/hwmon";

std::optional<std::uint64_t> number(const HostFiles& files, const std::string& path) {
    const auto line = files.line(path);
    if (!line) return std::nullopt;
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(line->data(), line->data() + line->size(), value);
    if (error != std::errc() || end != line->data() + line->size()) return std::nullopt;
    return value;
}

std::optional<bool> flag(const HostFiles& files, const std::string& path) {
    const auto value = number(files, path);
    return value ? std::optional(*value != 0) : std::nullopt;
}

std::vector<std::string> entriesOf(const std::string& directory) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    return names;
}

/// "fan3" of "fan3_input"; none for any other name.
std::optional<std::string> channelOf(std::string_view name) {
    constexpr std::string_view prefix = "fan";
    constexpr std::string_view suffix = "_input";
    if (!name.starts_with(prefix) || !name.ends_with(suffix)) return std::nullopt;
    if (name.size() <= prefix.size() + suffix.size()) return std::nullopt;
    const auto digits = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
    if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    return std::string(name.substr(0, name.size() - suffix.size()));
}

/// A monitor's number changes from start to start; its device's name does not.
std::string monitorName(const HostFiles& files, const std::string& root,
                        const std::string& directory) {
    std::error_code error;
    const auto device = fs::read_symlink(root + directory + "/device", error);
    if (!error) return device.filename().string();
    return files.line(directory + "/name").value_or("monitor");
}

Fan readFan(const HostFiles& files, const std::string& stem, const std::string& monitor,
            const std::string& channel) {
    Fan fan;
    fan.id = monitor + ":" + channel;
    fan.label = files.line(stem + "_label").value_or(channel);
    fan.speed = number(files, stem + "_input");
    fan.minimumSpeed = number(files, stem + "_min");
    fan.targetSpeed = number(files, stem + "_target");
    fan.fault = flag(files, stem + "_fault");
    fan.alarm = flag(files, stem + "_alarm");
    fan.enabled = flag(files, stem + "_enable");
    return fan;
}

}  // namespace

std::vector<Fan> readFans(const std::string& root) {
    const HostFiles files(root);
    std::vector<Fan> fans;
    for (const auto& monitor : entriesOf(root + monitorsDirectory)) {
        const auto directory = std::string(monitorsDirectory) + "/" + monitor;
        const auto name = monitorName(files, root, directory);
        for (const auto& entry : entriesOf(root + directory)) {
            if (const auto channel = channelOf(entry)) {
                fans.push_back(readFan(files, directory + "/" + *channel, name, *channel));
            }
        }
    }
    std::ranges::stable_sort(fans, {}, &Fan::id);
    // Monitors without a device may share a name; one of them keeps it.
    const auto isSame = [](const Fan& left, const Fan& right) { return left.id == right.id; };
    fans.erase(std::unique(fans.begin(), fans.end(), isSame), fans.end());
    return fans;
}

PYL::operationalStatus statusOf(const Fan& fan) noexcept {
    if (fan.enabled == false) return PYL::statusStopped;
    if (fan.fault == true) return PYL::statusError;
    if (!fan.speed) return PYL::statusUnknown;
    const bool isSlow = fan.minimumSpeed && *fan.speed < *fan.minimumSpeed;
    const bool isWrong = fan.alarm == true || isSlow;
    // Some fans rest while it is cool: standing still alone is no failure.
    if (*fan.speed == 0) return isWrong ? PYL::statusError : PYL::statusStopped;
    return isWrong ? PYL::statusDegraded : PYL::statusOK;
}

}  // namespace fan
