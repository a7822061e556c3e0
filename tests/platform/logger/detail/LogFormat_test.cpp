// The texts that Logger builds. Where C defines the result, the C library is the judge.

#include "platform/logger/CapturingSink.h"
#include "platform/logger/Logger.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

template <typename... Arguments>
std::string formatted(const char* format, const Arguments&... arguments) {
    const auto sink = std::make_shared<CapturingSink>();
    Logger("test", sink).info(format, arguments...);
    return sink->messages().at(0);
}

template <typename... Arguments>
std::string formattedByC(const std::string& format, Arguments... arguments) {
    std::vector<char> buffer(8192);
    const int size = std::snprintf(buffer.data(), buffer.size(), format.c_str(), arguments...);
    return {buffer.data(), static_cast<std::size_t>(size)};
}

/// Holds our text against the C library's for every flag, width and precision.
template <typename Value>
void compareWithC(std::string_view conversion, std::string_view flags, Value value) {
    for (unsigned set = 0; set < 1U << flags.size(); ++set) {
        std::string chosen;
        for (std::size_t bit = 0; bit < flags.size(); ++bit) {
            if (set & 1U << bit) chosen += flags[bit];
        }
        for (const char* const width : {"", "1", "7", "30"}) {
            for (const char* const precision : {"", ".", ".0", ".3", ".25"}) {
                std::string format = "[%" + chosen + width + precision;
                format.append(conversion).append("]");
                EXPECT_EQ(formatted(format.c_str(), value), formattedByC(format, value)) << format;
            }
        }
    }
}

TEST(LogFormat, PrintsSignedIntegersAsCDoes) {
    for (const int value : {0, 1, -1, 42, INT32_MAX, INT32_MIN}) {
        compareWithC("d", "-+ 0", value);
        compareWithC("i", "-+ 0", value);
    }
    for (const long value : {0L, -1L, INT64_MAX, INT64_MIN}) {
        compareWithC("ld", "-+ 0", value);
        compareWithC("li", "-+ 0", value);
        compareWithC("jd", "-+ 0", value);
        compareWithC("td", "-+ 0", value);
    }
}

TEST(LogFormat, PrintsUnsignedIntegersAsCDoes) {
    for (const unsigned value : {0U, 1U, 255U, UINT32_MAX}) {
        compareWithC("u", "-+ 0", value);
        for (const char* const conversion : {"o", "x", "X"}) {
            compareWithC(conversion, "-+ #0", value);
        }
    }
    for (const unsigned long value : {0UL, UINT64_MAX}) {
        compareWithC("lu", "-0", value);
        compareWithC("zu", "-0", value);
        for (const char* const conversion : {"lo", "lx", "lX"}) {
            compareWithC(conversion, "-#0", value);
        }
    }
    for (const int value : {-1, -128, 0x12345}) {
        for (const char* const conversion : {"u", "x", "hx", "hhx", "hu", "hhu"}) {
            compareWithC(conversion, "-0", value);
        }
        compareWithC("hd", "-+ 0", value);
        compareWithC("hhd", "-+ 0", value);
    }
}

TEST(LogFormat, PrintsFloatingNumbersAsCDoes) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {0.0, -0.0, 1.5, -2.75e-9, 1e21, Limits::max(), Limits::infinity(),
                               -Limits::infinity(), Limits::quiet_NaN()}) {
        for (const char* const conversion : {"e", "E", "f", "F", "g", "G", "a", "A"}) {
            compareWithC(conversion, "-+ #0", value);
        }
    }
}

TEST(LogFormat, PrintsCharactersAndTextsAsCDoes) {
    for (const int value : {0x78, 0x7f, 0x141}) {
        EXPECT_EQ(formatted("%c", value), formattedByC("%c", value));
    }
    for (const char* const format : {"[%3c]", "[%-3c]"}) {
        EXPECT_EQ(formatted(format, 'x'), formattedByC(format, 'x'));
    }
    for (const char* const text : {"", "abc", "a longer text than the width"}) {
        compareWithC("s", "-", text);
    }
}

