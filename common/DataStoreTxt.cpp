#include "common/DataStoreTxt.h"

#include "common/AutoMutex.h"
#include "common/PYLConstants.h"
#include "common/detail/StoreRewrite.h"
#include "common/detail/WordReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <locale>
#include <sstream>
#include <string_view>

using PYL::AutoMutex;
using PYL::DataStoreError;
using PYL::WordReader;

namespace {

// Owner reads and writes. The sticky bit has no effect on a file; it marks the store's own.
constexpr mode_t storeMode = 01600;

Logger& storeLogger() {
    static Logger logger = hostedLogger("DataStoreTxt");
    return logger;
}

/// A word as C sees it: to its first zero byte. Only a file that is not ours holds one, and a key
/// that no file can hold whole.
std::string_view cText(std::string_view word) noexcept { return word.substr(0, word.find('\0')); }

/// Whether C sees this text, which has no zero byte, in the word.
bool isText(std::string_view word, std::string_view text) noexcept {
    const auto size = text.size();
    // Keys of one store begin alike more often than they end alike.
    if (word.size() < size || (size > 0 && word[size - 1] != text[size - 1])) return false;
    return word.starts_with(text) && (word.size() == size || word[size] == '\0');
}

std::string record(std::string_view key, std::string_view value) {
    std::string line;
    line.append(cText(key)).append(" ").append(cText(value)).append("\r\n");
    return line;
}

/// As fopen(3), but for the owner alone and not passed on to children.
FILE* openStream(const std::string& path, int flags, const char* mode) noexcept {
    const int descriptor = PYL::openFile(path, flags);
    if (descriptor < 0) return nullptr;
    FILE* const file = fdopen(descriptor, mode);
    if (file) return file;
    const int error = errno;
    ::close(descriptor);
    errno = error;
    return nullptr;
}

template <typename Value>
std::string decimal(Value value) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << value;
    return stream.str();
}

template <typename Value>
Value parsed(const std::string& stored) {
    std::istringstream stream(stored);
    stream.imbue(std::locale::classic());
    Value value{};
    stream >> value;
    return value;
}

}  // namespace

namespace PYL {

DataStore::~DataStore() = default;

DataStore* makeDataStore(const std::string& name) { return new DataStoreTxt(name); }

void setDataStoreLogger(const Logger& log) { storeLogger() = log; }

}  // namespace PYL

DataStoreTxt::DataStoreTxt(const std::string& name)
    : _filename(PYL::PersistentDataDir + name + ".txt"), _log(storeLogger()) {
    pthread_mutex_init(&_mutex, nullptr);
    _log.info("cxtor()");
    _log.info("_filename is %s", _filename);
    try {
        _finishRewrite();
        _open();
    } catch (...) {
        pthread_mutex_destroy(&_mutex);
        throw;
    }
}

DataStoreTxt::~DataStoreTxt() {
    _log.info("dxtor()");
    if (_textf) std::fclose(_textf);
    if (_descriptor >= 0) ::close(_descriptor);
    pthread_mutex_destroy(&_mutex);
}

void DataStoreTxt::_finishRewrite() {
    PYL::StoreRewrite copy(_filename);
    if (copy.restore()) {
        _log.warn("%s was restored after an interrupted removal", _filename);
    } else if (errno == EWOULDBLOCK) {
        _log.info("%s is being rewritten by a removal that is running", _filename);
    } else if (errno != ENOENT) {
        _log.error("%s cannot be restored after an interrupted removal: %s", _filename,
                   std::strerror(errno));
    }
}

void DataStoreTxt::_open() {
    struct stat facts {};
    const bool there = stat(_filename.c_str(), &facts) == 0;
    // Not cut short: a file that is there after all (another process was faster, or stat(2) failed
    // for a reason of its own) holds what must not be lost.
    FILE* const file =
        there ? openStream(_filename, O_RDWR, "r+") : openStream(_filename, O_RDWR | O_CREAT, "w+");
    const int openError = errno;
    if (!there && chmod(_filename.c_str(), storeMode) != 0) {
        const int chmodError = errno;
        _log.error("file chmod failed!");
        _log.error("%s", std::strerror(chmodError));
    }
    if (!_use(file)) {
        _log.error("first fopen() failed!");
        throw DataStoreError(std::strerror(file ? errno : openError));
    }
    _log.info("fopen() success!");
}

/// Takes the stream over, or none. The descriptor that is read from keeps its number, so that an
/// exists() that runs meanwhile reads the old file or the new one and never a foreign one.
bool DataStoreTxt::_use(FILE* file) {
    if (!file) return false;
    const bool first = _descriptor < 0;
    const int used = first ? fcntl(fileno(file), F_DUPFD_CLOEXEC, 0)
                           : dup3(fileno(file), _descriptor, O_CLOEXEC);
    if (used < 0) {
        const int error = errno;
        std::fclose(file);
        errno = error;
        return false;
    }
    if (first) _descriptor = used;
    _textf = file;
    _fileCreated = true;
    return true;
}

