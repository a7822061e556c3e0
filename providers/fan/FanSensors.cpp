#include "providers/fan/FanSensors.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/computersystem/HostFiles.h"

namespace fan {

namespace fs = std::filesystem;

namespace {

constexpr char const* monitorsDirectory = "/sys/class/hwmon";

std::optional<std::uint64_t> number(HostFiles const& files, std::string const& path) {
    auto const line = files.line(path);
    if (!line) return std::nullopt;
    std::uint64_t value = 0;
    auto const [end, error] = std::from_chars(line->data(), line->data() + line->size(), value);
    if (error != std::errc() || end != line->data() + line->size()) return std::nullopt;
    return value;
}

std::optional<bool> flag(HostFiles const& files, std::string const& path) {
    auto const value = number(files, path);
    return value ? std::optional(*value != 0) : std::nullopt;
}

std::vector<std::string> entriesOf(std::string const& directory) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error))
        names.push_back(entry->path().filename().string());
    return names;
}

/// "fan3" of "fan3_input"; none for any other name.
std::optional<std::string> channelOf(std::string_view name) {
    constexpr std::string_view prefix = "fan";
    constexpr std::string_view suffix = "_input";
    if (!name.starts_with(prefix) || !name.ends_with(suffix)) return std::nullopt;
    if (name.size() <= prefix.size() + suffix.size()) return std::nullopt;
    auto const digits = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
    if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
    return std::string(name.substr(0, name.size() - suffix.size()));
}

/// A monitor's number changes from start to start; its device's name does not.
std::string monitorName(HostFiles const& files, std::string const& root,
                        std::string const& directory) {
    std::error_code error;
    auto const device = fs::read_symlink(root + directory + "/device", error);
    if (!error) return device.filename().string();
    return files.line(directory + "/name").value_or("monitor");
}

Fan readFan(HostFiles const& files, std::string const& stem, std::string const& monitor,
            std::string const& channel) {
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

std::vector<Fan> readFans(std::string const& root) {
    HostFiles const files(root);
    std::vector<Fan> fans;
    for (auto const& monitor : entriesOf(root + monitorsDirectory)) {
        auto const directory = std::string(monitorsDirectory) + "/" + monitor;
        auto const name = monitorName(files, root, directory);
        for (auto const& entry : entriesOf(root + directory))
            if (auto const channel = channelOf(entry))
                fans.push_back(readFan(files, directory + "/" + *channel, name, *channel));
    }
    std::ranges::stable_sort(fans, {}, &Fan::id);
    // Monitors without a device may share a name; one of them keeps it.
    auto const isSame = [](Fan const& left, Fan const& right) { return left.id == right.id; };
    fans.erase(std::unique(fans.begin(), fans.end(), isSame), fans.end());
    return fans;
}

PYL::operationalStatus statusOf(Fan const& fan) noexcept {
    if (fan.enabled == false) return PYL::statusStopped;
    if (fan.fault == true) return PYL::statusError;
    if (!fan.speed) return PYL::statusUnknown;
    bool const isSlow = fan.minimumSpeed && *fan.speed < *fan.minimumSpeed;
    if (fan.alarm == true || isSlow) return PYL::statusDegraded;
    return *fan.speed == 0 ? PYL::statusStopped : PYL::statusOK;
}

}  // namespace fan
