#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A record as fscanf(3) reads it, and the offset that reading began at.
struct PlainRecord {
    long position = 0;
    int words = 0;
    std::string key;
    std::string value;
    bool operator==(const PlainRecord&) const = default;
};

/// The next record by nothing but fscanf(3); none at the end of the file.
inline std::optional<PlainRecord> readPlainRecord(std::FILE* file) {
    std::array<char, 1024> key{};
    std::array<char, 1024> value{};
    PlainRecord record{.position = std::ftell(file), .words = 0, .key = {}, .value = {}};
    record.words = std::fscanf(file, "%1023s %1023s\r\n", key.data(), value.data());
    if (record.words < 1) return std::nullopt;
    record.key = key.data();
    record.value = value.data();
    return record;
}

inline std::vector<PlainRecord> readPlainRecords(std::FILE* file) {
    std::vector<PlainRecord> records;
    while (auto record = readPlainRecord(file)) records.push_back(*std::move(record));
    return records;
}

/// The slow twin of DataStoreTxt: the same operations on a file, with stdio and nothing else.
class PlainStore {
public:
    explicit PlainStore(std::string path) : _path(std::move(path)) { _open("r+"); }

    std::optional<PlainRecord> find(const std::string& key) {
        std::rewind(_file.get());
        while (auto record = readPlainRecord(_file.get())) {
            if (record->key == key) return record;
        }
        return std::nullopt;
    }

    void store(const std::string& key, const std::string& value) {
        if (const auto record = find(key)) {
            std::fseek(_file.get(), record->position, SEEK_SET);
        } else {
            std::fseek(_file.get(), 0, SEEK_END);
        }
        std::fprintf(_file.get(), "%s %s\r\n", key.c_str(), value.c_str());
        std::fflush(_file.get());
    }

    void remove(const std::string& key) {
        std::rewind(_file.get());
        const auto records = readPlainRecords(_file.get());
        _open("w");
        for (const auto& record : records) {
            if (record.key != key) {
                std::fprintf(_file.get(), "%s %s\r\n", record.key.c_str(), record.value.c_str());
            }
        }
        _open("r+");
    }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    void _open(const char* mode) {
        _file.reset();
        _file.reset(std::fopen(_path.c_str(), mode));
        if (!_file) throw std::runtime_error("no plain store");
    }

    std::string _path;
    std::unique_ptr<std::FILE, Closer> _file;
};

/// A file in memory that holds these bytes.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes)
        : _stream(fdopen(memfd_create("text", MFD_CLOEXEC), "w+")) {
        if (!_stream) throw std::runtime_error("no file in memory");
        std::fwrite(bytes.data(), 1, bytes.size(), _stream);
        std::rewind(_stream);
    }
    ~MemoryFile() { std::fclose(_stream); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::FILE* stream() const { return _stream; }
    int descriptor() const { return fileno(_stream); }

private:
    std::FILE* _stream;
};
