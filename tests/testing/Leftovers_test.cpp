#include "tests/testing/Ports.h"

#include <optional>

namespace {

struct Leftovers : testing::Test {
    Leftovers() {
        cimtest::setLateFailure([this](const std::string& words) { late.push_back(words); });
        host->readMofText(ports::classes);
        provider = &host->serve(std::make_unique<ports::Provider>(host->broker(), host->logger()),
                                {"ACME_Port"});
    }
    ~Leftovers() override {
        cimtest::setLateFailure([](const std::string& words) { ADD_FAILURE() << words; });
    }

    std::vector<std::string> late;
    cimtest::FakeHost machine;
    std::optional<cimtest::ProviderHost> host{std::in_place, "root/acme"};
    ports::Provider* provider = nullptr;
};

TEST_F(Leftovers, OfAProviderThatReleasesWhatItClonesAreNone) {
    host->names("ACME_Port");
    EXPECT_EQ(host->clones(), 0);
    host->end();
    EXPECT_EQ(late, std::vector<std::string>{});
}

TEST_F(Leftovers, AreToldWhenTheProviderHasEnded) {
    CMPIObjectPath* kept = nullptr;
    provider->onRequest = [&](const auto&) {
        const auto path = ports::Thing::path("ACME_Port", "kept");
        kept = path.toCMPI()->ft->clone(path.toCMPI(), nullptr);
    };
    host->names("ACME_Port");
    EXPECT_EQ(host->clones(), 1);
    EXPECT_EQ(late, std::vector<std::string>{});
    host->end();
    EXPECT_EQ(late, std::vector<std::string>{"1 objects that providers cloned were not released "
                                             "when they had ended"});
    kept->ft->release(kept);
}

TEST_F(Leftovers, AreBlocksOfMemoryToo) {
    provider->onRequest = [&](const auto&) { host->handle()->mft->cmpiMalloc(host->handle(), 10); };
    host->names("ACME_Port");
    host->end();
    EXPECT_EQ(late, std::vector<std::string>{"1 blocks of memory that providers got of the broker "
                                             "were not given back"});
}

}  // namespace
