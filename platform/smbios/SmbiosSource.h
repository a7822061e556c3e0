#pragma once

#include "pylcommon_export.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// Says what is wrong with a source or with the bytes it gave, in one line.
class PYL_EXPORT SmbiosError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    ~SmbiosError() override;
};

/// Where SMBIOS bytes come from. Nothing read here is to be trusted.
///
/// One source may serve several readers on several threads at once.
class PYL_EXPORT SmbiosSource {
public:
    /// As they were read, unchecked.
    using Bytes = std::vector<std::uint8_t>;

    SmbiosSource() = default;
    SmbiosSource(const SmbiosSource&) = delete;
    SmbiosSource& operator=(const SmbiosSource&) = delete;
    virtual ~SmbiosSource();

    /// The first bytes of the entry point, 32 at most; fewer when the source ends earlier.
    /// Throws SmbiosError when the source cannot be read.
    virtual Bytes entryPoint() const = 0;

    /// The structure table that the entry point places at this address: at most `length` bytes,
    /// fewer when the source ends earlier. Throws SmbiosError when the source cannot be read.
    virtual Bytes table(std::uint64_t address, std::size_t length) const = 0;

    /// What messages call the source, such as a path.
    virtual const std::string& name() const noexcept = 0;
};

/// The tables that the kernel exports. They are readable by root only.
class PYL_EXPORT SmbiosKernelTables : public SmbiosSource {
public:
    /// `directory` has the files "smbios_entry_point" and "DMI".
    explicit SmbiosKernelTables(std::string directory = "/sys/firmware/dmi/tables");

    Bytes entryPoint() const override;
    /// The kernel cut the table out of memory already, so the address says nothing.
    Bytes table(std::uint64_t address, std::size_t length) const override;
    const std::string& name() const noexcept override { return _directory; }

private:
    std::string _directory;
};

/// A dump file, as `dmidecode --dump-bin` writes it: the entry point at its start, the table at the
/// file offset that the entry point gives as its address.
class PYL_EXPORT SmbiosDumpFile : public SmbiosSource {
public:
    /// Opens nothing yet: each read does.
    explicit SmbiosDumpFile(std::string path);

    Bytes entryPoint() const override;
    Bytes table(std::uint64_t address, std::size_t length) const override;
    const std::string& name() const noexcept override { return _path; }

private:
    std::string _path;
};

/// The bytes of a dump file, held in memory.
class PYL_EXPORT SmbiosMemory : public SmbiosSource {
public:
    /// `dump` is laid out as an SmbiosDumpFile.
    explicit SmbiosMemory(Bytes dump) : _dump(std::move(dump)) {}

    Bytes entryPoint() const override;
    Bytes table(std::uint64_t address, std::size_t length) const override;
    const std::string& name() const noexcept override { return _name; }

private:
    Bytes _dump;
    std::string _name = "memory";
};
