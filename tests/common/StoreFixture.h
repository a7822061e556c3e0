#pragma once

#include "common/DataStoreTxt.h"
#include "tests/support/Journal.h"
#include "tests/support/RedirectedFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>

/// The store "t", with its files in a directory of the test's own and its lines in a journal.
struct StoreFixture : testing::Test {
    RedirectedFiles files;
    JournalLog log;
    const std::string path = RedirectedFiles::real("/etc/cim/t.txt");
    const std::string copy = path + ".rewrite";
    const std::string unfinished = path + ".rewrite.new";

    StoreFixture() { PYL::setDataStoreLogger(log.logger); }

    static std::unique_ptr<PYL::DataStore> open() {
        return std::unique_ptr<PYL::DataStore>(PYL::makeDataStore("t"));
    }

    static std::string contentOf(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::string content() const { return contentOf(path); }

    static void write(const std::string& file, const std::string& bytes) {
        std::ofstream(file, std::ios::binary) << bytes;
    }
    void write(const std::string& bytes) const { write(path, bytes); }
};

/// The same store, showing what is protected.
struct OpenStore : DataStoreTxt {
    OpenStore() : DataStoreTxt("t") {}
    using DataStoreTxt::_fileCreated;
    using DataStoreTxt::_filename;
    using DataStoreTxt::_mutex;
    using DataStoreTxt::_textf;
    using DataStoreTxt::exists;
};

/// The message of the error that the action throws.
inline std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const PYL::DataStoreError& error) {
        return error.message();
    }
    return "nothing thrown";
}

/// Permissions and special bits; 0 of a file that is not there.
inline unsigned modeOf(const std::string& path) {
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 ? facts.st_mode & 07777U : 0;
}

/// The record of the key with this number, below a million; all of them have one length.
inline std::string numberedRecord(std::size_t number) {
    const auto digits = std::to_string(1000000 + number).substr(1);
    return "k" + digits + " v" + digits + "\r\n";
}

inline std::string numberedRecords(std::size_t count) {
    std::string lines;
    for (std::size_t i = 0; i < count; ++i) lines += numberedRecord(i);
    return lines;
}

inline std::size_t openDescriptors() {
    namespace fs = std::filesystem;
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}
