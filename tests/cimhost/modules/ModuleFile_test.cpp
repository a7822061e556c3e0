#include "cimhost/modules/ModuleFile.h"

#include "tests/support/TemporaryFolder.h"

#include <elf.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstring>
#include <fstream>
#include <iterator>

namespace cimhost {
namespace {

const std::filesystem::path folder = TEST_MODULE_FOLDER;

std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(ModuleFile, ListsEntryPointsAndKnowsWhatTheyOffer) {
    const ModuleFile plain = ModuleFile::read(folder / "libplainModule.so");
    EXPECT_THAT(plain.entryPoints,
                testing::ElementsAre("Plain_Create_InstanceMI", "Plain_Create_MethodMI"));
    EXPECT_TRUE(plain.offers("Plain", "Method"));
    EXPECT_FALSE(plain.offers("Plain", "Association"));
    EXPECT_FALSE(plain.offers("Other", "Method"));
    EXPECT_EQ(plain.entryPointWords(), "it has Plain_Create_InstanceMI, Plain_Create_MethodMI");
}

TEST(ModuleFile, OffersAnythingWhereAGenericEntryPointIs) {
    EXPECT_TRUE(ModuleFile::read(folder / "liboddModule.so").offers("Whoever", "Instance"));
}

TEST(ModuleFile, ListsWhatOthersMustHave) {
    const ModuleFile module = ModuleFile::read(folder / "libunresolvedModule.so");
    EXPECT_THAT(module.wanted, testing::Contains("functionThatNobodyHas"));
    EXPECT_THAT(module.entryPoints, testing::IsEmpty());
    EXPECT_EQ(module.entryPointWords(),
              "it has no entry points at all: are they extern \"C\" and visible?");
}

TEST(ModuleFile, RefusesWhatIsNoLibrary) {
    const TemporaryFolder files;
    EXPECT_THROW(ModuleFile::read(files / "absent"), std::runtime_error);
    EXPECT_THROW(ModuleFile::read(files.path()), std::runtime_error);
    EXPECT_THROW(ModuleFile::read(files.write("text",
                                              "not a library at all, but long enough for "
                                              "the header of one, which it has not")),
                 std::runtime_error);
}

TEST(ModuleFile, RefusesALibraryOfAnotherMachine) {
    const TemporaryFolder files;
    std::string foreign = bytesOf(folder / "libplainModule.so");
    ElfW(Ehdr) header;
    std::memcpy(&header, foreign.data(), sizeof header);
    header.e_machine = header.e_machine == EM_X86_64 ? EM_AARCH64 : EM_X86_64;
    std::memcpy(foreign.data(), &header, sizeof header);
    EXPECT_THROW(ModuleFile::read(files.write("foreign", foreign)), std::runtime_error);
}

TEST(ModuleFile, ReadsNoFurtherThanTheFileGoes) {
    const TemporaryFolder files;
    const std::string whole = bytesOf(folder / "libplainModule.so");
    for (std::size_t size = 0; size < whole.size(); size += 61) {
        const auto file = files.write("cut", std::string_view(whole).substr(0, size));
        try {
            ModuleFile::read(file);
        } catch (const std::runtime_error&) {
            continue;
        }
    }
    for (std::size_t place = 0; place < 64; ++place) {
        std::string damaged = whole;
        damaged[place] = '\xFF';
        const auto file = files.write("damaged", damaged);
        try {
            ModuleFile::read(file);
        } catch (const std::runtime_error&) {
            continue;
        }
    }
}

TEST(Demangled, ShowsNamesAsTheyWereWritten) {
    EXPECT_EQ(demangled("/x/libA.so: undefined symbol: _ZN3PYL5countEi"),
              "/x/libA.so: undefined symbol: PYL::count(int)");
    EXPECT_EQ(demangled("undefined symbol: plain_C"), "undefined symbol: plain_C");
    EXPECT_EQ(demangled("_Z is none, _Zq neither"), "_Z is none, _Zq neither");
    EXPECT_EQ(demangled(""), "");
}

}  // namespace
}  // namespace cimhost