TEST(LogFormat, PrintsAddressesAsCDoes) {
    const int object = 0;
    for (const char* const format : {"[%p]", "[%30p]", "[%-30p]"}) {
        EXPECT_EQ(formatted(format, &object),
                  formattedByC(format, static_cast<const void*>(&object)));
    }
    EXPECT_EQ(formatted("%p", nullptr), "(nil)");
    const char* const text = "text";
    EXPECT_EQ(formatted("%30p", text), formattedByC("%30p", static_cast<const void*>(text)));
}

TEST(LogFormat, TakesWidthAndPrecisionFromArguments) {
    EXPECT_EQ(formatted("[%*d]", 5, 42), "[   42]");
    EXPECT_EQ(formatted("[%*d]", -5, 42), "[42   ]");
    EXPECT_EQ(formatted("[%.*s]", 2, "abc"), "[ab]");
    EXPECT_EQ(formatted("[%.*s]", -1, "abc"), "[abc]");
    EXPECT_EQ(formatted("[%-*.*f]", 7, 1, 2.25), "[2.2    ]");
    EXPECT_EQ(formatted("%*d|", std::numeric_limits<int>::min(), 7).size(), 1025U);
}

TEST(LogFormat, PrintsTheFullWidthOfAnInteger) {
    EXPECT_EQ(formatted("%d", std::int64_t{-5'000'000'000}), "-5000000000");
    EXPECT_EQ(formatted("%u", UINT64_MAX), "18446744073709551615");
    EXPECT_EQ(formatted("%lu", UINT64_MAX), "18446744073709551615");
    EXPECT_EQ(formatted("%li", INT64_MIN), "-9223372036854775808");
    EXPECT_EQ(formatted("%lu", 7), "7");
    EXPECT_EQ(formatted("%llx", -1), "ffffffff");
    EXPECT_EQ(formatted("%d %i %5d", UINT32_MAX, UINT32_MAX, UINT32_MAX), "-1 -1    -1");
}

TEST(LogFormat, TakesBooleansCharactersAndEnumerationsAsIntegers) {
    enum Plain { three = 3 };
    enum class Scoped : std::uint8_t { four = 4 };
    EXPECT_EQ(formatted("%d %d %d %d", true, three, Scoped::four, 'A'), "1 3 4 65");
    EXPECT_EQ(formatted("%x", std::int8_t{-1}), "ffffffff");
}

TEST(LogFormat, TakesTextsOfEveryKind) {
    const std::string text = "string";
    char buffer[] = "buffer";
    EXPECT_EQ(formatted("%s %s %s", text, std::string_view("view"), buffer), "string view buffer");
    EXPECT_EQ(formatted("%.3s|%8s|%-8s|", text, text, text), "str|  string|string  |");
    EXPECT_EQ(formatted("%s", std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(LogFormat, PrintsANullText) {
    EXPECT_EQ(formatted("%s", static_cast<const char*>(nullptr)), "(null)");
    EXPECT_EQ(formatted("%s", nullptr), "(null)");
    EXPECT_EQ(formatted(nullptr), "(null)");
}

TEST(LogFormat, ReadsATextNoFurtherThanItsPrecision) {
    // On its own heap block, so that a reader of the sixth byte is caught.
    const auto unterminated = std::make_unique<char[]>(5);
    std::string_view("abcde").copy(unterminated.get(), 5);
    EXPECT_EQ(formatted("%.5s", static_cast<const char*>(unterminated.get())), "abcde");
    EXPECT_EQ(formatted("%.*s", 3, static_cast<const char*>(unterminated.get())), "abc");
}

TEST(LogFormat, LeavesAConversionWithoutAnArgumentAsItStands) {
    EXPECT_EQ(formatted("100%s done"), "100%s done");
    EXPECT_EQ(formatted("%d %-5.3lu"), "%d %-5.3lu");
    EXPECT_EQ(formatted("%d %d", 1), "1 %d");
    EXPECT_EQ(formatted("%*d"), "%*d");
    EXPECT_EQ(formatted("%*d", 5), "%*d");
    EXPECT_EQ(formatted("%.*f", 5), "%.*f");
}

TEST(LogFormat, LeavesAConversionOfTheWrongTypeAsItStands) {
    const int object = 0;
    EXPECT_EQ(formatted("%s", 42), "%s");
    EXPECT_EQ(formatted("%s", &object), "%s");
    EXPECT_EQ(formatted("%s", 1.5), "%s");
    EXPECT_EQ(formatted("%d", "text"), "%d");
    EXPECT_EQ(formatted("%d", 1.5), "%d");
    EXPECT_EQ(formatted("%lu", &object), "%lu");
    EXPECT_EQ(formatted("%5.1f", 1), "%5.1f");
    EXPECT_EQ(formatted("%p", 1), "%p");
    EXPECT_EQ(formatted("%p", std::string("text")), "%p");
    EXPECT_EQ(formatted("%c", "text"), "%c");
    EXPECT_EQ(formatted("%*d", "text"), "%*d");
}

TEST(LogFormat, UsesUpAnArgumentOfTheWrongType) {
    EXPECT_EQ(formatted("%s then %s", 1, "two"), "%s then two");
}

TEST(LogFormat, IgnoresArgumentsTooMany) { EXPECT_EQ(formatted("%d", 1, 2, "three"), "1"); }

TEST(LogFormat, StoresNothingForN) {
    int written = 77;
    EXPECT_EQ(formatted("a%nb"), "ab");
    EXPECT_EQ(formatted("a%hhn%5lnb%d", written), "ab77");
    EXPECT_EQ(written, 77);
}

TEST(LogFormat, PrintsPerCentSigns) {
    EXPECT_EQ(formatted("%%"), "%");
    EXPECT_EQ(formatted("%%d%%s"), "%d%s");
    EXPECT_EQ(formatted("100%"), "100%");
    EXPECT_EQ(formatted("%5"), "%5");
    EXPECT_EQ(formatted("%-+ #0"), "%-+ #0");
    EXPECT_EQ(formatted("%ll"), "%ll");
    EXPECT_EQ(formatted("%."), "%.");
    EXPECT_EQ(formatted(""), "");
}

TEST(LogFormat, LeavesUnknownConversionsAsTheyStandAndGoesOn) {
    EXPECT_EQ(formatted("%y %s", "text"), "%y text");
    EXPECT_EQ(formatted("50% %s", "text"), "50% text");
    EXPECT_EQ(formatted("%S %C %m %'d %1$d", 1), "%S %C %m %'d %1$d");
    EXPECT_EQ(formatted("%*y %d", 1), "%*y 1");
    EXPECT_EQ(formatted("%\x80\xff"), "%\x80\xff");
}

TEST(LogFormat, CapsWidthAndPrecision) {
    EXPECT_EQ(formatted("%1024d", 1).size(), 1024U);
    EXPECT_EQ(formatted("%1025d", 1).size(), 1024U);
    EXPECT_EQ(formatted("%99999999999999999999999s", "x").size(), 1024U);
    EXPECT_EQ(formatted("%.99999999999999999999999d", 1).size(), 1024U);
    EXPECT_EQ(formatted("%.1024f", 0.0).size(), 1026U);
    EXPECT_EQ(formatted("%-99999.99999f", -std::numeric_limits<double>::max()).size(), 1335U);
    EXPECT_EQ(formatted("%#1024.1024a", std::numeric_limits<double>::denorm_min()).size(),
              formattedByC("%#1024.1024a", std::numeric_limits<double>::denorm_min()).size());
}

TEST(LogFormat, PrintsLongTextsWhole) {
    const std::string text(100'000, 'x');
    EXPECT_EQ(formatted("%s", text), text);
    EXPECT_EQ(formatted("%.99999s", text).size(), 99'999U);
    EXPECT_EQ(formatted(text.c_str()), text);
}

TEST(LogFormat, SurvivesEveryFormatOfThreeHostileBytes) {
    constexpr std::string_view bytes = "%*.0-5hlsdnfpc$\x01\xff";
    for (const char first : bytes) {
        for (const char second : bytes) {
            for (const char third : bytes) {
                const std::string format = std::string("%") + first + second + third;
                EXPECT_LE(formatted(format.c_str()).size(), format.size());
                formatted(format.c_str(), 3, "text", 1.5, nullptr);
            }
        }
    }
}

}  // namespace
