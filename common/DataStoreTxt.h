#pragma once

#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <pthread.h>

#include <atomic>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

namespace PYL {

/// Why a store could not be opened, or reopened after a removal.
class PYL_EXPORT DataStoreError {
public:
    /// `message` is the system's words for what failed.
    explicit DataStoreError(std::string message) : _message(std::move(message)) {}

    /// @{
    /// The system's words for what failed; good as long as the error is.
    const std::string& message() const noexcept { return _message; }
    const char* what() const noexcept { return _message.c_str(); }
    /// @}

private:
    std::string _message;
};

/// A few values that a provider keeps across restarts of the object manager: counters, times,
/// flags.
///
/// Keys and values are single words of at most 1023 bytes without white space. See DataStoreTxt for
/// what becomes of others, and for what a value must look like to be replaced cleanly.
class PYL_EXPORT DataStore {
public:
    DataStore() = default;
    DataStore(const DataStore&) = delete;
    DataStore& operator=(const DataStore&) = delete;
    virtual ~DataStore();

    /// Sets the value of a key. False when the store is not usable or could not be read.
    virtual bool storeString(const std::string& key, const std::string& value) = 0;
    /// The value of a key; empty when there is none or the store is not usable.
    virtual std::string fetchString(const std::string& key) = 0;
    /// Drops all records with this key. Does not say whether there were any: the result is false
    /// after a removal, and true only of a store that is not usable.
    virtual bool remove(const std::string& key) = 0;
    /// Whether there is a record with this key; false when the store is not usable.
    virtual bool exists(const std::string& key) = 0;

    /// @{
    /// The same for numbers, times in seconds since 1970, and flags, as decimal text. A missing key
    /// and a text that is no number read 0 or false.
    virtual bool storeUint64(const std::string& key, unsigned long value) = 0;
    virtual unsigned long fetchUint64(const std::string& key) = 0;
    virtual bool storeTimeT(const std::string& key, long value) = 0;
    virtual long fetchTimeT(const std::string& key) = 0;
    virtual bool storeBool(const std::string& key, bool value) = 0;
    virtual bool fetchBool(const std::string& key) = 0;
    /// @}
};

/// The store "/etc/cim/<name>.txt". The caller owns and deletes it. Throws DataStoreError when the
/// file can neither be opened nor created.
PYL_EXPORT DataStore* makeDataStore(const std::string& name);

/// Where stores that are made from now on write their lines; until then, where hostedLogger() does.
/// Not to be called while another thread makes a store.
PYL_EXPORT void setDataStoreLogger(const Logger& log);

}  // namespace PYL

/// A store in one text file: a line a record, "key value\r\n".
///
/// A value is replaced in place, byte for byte, and the rest of the file does not move: a value of
/// another length damages what stands behind it. Values that are updated are to have one length
/// (flags, numbers with leading zeros). docs/data-store.md says exactly what can be lost, and how.
///
/// Every operation reads the file afresh, so what other processes wrote is seen; nothing but the
/// copy that a removal keeps is locked against them. Threads: one store may be used from several;
/// exists() alone does not wait for the others. A failing write is a line in the log and otherwise
/// reported as success.
class PYL_EXPORT DataStoreTxt : public PYL::DataStore {
public:
    /// Opens "/etc/cim/<name>.txt" or creates it. Throws DataStoreError as makeDataStore() does.
    explicit DataStoreTxt(const std::string& name);
    ~DataStoreTxt() override;

    bool storeString(const std::string& key, const std::string& value) override;
    std::string fetchString(const std::string& key) override;
    bool remove(const std::string& key) override;
    bool exists(const std::string& key) override;
    bool storeUint64(const std::string& key, unsigned long value) override;
    unsigned long fetchUint64(const std::string& key) override;
    bool storeTimeT(const std::string& key, long value) override;
    long fetchTimeT(const std::string& key) override;
    bool storeBool(const std::string& key, bool value) override;
    bool fetchBool(const std::string& key) override;

protected:
    /// The first record with this key: its value, and the offset of its line. Both may be null. For
    /// callers that hold the lock.
    bool exists(const std::string& key, std::string* value, long* position);

    pthread_mutex_t _mutex;                 ///< guards the file
    std::string _filename;                  ///< the path of the store
    std::atomic<bool> _fileCreated{false};  ///< the file is open and usable
    FILE* _textf = nullptr;                 ///< the open file; null while it is not usable

private:
    enum class LookUp { found, absent, unreadable };

    LookUp _lookUp(const std::string& key, std::string* value, long* position);
    void _finishRewrite();
    void _open();
    bool _use(FILE* file);
    std::optional<std::string> _contentWithout(const std::string& key);
    bool _rewrite(const std::string& content);
    void _reopen();

    Logger _log;
    int _descriptor = -1;  // of _textf, under one number for life: exists() reads without the lock
};
