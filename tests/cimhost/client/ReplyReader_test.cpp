#include "cimhost/client/ReplyReader.h"

#include "cimhost/repository/CimError.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace cimhost {
namespace {

std::string reply(std::string_view inside, std::string_view name = "GetInstance") {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.4\">"
           "<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE NAME=\"" +
           std::string(name) + "\">" + std::string(inside) +
           "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
}

/// "CLASS CLASS ..." of the results, or "code: text" of the error; reads in pieces of `step` bytes.
std::string read(std::string_view text, std::size_t step = 1 << 20) {
    std::string found;
    try {
        ReplyReader reader("GetInstance", [&](const Element& element) {
            found += std::string(element.attributeText(Attribute::className)) + " ";
        });
        while (!text.empty()) {
            reader.read(text.substr(0, step));
            text.remove_prefix(std::min(step, text.size()));
        }
        reader.finish();
    } catch (const CimError& error) {
        return found + std::to_string(static_cast<int>(error.code())) + ": " + error.what();
    }
    return found;
}

constexpr std::string_view twoInstances =
    "<IRETURNVALUE><INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"N\" TYPE=\"string\">"
    "<VALUE>a&#13;&lt;b</VALUE></PROPERTY></INSTANCE> <INSTANCE CLASSNAME=\"B\"/></IRETURNVALUE>";

TEST(ReplyReader, GivesOutResultsAsTheyComeHoweverTheTextIsCut) {
    for (const std::size_t step : std::initializer_list<std::size_t>{1, 2, 3, 7, 100, 10000}) {
        EXPECT_EQ(read(reply(twoInstances), step), "A B ");
    }
}

TEST(ReplyReader, ThrowsTheErrorOfTheReply) {
    EXPECT_EQ(read(reply("<ERROR CODE=\"6\" DESCRIPTION=\"gone&#10;away\"/>")), "6: gone\naway");
    EXPECT_EQ(read(reply("<ERROR CODE=\"6\"><INSTANCE CLASSNAME=\"CIM_Error\"/></ERROR>")), "6: ");
}

TEST(ReplyReader, TakesACodeThatIsNoneForAFailure) {
    EXPECT_EQ(read(reply("<ERROR CODE=\"77\" DESCRIPTION=\"x\"/>")), "1: x");
    EXPECT_EQ(read(reply("<ERROR CODE=\"six\" DESCRIPTION=\"x\"/>")), "1: x");
}

struct Hostile {
    std::string text;
    std::string words;
};

TEST(ReplyReader, RefusesWhatIsNoReplyToTheOperation) {
    std::string deep;
    for (int i = 0; i < 300; ++i) deep += "<ERROR CODE=\"1\">";
    const std::vector<Hostile> all{
        {"", "no element found"},
        {"no XML", "syntax error"},
        {"<html/>", "element html"},
        {std::string("<CIM>\0</CIM>", 12), "NUL"},
        {"<!DOCTYPE CIM><CIM/>", "DTD"},
        {"<CIM><MESSAGE/></CIM>", "no response"},
        {"<CIM><MESSAGE><SIMPLERSP>text</SIMPLERSP></MESSAGE></CIM>", "text between"},
        {reply(twoInstances).substr(0, 300), "A 1: the server's answer is no reply"},
        {reply(twoInstances, "DeleteInstance"), "another operation"},
        {reply("<IRETURNVALUE><INSTANCE/></IRETURNVALUE>"), "misses an attribute"},
        {reply("<IRETURNVALUE><SECRET/></IRETURNVALUE>"), "unknown element"},
        {reply("<IRETURNVALUE><KEYVALUE>1</KEYVALUE></IRETURNVALUE>"), "out of place"},
        {reply("<IRETURNVALUE>words</IRETURNVALUE>"), "text between"},
        {reply("<SURPRISE/>"), "element SURPRISE"},
        {reply(deep), "nested too deeply"},
        {reply("<ERROR CODE=\"1\"/><ERROR CODE=\"2\"/>"), "two errors"},
        {"<CIM><MESSAGE><SIMPLERSP><EXPMETHODRESPONSE NAME=\"GetInstance\"/></SIMPLERSP></MESSAGE>"
         "</CIM>",
         "element EXPMETHODRESPONSE"},
    };
    for (const Hostile& each : all) {
        const std::string found = read(each.text);
        EXPECT_NE(found.find(each.words), std::string::npos) << each.text << "\n" << found;
    }
}

TEST(ReplyReader, PassesOnWhatTheTakerThrows) {
    ReplyReader reader("GetInstance", [](const Element&) { throw std::logic_error("enough"); });
    EXPECT_THROW(reader.read(reply(twoInstances)), std::logic_error);
}

}  // namespace
}  // namespace cimhost
