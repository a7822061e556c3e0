#include "cimhost/http/HostNames.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

namespace cimhost {
namespace {

/// Of a machine that is called box, with a domain that its look-up knows.
HostNameSources box() {
    HostNameSources sources;
    sources.machine = "box";
    sources.lookUp = [](const std::string& name) { return name + ".lab.example"; };
    return sources;
}

TEST(HostNames, ContainThoseOfThisMachineForItself) {
    const HostNames names(box());
    for (const std::string_view host : {"localhost", "localhost:5988", "LocalHost:80", "localhost.",
                                        "localhost:", "cim.localhost:1"}) {
        EXPECT_TRUE(names.contain(host)) << host;
    }
}

TEST(HostNames, ContainEveryAddress) {
    const HostNames names(box());
    for (const std::string_view host : {"127.0.0.1", "127.0.0.1:5988", "192.168.7.9:5989", "[::1]",
                                        "[::1]:5988", "[2001:db8::7]:443", "[::ffff:127.0.0.1]"}) {
        EXPECT_TRUE(names.contain(host)) << host;
    }
}

TEST(HostNames, ContainTheMachinesNameWithAndWithoutItsDomain) {
    const HostNames names(box());
    for (const std::string_view host :
         {"box", "BOX:5988", "box.lab.example", "Box.Lab.Example:5989", "box.lab.example."}) {
        EXPECT_TRUE(names.contain(host)) << host;
    }
    HostNameSources full;
    full.machine = "box.lab.example";
    full.lookUp = [](const std::string&) { return std::string(); };
    EXPECT_TRUE(HostNames(full).contain("box"));
    EXPECT_TRUE(HostNames(full).contain("box.lab.example"));
    EXPECT_FALSE(HostNames(full).contain("box.evil.example"));
}

TEST(HostNames, ContainThoseThatSomebodyGaveIt) {
    HostNameSources sources = box();
    sources.others = {"cim.example", "Old"};
    const HostNames names(sources);
    EXPECT_TRUE(names.contain("CIM.example:5988"));
    EXPECT_TRUE(names.contain("old"));
    EXPECT_FALSE(names.contain("www.cim.example"));
}

TEST(HostNames, DoNotContainThoseOfOthers) {
    const HostNames names(box());
    for (const std::string_view host :
         {"evil.example", "evil.example:5988", "localhost.evil.example", "127.0.0.1.evil.example",
          "box.evil.example", "boxer", "xlocalhost", ".localhost", "lab.example", "0x7f000001",
          "2130706433", "127.1"}) {
        EXPECT_FALSE(names.contain(host)) << host;
    }
}

TEST(HostNames, DoNotContainWhatIsNone) {
    const HostNames names(box());
    for (const std::string_view host :
         {"", ":", ":5988", ".", "localhost:x", "localhost:59880000", "localhost:1:2",
          "user@localhost", "localhost ", "::1", "[::1", "[]", "[localhost]", "[::1]x", "[::1]5",
          "[127.0.0.1]", "localhost,evil.example"}) {
        EXPECT_FALSE(names.contain(host)) << host;
    }
}

TEST(HostNames, AskForTheDomainOnceAndOnlyWhenItMatters) {
    std::atomic<int> asked = 0;
    HostNameSources sources = box();
    sources.lookUp = [&asked](const std::string& name) {
        ++asked;
        return name + ".lab.example";
    };
    const HostNames names(sources);
    EXPECT_FALSE(names.contain("evil.example"));
    EXPECT_TRUE(names.contain("box"));
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(names.contain("box.lab.example"));
    EXPECT_FALSE(names.contain("box.evil.example"));
    EXPECT_EQ(asked, 1);
}

TEST(HostNames, OutliveALookUpThatTakesLong) {
    const auto isDone = std::make_shared<std::atomic<bool>>(false);
    const auto hasEnded = std::make_shared<std::atomic<bool>>(false);
    {
        HostNameSources sources = box();
        sources.lookUp = [isDone, hasEnded](const std::string& name) {
            while (!*isDone) std::this_thread::yield();
            *hasEnded = true;
            return name;
        };
        EXPECT_FALSE(HostNames(sources).contain("box.lab.example")) << "not known in time";
    }
    *isDone = true;
    while (!*hasEnded) std::this_thread::yield();
}

TEST(HostNames, ContainWhatThisMachineIsCalled) {
    if (machineName().empty()) {
        GTEST_SKIP() << "it has no name";
    }
    EXPECT_TRUE(HostNames().contain(machineName() + ":5988"));
}

}  // namespace
}  // namespace cimhost
