// e1, e2: values of a text store fetched and replaced, beside stdio and one system call.
#include "bench/library/Rows.h"
#include "common/DataStoreTxt.h"
#include "platform/logger/LogSink.h"
#include "tests/support/RedirectedFiles.h"

#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t fewStoreRounds = 32;

class NoSink : public LogSink {
public:
    void write(LogLevel, std::string_view, std::string_view) noexcept override {}
};

std::string keyNumber(std::size_t number) {
    return "k" + std::to_string(1000000 + number).substr(1);
}

std::string records(std::size_t keys) {
    std::string lines;
    for (std::size_t i = 0; i < keys; ++i) lines += keyNumber(i) + " 00000042\r\n";
    return lines;
}

void require(bool holds) {
    if (!holds) throw std::runtime_error("the store holds something else");
}

/// A file of this name with so many records; where it really is.
std::string writeFile(const std::string& name, std::size_t keys) {
    const auto path = RedirectedFiles::real("/etc/cim/" + name + ".txt");
    std::ofstream(path, std::ios::binary) << records(keys);
    return path;
}

bool scan(std::FILE* file, const std::string& wanted, std::string& found) {
    char key[1024];
    char value[1024];
    std::rewind(file);
    while (std::fscanf(file, "%1023s %1023s\r\n", key, value) >= 1) {
        if (wanted != key) continue;
        found = value;
        return true;
    }
    return false;
}

void addGets(std::size_t keys) {
    const auto name = std::to_string(keys);
    const auto path = writeFile("get" + name, keys);
    const auto last = keyNumber(keys - 1);
    const std::shared_ptr<PYL::DataStore> store(PYL::makeDataStore("get" + name));
    const std::shared_ptr<std::FILE> file(std::fopen(path.c_str(), "r+"), std::fclose);
    addRow(
        "e1/get of " + name + "/library",
        [store, last] { require(store->fetchString(last) == "00000042"); }, fewStoreRounds);
    addRow(
        "e1/get of " + name + "/anchor",
        [file, last] {
            std::string value;
            require(scan(file.get(), last, value) && value == "00000042");
        },
        fewStoreRounds);
}

void addPuts(std::size_t keys) {
    const auto name = std::to_string(keys);
    const auto path = writeFile("put" + name, keys);
    const auto last = keyNumber(keys - 1);
    const std::shared_ptr<PYL::DataStore> store(PYL::makeDataStore("put" + name));
    const std::shared_ptr<std::FILE> file(std::fopen((path + ".anchor").c_str(), "w+"),
                                          std::fclose);
    addRow(
        "e2/put of " + name + "/library",
        [store, last] { require(store->storeString(last, "00000043")); }, fewStoreRounds);
    addRow(
        "e2/put of " + name + "/anchor",
        [file, bytes = records(keys)] {
            require(pwrite(fileno(file.get()), bytes.data(), bytes.size(), 0) ==
                    static_cast<ssize_t>(bytes.size()));
        },
        fewStoreRounds);
}

}  // namespace

void addStoreRows() {
    static const RedirectedFiles files(std::filesystem::temp_directory_path());
    PYL::setDataStoreLogger(Logger("store", std::make_shared<NoSink>(), LogLevel::error));
    addGets(10);
    addGets(1000);
    addPuts(10);
}
