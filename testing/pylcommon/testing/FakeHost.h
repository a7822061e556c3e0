#pragma once

#include "pylcommon/testing/FakeController.h"
#include "pylcommon/testing/SmbiosImage.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace cimtest {

/// The machine that a provider sees: a bare one, until a test furnishes it. Firmware tables, files
/// and the management controller of the process are its own while it lives, so that a provider
/// that reads them by platform/, or below hostRoot(), runs as on its server. One at a time.
///
///     cimtest::FakeHost machine;
///     machine.device("/sys/class/net/eth0",
///                    {{"operstate", "up"}, {"address", "02:00:00:00:00:01"}});
///     machine.firmwareIs(SmbiosImage(concatenated({structure(1, 1), endOfTable()})));
///
/// It has no tables, no files and no controller at first. What the library keeps of a machine that
/// it has read, it keeps for the process.
class FakeHost {
public:
    /// A file and its text, without the newline with which the kernel ends it.
    using Attributes = std::vector<std::pair<std::string, std::string>>;

    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    /// What stands before every path: a folder of its own, gone with it.
    const std::string& root() const noexcept { return _root; }

    /// A text file, such as "/etc/os-release", in folders that are made where need be.
    void write(const std::string& path, const std::string& text) const;
    /// Removes a file, or a folder with all in it.
    void remove(const std::string& path) const;
    /// A folder of sysfs with its files. With a name it leads by a link `device` to that device.
    void device(const std::string& path, const Attributes& attributes,
                const std::string& name = {}) const;

    /// The machine has these tables from now on.
    static void firmwareIs(const SmbiosImage& image);
    /// A dump, as `dmidecode --dump-bin` writes it.
    static void firmwareIs(const std::filesystem::path& dump);

    /// Is there once its openStatus is 0.
    FakeController controller;

private:
    std::string _root;
};

}  // namespace cimtest
