#pragma once

#include "platform/host/HostSource.h"
#include "platform/logger/CapturingSink.h"
#include "platform/logger/Logger.h"
#include "platform/smbios/SmBios.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

/// A host in a directory of its own, without firmware tables until a test gives it some.
class FakeHost : public testing::Test {
protected:
    FakeHost() {
        std::string pattern = (std::filesystem::temp_directory_path() / "host-XXXXXX").string();
        _root = ::mkdtemp(pattern.data());
        SmBios::setSource(std::make_shared<SmbiosMemory>(SmbiosSource::Bytes()));
    }
    ~FakeHost() override {
        SmBios::setSource(nullptr);
        std::filesystem::remove_all(_root);
    }

    void write(const std::string& path, const std::string& text) const {
        const std::filesystem::path file = _root.string() + path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }

    static void firmwareIs(const std::string& machine) {
        SmBios::setSource(
            std::make_shared<SmbiosDumpFile>(PYL_SMBIOS_DUMPS "/" + machine + ".bin"));
    }

    MRAStatusEnum fill(unsigned selector = ComputerSystemMRA::systemData) {
        return HostSource(_log, HostFiles(_root.string())).getFirstData(selector, _data);
    }

    using Getter = MRAStatusEnum (ComputerSystemMRADataObject::*)(std::string&) const;

    /// What a getter fills in, or "(absent)" when it answers so and leaves its argument alone.
    std::string get(Getter getter) const {
        std::string value = "untouched";
        const MRAStatusEnum status = (_data.*getter)(value);
        if (status == MRA_STATUS_SUCCESS) return value;
        const bool honest = status == MRA_STATUS_DATA_NOT_AVAILABLE && value == "untouched";
        return honest ? "(absent)" : "(status " + std::to_string(status) + ", " + value + ")";
    }

    std::filesystem::path _root;
    std::shared_ptr<CapturingSink> _sink = std::make_shared<CapturingSink>();
    Logger _log{"computersystem", _sink};
    ComputerSystemMRADataObject _data{_log};
};
