#pragma once

#include <memory>

#include "platform/logger/Logger.h"
#include "platform/smbios/DmiRecords.h"
#include "platform/smbios/SmbiosSource.h"
#include "platform/smbios/SmbiosTable.h"
#include "pylcommon_export.h"

/// Reads the machine's SMBIOS table and hands out the records that identify it.
///
/// Make one, scan(), ask, throw it away. A reader belongs to one thread at a time; different
/// readers may be used at once.
class PYL_EXPORT SmBios {
public:
    /// A reader of the process's source: what setSource() named last, else the kernel's tables.
    /// Keeps its own copy of the logger.
    explicit SmBios(Logger const& log);

    /// A reader of this source, which must not be null.
    SmBios(Logger const& log, std::shared_ptr<SmbiosSource const> source);

    SmBios(SmBios const&) = delete;
    SmBios& operator=(SmBios const&) = delete;
    ~SmBios();

    /// Reads and checks the whole table. 0 when it is good; otherwise not 0, with one line at error
    /// level that says what is wrong, and no records. A wrong count of structures is only warned
    /// of. Scanning again reads again and ends the life of the records handed out before.
    int scan() noexcept;

    /// The records of the last scan, or nullptr when the table has none of that kind or the scan
    /// failed. Owned by the reader: good until the next scan() or the reader's end.
    DmiSystem const* getDmiSystem() const noexcept;
    DmiBios const* getDmiBios() const noexcept;
    DmiBaseboard const* getDmiBaseboard() const noexcept;
    DmiChassis const* getDmiChassis() const noexcept;
    KTQServerSystemId const* getKTQServerSystemId() const noexcept;
    KTQEnclosure const* getKTQEnclosure() const noexcept;
    KTQServerProfile const* getKTQServerProfile() const noexcept;

    /// The whole table of the last scan, or nullptr when it failed. Owned by the reader, as above.
    SmbiosTable const* table() const noexcept;

    /// Names the source of all readers that are made from now on without one of their own, in the
    /// whole process. Null brings back the kernel's tables. Safe from several threads at once.
    static void setSource(std::shared_ptr<SmbiosSource const> source) noexcept;

private:
    struct Records;

    std::unique_ptr<Records const> _read() const;

    Logger _log;
    std::shared_ptr<SmbiosSource const> _source;
    std::unique_ptr<Records const> _records;
};
