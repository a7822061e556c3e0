#include "testing/pylcommon/testing/FakeHost.h"

#include "platform/host/HostFiles.h"
#include "platform/smbios/SmBios.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace cimtest {

namespace fs = std::filesystem;

namespace {

/// Where nothing waits for a disk, on hosts that have such a place.
fs::path scratchFolder() {
    const fs::path memory = "/dev/shm";
    const bool isUsable = ::access(memory.c_str(), W_OK | X_OK) == 0;
    return isUsable ? memory : fs::temp_directory_path();
}

}  // namespace

FakeHost::FakeHost() : _root((scratchFolder() / "machine-XXXXXX").string()) {
    if (!::mkdtemp(_root.data())) throw std::runtime_error("no folder for a machine");
    controller.openStatus = ENOENT;
    setHostRoot(_root);
    SmBios::setSource(std::make_shared<SmbiosMemory>(Bytes()));
}

FakeHost::~FakeHost() {
    SmBios::setSource(nullptr);
    setHostRoot({});
    std::error_code ignored;
    fs::remove_all(_root, ignored);
}

void FakeHost::write(const std::string& path, const std::string& text) const {
    const fs::path file = _root + path;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

void FakeHost::remove(const std::string& path) const { fs::remove_all(_root + path); }

void FakeHost::device(const std::string& path, const Attributes& attributes,
                      const std::string& name) const {
    const auto attribute = [&](const std::string& file, const std::string& text) {
        write(path + "/" + file, text + "\n");
    };
    fs::create_directories(_root + path);
    for (const auto& [file, text] : attributes) attribute(file, text);
    if (name.empty()) return;
    const fs::path target = _root + "/sys/devices/" + name;
    fs::create_directories(target);
    fs::create_directory_symlink(target, _root + path + "/device");
}

void FakeHost::firmwareIs(const SmbiosImage& image) {
    SmBios::setSource(std::make_shared<SmbiosMemory>(image.dump()));
}

void FakeHost::firmwareIs(const fs::path& dump) {
    SmBios::setSource(std::make_shared<SmbiosDumpFile>(dump.string()));
}

}  // namespace cimtest
