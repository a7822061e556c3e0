#include "providers/baseserver/WorkCounter.h"

#include "tests/support/Journal.h"
#include "tests/support/RedirectedFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>
#include <vector>

namespace {

using baseserver::WorkCounter;
namespace fs = std::filesystem;

struct WorkCounterTest : testing::Test {
    RedirectedFiles files;
    JournalLog log;
    const std::string path = RedirectedFiles::real("/etc/cim/work.txt");

    WorkCounterTest() { PYL::setDataStoreLogger(Logger("store", std::make_shared<Journal>())); }

    std::string content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(WorkCounterTest, GoesOnWhereTheLastOneEnded) {
    {
        WorkCounter counter("work", log.logger);
        EXPECT_EQ(counter.increment(), 1U);
        EXPECT_EQ(counter.increment(), 2U);
    }
    EXPECT_EQ(WorkCounter("work", log.logger).increment(), 3U);
    EXPECT_EQ(log.journal->take(), Lines{});
}

TEST_F(WorkCounterTest, KeepsTheLengthOfItsRecord) {
    std::ofstream(path) << "WorkCount 00000000000000000099\r\nOther 7\r\n";
    EXPECT_EQ(WorkCounter("work", log.logger).increment(), 100U);
    EXPECT_EQ(content(), "WorkCount 00000000000000000100\r\nOther 7\r\n");
}

TEST_F(WorkCounterTest, StartsAnewFromAFileThatHoldsNoNumber) {
    std::ofstream(path) << "WorkCount many\r\n";
    EXPECT_EQ(WorkCounter("work", log.logger).increment(), 1U);
}

TEST_F(WorkCounterTest, CountsInMemoryWithoutAStoreAndSaysSo) {
    fs::create_directory(path);
    WorkCounter counter("work", log.logger);
    const auto lines = log.journal->take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].find("warning: the work count does not survive a restart: no store work: "),
              0U)
        << lines[0];
    EXPECT_EQ(counter.increment(), 1U);
    EXPECT_EQ(counter.increment(), 2U);
}

TEST_F(WorkCounterTest, CountsEveryThread) {
    WorkCounter counter("work", log.logger);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) counter.increment();
        });
    }
    threads.clear();
    EXPECT_EQ(counter.increment(), 201U);
}

}  // namespace
