// The store beside its slow twin, which does the same with stdio and nothing else.

#include "tests/common/PlainStore.h"
#include "tests/common/StoreFixture.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

struct DataStoreTwins : StoreFixture {
    const std::string twinPath = path + ".twin";
    std::mt19937 random{7};

    std::string word() {
        static const std::vector<std::string> words = {"a",
                                                       "b",
                                                       "c",
                                                       "key",
                                                       "Key",
                                                       "",
                                                       "two words",
                                                       "42",
                                                       "00000042",
                                                       "%s",
                                                       std::string(1023, 'x'),
                                                       std::string(1030, 'y'),
                                                       "\xff",
                                                       "a\tb",
                                                       "\r\n"};
        return words[random() % words.size()];
    }
};

TEST_F(DataStoreTwins, LeaveTheSameBytesAfterAnyOperations) {
    for (int round = 0; round < 60; ++round) {
        std::string start;
        for (auto count = random() % 8; count > 0; --count) {
            start += word() + (random() % 2 ? " " : "\r\n");
        }
        write(start);
        write(twinPath, start);
        const auto store = open();
        PlainStore plain(twinPath);
        for (int step = 0; step < 30; ++step) {
            const auto key = word();
            const auto value = word();
            const auto operation = random() % 4;
            if (operation == 0) {
                EXPECT_FALSE(store->remove(key));
                plain.remove(key);
            } else if (operation == 1) {
                const auto record = plain.find(key);
                EXPECT_EQ(store->fetchString(key), record ? record->value : "");
                EXPECT_EQ(store->exists(key), record.has_value());
            } else {
                EXPECT_TRUE(store->storeString(key, value));
                plain.store(key, value);
            }
            ASSERT_EQ(content(), contentOf(twinPath)) << "round " << round << ", step " << step;
        }
    }
}

}  // namespace
