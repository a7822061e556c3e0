#include "cimhost/modules/ModuleFile.h"

#include <cxxabi.h>
#include <elf.h>
#include <link.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace cimhost {

namespace {

using ElfHeader = ElfW(Ehdr);
using ElfSection = ElfW(Shdr);
using ElfSymbol = ElfW(Sym);

// Of names that a library has for others; more is no module.
constexpr std::uint64_t mostBytes = std::uint64_t{64} << 20U;

/// Reads from a file whose every length may lie.
class ElfFile {
public:
    explicit ElfFile(const std::filesystem::path& path) : _stream(path, std::ios::binary) {
        if (!_stream) throw std::runtime_error("it cannot be read");
    }

    template <typename Record>
    std::vector<Record> records(std::uint64_t offset, std::uint64_t count) {
        if (count > mostBytes / sizeof(Record)) refuse();
        std::vector<Record> result(count);
        const auto bytes = static_cast<std::streamsize>(count * sizeof(Record));
        _stream.clear();
        _stream.seekg(static_cast<std::streamoff>(offset));
        if (!_stream.read(reinterpret_cast<char*>(result.data()), bytes)) refuse();
        return result;
    }

    [[noreturn]] static void refuse() {
        throw std::runtime_error("it is no library of this machine");
    }

private:
    std::ifstream _stream;
};

std::vector<ElfSection> sectionsOf(ElfFile& file) {
    const ElfHeader header = file.records<ElfHeader>(0, 1).front();
    const ElfHeader own = ElfFile("/proc/self/exe").records<ElfHeader>(0, 1).front();
    // The mark of the format, the width of addresses and the order of bytes.
    const bool isOurs = std::memcmp(header.e_ident, own.e_ident, EI_VERSION) == 0 &&
                        header.e_machine == own.e_machine && header.e_type == ET_DYN &&
                        header.e_shentsize == sizeof(ElfSection);
    if (!isOurs) ElfFile::refuse();
    return file.records<ElfSection>(header.e_shoff, header.e_shnum);
}

bool isEntryPoint(std::string_view name) noexcept {
    return name.find("_Create_") != std::string_view::npos && name.ends_with("MI");
}

}  // namespace

ModuleFile ModuleFile::read(const std::filesystem::path& path) {
    ElfFile file(path);
    const std::vector<ElfSection> sections = sectionsOf(file);
    ModuleFile module;
    for (const ElfSection& section : sections) {
        if (section.sh_type != SHT_DYNSYM || section.sh_link >= sections.size()) continue;
        const ElfSection& texts = sections[section.sh_link];
        std::vector<char> names = file.records<char>(texts.sh_offset, texts.sh_size);
        names.push_back('\0');
        for (const ElfSymbol& symbol :
             file.records<ElfSymbol>(section.sh_offset, section.sh_size / sizeof(ElfSymbol))) {
            if (symbol.st_name >= names.size()) ElfFile::refuse();
            const std::string_view name = &names[symbol.st_name];
            const bool isWanted = symbol.st_shndx == SHN_UNDEF;
            const bool isWeak = (symbol.st_info >> 4U) == STB_WEAK;
            if (isWanted && !isWeak && !name.empty()) module.wanted.emplace_back(name);
            if (!isWanted && isEntryPoint(name)) module.entryPoints.emplace_back(name);
        }
    }
    std::ranges::sort(module.entryPoints);
    return module;
}

bool ModuleFile::offers(std::string_view provider, std::string_view kind) const {
    const std::string ending = "_Create_" + std::string(kind) + "MI";
    return std::ranges::any_of(entryPoints, [&](const std::string& name) {
        return name == "_Generic" + ending || name == std::string(provider) + ending;
    });
}

std::string ModuleFile::entryPointWords() const {
    if (entryPoints.empty()) {
        return "it has no entry points at all: are they extern \"C\" and visible?";
    }
    std::string words;
    for (const std::string& name : entryPoints) words += (words.empty() ? "" : ", ") + name;
    return "it has " + words;
}

std::string demangled(std::string_view text) {
    std::string result;
    const auto isPartOfName = [](unsigned char character) {
        return std::isalnum(character) != 0 || character == '_' || character == '$' ||
               character == '.';
    };
    while (!text.empty()) {
        const std::size_t start = std::min(text.find("_Z"), text.size());
        result += text.substr(0, start);
        text.remove_prefix(start);
        const auto end = std::ranges::find_if_not(text, isPartOfName);
        const std::string name(text.begin(), end);
        text.remove_prefix(name.size());
        int status = 0;
        const std::unique_ptr<char, void (*)(void*)> written(
            abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), std::free);
        result += written ? written.get() : name;
    }
    return result;
}

}  // namespace cimhost
