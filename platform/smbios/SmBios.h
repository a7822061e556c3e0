#pragma once

#include "platform/logger/Logger.h"
#include "platform/smbios/DmiRecords.h"
#include "platform/smbios/SmbiosSource.h"
#include "platform/smbios/SmbiosTable.h"
#include "pylcommon_export.h"

#include <memory>

/// Reads the machine's SMBIOS table and hands out the records that identify it.
///
/// Make one, scan(), ask, throw it away. A reader belongs to one thread at a time; different
/// readers may be used at once.
class PYL_EXPORT SmBios {
public:
    /// A reader of the process's source: what setSource() named last, else the kernel's tables.
    /// Keeps its own copy of the logger.
    explicit SmBios(const Logger& log);

    /// A reader of this source, which must not be null.
    SmBios(const Logger& log, std::shared_ptr<const SmbiosSource> source);

    SmBios(const SmBios&) = delete;
    SmBios& operator=(const SmBios&) = delete;
    ~SmBios();

    /// Reads and checks the whole table. 0 when it is good; otherwise not 0, with one line at error
    /// level that says what is wrong, and no records. A wrong count of structures is only warned
    /// of. Scanning again reads again and ends the life of the records handed out before.
    int scan() noexcept;

    /// @{
    /// The records of the last scan, or nullptr when the table has none of that kind or the scan
    /// failed. Owned by the reader: good until the next scan() or the reader's end.
    const DmiSystem* getDmiSystem() const noexcept;
    const DmiBios* getDmiBios() const noexcept;
    const DmiBaseboard* getDmiBaseboard() const noexcept;
    const DmiChassis* getDmiChassis() const noexcept;
    const KTQServerSystemId* getKTQServerSystemId() const noexcept;
    const KTQEnclosure* getKTQEnclosure() const noexcept;
    const KTQServerProfile* getKTQServerProfile() const noexcept;
    /// @}

    /// The whole table of the last scan, or nullptr when it failed. Owned by the reader, as above.
    const SmbiosTable* table() const noexcept;

    /// Names the source of all readers that are made from now on without one of their own, in the
    /// whole process. Null brings back the kernel's tables. Safe from several threads at once.
    static void setSource(std::shared_ptr<const SmbiosSource> source) noexcept;

private:
    struct Records;

    std::unique_ptr<const Records> _read() const;

    Logger _log;
    std::shared_ptr<const SmbiosSource> _source;
    std::unique_ptr<const Records> _records;
};
