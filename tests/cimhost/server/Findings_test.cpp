#include "cimhost/server/Findings.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

TEST(Findings, BeginWithAPlaceOrWithNone) {
    const PlacedText full = placedText("/a b/c.mof:12:3: class 'A': broken");
    EXPECT_EQ(full.file, "/a b/c.mof");
    EXPECT_EQ(full.line, 12U);
    EXPECT_EQ(full.column, 3U);
    EXPECT_EQ(full.text, "class 'A': broken");
    const PlacedText line = placedText("r:7: text");
    EXPECT_EQ(line.file, "r");
    EXPECT_EQ(line.line, 7U);
    EXPECT_EQ(line.column, 0U);
    for (const char* const none :
         {"module M: libM.so", "provider P: 5", "", ":5: x", "a:b: c", "text"}) {
        EXPECT_EQ(placedText(none).file, "") << none;
        EXPECT_EQ(placedText(none).text, none);
    }
}

TEST(Findings, AreJsonForMachines) {
    EXPECT_EQ(findingsAsJson({}, {}), "{\"errors\": [],\n \"warnings\": []}\n");
    EXPECT_EQ(
        findingsAsJson({"a.mof:1:2: say \"x\"\n", "r:3: \\"}, {"no place"}),
        "{\"errors\": [\n"
        "  {\"file\": \"a.mof\", \"line\": 1, \"column\": 2, \"text\": \"say \\\"x\\\"\\u000a\"},\n"
        "  {\"file\": \"r\", \"line\": 3, \"text\": \"\\\\\"}],\n"
        " \"warnings\": [\n"
        "  {\"text\": \"no place\"}]}\n");
}

}  // namespace
}  // namespace cimhost