DataStoreTxt::LookUp DataStoreTxt::_lookUp(const std::string& key, std::string* value,
                                           long* position) {
    _log.info("private exists():");
    const auto wanted = cText(key);
    WordReader words(_descriptor);
    for (long at = 0;; at = words.skipSpace()) {
        if (position) *position = at;
        const auto word = words.next();
        if (word.empty()) break;
        const bool found = isText(word, wanted);
        const auto second = words.next();
        if (words.failed()) break;
        if (!found) continue;
        if (value) *value = cText(second);
        return LookUp::found;
    }
    if (!words.failed()) return LookUp::absent;
    _log.error("%s cannot be read: %s", _filename, std::strerror(words.error()));
    return LookUp::unreadable;
}

bool DataStoreTxt::exists(const std::string& key, std::string* value, long* position) {
    return _lookUp(key, value, position) == LookUp::found;
}

bool DataStoreTxt::exists(const std::string& key) {
    _log.info("public exists():");
    return _fileCreated && exists(key, nullptr, nullptr);
}

std::string DataStoreTxt::fetchString(const std::string& key) {
    _log.info("fetchString():");
    const AutoMutex lock(_mutex);
    std::string value;
    if (!_fileCreated) return value;
    const bool found = exists(key, &value, nullptr);
    _log.info(found ? "fetchString() found key in db!" : "fetchString() did not find key in db!");
    return value;
}

bool DataStoreTxt::storeString(const std::string& key, const std::string& value) {
    _log.info("storeString():");
    const AutoMutex lock(_mutex);
    if (!_fileCreated) return false;
    long position = 0;
    const auto lookUp = _lookUp(key, nullptr, &position);
    // Appending to a file that could not be read might add a second record with the key.
    if (lookUp == LookUp::unreadable) return false;
    if (lookUp == LookUp::absent) {
        _log.info("storeString() appending new key in db!");
        position = lseek(_descriptor, 0, SEEK_END);
    } else {
        _log.info("storeString() replacing updated key in db!");
    }
    if (position < 0 || !PYL::writeAt(_descriptor, record(key, value), position)) {
        _log.error("%s cannot be written: %s", _filename, std::strerror(errno));
    }
    return true;
}

std::optional<std::string> DataStoreTxt::_contentWithout(const std::string& key) {
    const auto dropped = cText(key);
    std::string content;
    WordReader words(_descriptor);
    for (auto word = words.next(); !word.empty(); word = words.next()) {
        const std::string kept(cText(word));
        const auto value = words.next();
        if (kept != dropped) content += record(kept, std::string(value));
    }
    if (!words.failed()) return content;
    _log.error("%s cannot be read: %s", _filename, std::strerror(words.error()));
    return std::nullopt;
}

bool DataStoreTxt::remove(const std::string& key) {
    _log.info("remove():");
    const AutoMutex lock(_mutex);
    if (!_fileCreated) return true;
    // What could not be read whole must not be written again: the rest would be gone.
    if (const auto content = _contentWithout(key); content && _rewrite(*content)) _reopen();
    return false;
}

/// False when the file could not be opened for it; the store is not usable any more then.
bool DataStoreTxt::_rewrite(const std::string& content) {
    PYL::StoreRewrite copy(_filename);
    const bool kept = copy.keep(content, _descriptor);
    if (!kept) _log.warn("%s is rewritten without a copy: %s", _filename, std::strerror(errno));

    _fileCreated = false;
    std::fclose(std::exchange(_textf, nullptr));
    const int file = PYL::openFile(_filename, O_WRONLY | O_CREAT | O_TRUNC);
    const bool opened = file >= 0;
    const bool written = opened && PYL::writeAndClose(file, content);
    if (!written) _log.error("%s cannot be rewritten: %s", _filename, std::strerror(errno));
    // A file that could not be opened is what it was. One that could not be written is not: where
    // even the copy cannot take its place, the copy stays, and the next store that is made takes
    // it.
    if (kept && !(opened && !written ? copy.restore() : copy.drop())) {
        _log.error("%s.rewrite is left: %s", _filename, std::strerror(errno));
    }
    return opened;
}

void DataStoreTxt::_reopen() {
    FILE* const file = openStream(_filename, O_RDWR, "r+");
    if (_use(file)) return;
    const int error = errno;
    _log.error("_textdb reopen after remove() failed!");
    throw DataStoreError(std::strerror(error));
}

bool DataStoreTxt::storeUint64(const std::string& key, unsigned long value) {
    return storeString(key, decimal(value));
}

unsigned long DataStoreTxt::fetchUint64(const std::string& key) {
    return parsed<unsigned long>(fetchString(key));
}

bool DataStoreTxt::storeTimeT(const std::string& key, long value) {
    return storeString(key, decimal(value));
}

long DataStoreTxt::fetchTimeT(const std::string& key) { return parsed<long>(fetchString(key)); }

bool DataStoreTxt::storeBool(const std::string& key, bool value) {
    return storeString(key, decimal(value));
}

bool DataStoreTxt::fetchBool(const std::string& key) { return parsed<bool>(fetchString(key)); }
