#include "cimhost/http/Gunzip.h"

#include "tests/cimhost/http/Gzip.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace cimhost {
namespace {

std::string numbered(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) text += std::to_string(i * i) + " ";
    return text.substr(0, size);
}

TEST(Gunzip, GivesTheTextBack) {
    for (const std::size_t size :
         std::initializer_list<std::size_t>{0, 1, 100, 65'536, 1'000'000}) {
        EXPECT_TRUE(gunzip(gzip(numbered(size))) == numbered(size)) << size;
    }
}

TEST(Gunzip, RefusesWhatIsNoneOfOurs) {
    const std::string file = gzip("some text");
    EXPECT_THROW(gunzip(""), std::invalid_argument);
    EXPECT_THROW(gunzip("some text that is long enough"), std::invalid_argument);
    EXPECT_THROW(gunzip(file.substr(0, 17)), std::invalid_argument);
    std::string named = file;
    named[3] = 8;
    EXPECT_THROW(gunzip(named), std::invalid_argument);
}

TEST(Gunzip, RefusesADamagedFile) {
    const std::string file = gzip(numbered(1000));
    std::string broken = file;
    broken[10] = '\x07';  // the head of the first block: a kind that there is not
    EXPECT_THROW(gunzip(broken), std::invalid_argument);
    std::string cut = file;
    cut.erase(100, 50);
    EXPECT_THROW(gunzip(cut), std::invalid_argument);
    std::string longer = file;
    longer[longer.size() - 4] = static_cast<char>(longer[longer.size() - 4] + 1);
    EXPECT_THROW(gunzip(longer), std::invalid_argument);
    std::string shorter = file;
    shorter[shorter.size() - 4] = static_cast<char>(shorter[shorter.size() - 4] - 1);
    EXPECT_THROW(gunzip(shorter), std::invalid_argument);
}

}  // namespace
}  // namespace cimhost
