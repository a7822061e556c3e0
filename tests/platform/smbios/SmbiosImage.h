#pragma once

#include "platform/logger/CapturingSink.h"
#include "platform/logger/Logger.h"
#include "platform/smbios/SmBios.h"
#include "testing/pylcommon/testing/SmbiosImage.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using cimtest::Bytes;
using cimtest::concatenated;
using cimtest::endOfTable;
using cimtest::SmbiosImage;
using cimtest::structure;

/// A reader of some bytes, its log in view.
class ScannedDump {
public:
    explicit ScannedDump(Bytes dump)
        : ScannedDump(std::make_shared<SmbiosMemory>(std::move(dump))) {}
    explicit ScannedDump(const SmbiosImage& image) : ScannedDump(image.dump()) {}
    explicit ScannedDump(std::shared_ptr<const SmbiosSource> source)
        : _smbios(Logger("smbios", _sink), std::move(source)), _result(_smbios.scan()) {}

    int result() const { return _result; }
    const SmBios& operator*() const { return _smbios; }
    const SmBios* operator->() const { return &_smbios; }

    std::vector<std::string> errors() const { return _sink->messages(LogLevel::error); }
    std::vector<std::string> warnings() const { return _sink->messages(LogLevel::warning); }

    /// The one error line of a scan that failed; otherwise a text that says what else happened.
    std::string error() const {
        if (_result == 0) return "the scan succeeded";
        const std::vector<std::string> lines = errors();
        return lines.size() == 1 ? lines[0] : std::to_string(lines.size()) + " error lines";
    }

private:
    std::shared_ptr<CapturingSink> _sink = std::make_shared<CapturingSink>();
    SmBios _smbios;
    int _result;
};

inline std::string dumpPath(const std::string& machine) {
    return PYL_SMBIOS_DUMPS "/" + machine + ".bin";
}

inline Bytes readDump(const std::string& machine) {
    std::ifstream file(dumpPath(machine), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
