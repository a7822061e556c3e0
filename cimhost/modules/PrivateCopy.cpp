#include "cimhost/modules/PrivateCopy.h"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>

namespace cimhost {
namespace {

[[noreturn]] void failCopy(const std::filesystem::path& file) {
    throw std::system_error(errno, std::generic_category(), "a copy of " + file.string());
}

/// A structure of an ELF image at an offset, where all of it is there.
template <typename Structure>
std::optional<Structure> readAt(const std::string& image, std::uint64_t offset) {
    Structure structure;
    if (image.size() < sizeof structure || offset > image.size() - sizeof structure) return {};
    std::memcpy(&structure, image.data() + offset, sizeof structure);
    return structure;
}

void putDynamic(std::string& image, std::uint64_t offset, const ElfW(Dyn) & entry) {
    std::memcpy(image.data() + offset, &entry, sizeof entry);
}

/// The loader is to look a symbol of the library up in the library first. A flag says so, an entry
/// of its own, or one in the place of a count that only saves the loader time.
void preferOwnSymbols(std::string& image, std::uint64_t offset, std::uint64_t size) {
    std::optional<std::uint64_t> spare;
    for (std::uint64_t place = offset; place + sizeof(ElfW(Dyn)) <= offset + size;
         place += sizeof(ElfW(Dyn))) {
        auto entry = readAt<ElfW(Dyn)>(image, place);
        if (!entry) return;
        if (entry->d_tag == DT_FLAGS) {
            entry->d_un.d_val |= DF_SYMBOLIC;
            return putDynamic(image, place, *entry);
        }
        if (entry->d_tag == DT_RELACOUNT || entry->d_tag == DT_RELCOUNT) spare = place;
        if (entry->d_tag != DT_NULL) continue;
        const std::uint64_t next = place + sizeof(ElfW(Dyn));
        const bool hasNext = next + sizeof(ElfW(Dyn)) <= offset + size;
        if (hasNext) spare = place;
        break;
    }
    ElfW(Dyn) symbolic{};
    symbolic.d_tag = DT_SYMBOLIC;
    if (spare && readAt<ElfW(Dyn)>(image, *spare)) putDynamic(image, *spare, symbolic);
}

void preferOwnSymbols(std::string& image) {
    const auto header = readAt<ElfW(Ehdr)>(image, 0);
    if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0) return;
    for (unsigned index = 0; index < header->e_phnum; ++index) {
        const auto segment =
            readAt<ElfW(Phdr)>(image, header->e_phoff + std::uint64_t{index} * header->e_phentsize);
        if (!segment) return;
        if (segment->p_type != PT_DYNAMIC) continue;
        return preferOwnSymbols(image, segment->p_offset, segment->p_filesz);
    }
}

}  // namespace

PrivateCopy::PrivateCopy(const std::filesystem::path& library) {
    std::ifstream stream(library, std::ios::binary);
    if (!stream) failCopy(library);
    std::string image{std::istreambuf_iterator<char>(stream), {}};
    preferOwnSymbols(image);
    const std::string name = "." + library.filename().string() + ".XXXXXX";
    std::string file = (library.parent_path() / name).string();
    int descriptor = ::mkstemp(file.data());
    if (descriptor < 0) {
        std::string folder = (std::filesystem::temp_directory_path() / "cimhost.XXXXXX").string();
        if (!::mkdtemp(folder.data())) failCopy(library);
        _folder = folder;
        file = (_folder / name).string();
        descriptor = ::mkstemp(file.data());
    }
    _path = file;
    std::size_t written = 0;
    while (descriptor >= 0 && written < image.size()) {
        const auto count = ::write(descriptor, image.data() + written, image.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        written += static_cast<std::size_t>(count);
    }
    const int error = errno;
    if (descriptor >= 0) ::close(descriptor);
    if (descriptor >= 0 && written == image.size()) return;
    _remove();
    errno = error;
    failCopy(library);
}

PrivateCopy::~PrivateCopy() { _remove(); }

void PrivateCopy::_remove() noexcept {
    ::unlink(_path.c_str());
    if (!_folder.empty()) ::rmdir(_folder.c_str());
}

}  // namespace cimhost
