// Character references: the fast decoder, in place and into a buffer, and the single steps all
// agree with the plain decoder, within memory of exactly the size of the text.
#include "common/entities.h"
#include "fuzz/Require.h"
#include "tests/common/PlainDecoder.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace {

std::unique_ptr<char[]> exactCopy(const std::string& text) {
    auto copy = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(copy.get(), text.c_str(), text.size() + 1);
    return copy;
}

bool holds(const char* bytes, std::size_t size, const std::string& expected) {
    return size == expected.size() && std::memcmp(bytes, expected.c_str(), size + 1) == 0;
}

/// The text decoded with nothing but parse_entity().
std::string decodeInSteps(const char* text) {
    std::string result;
    while (*text != '\0') {
        char character[4];
        char* end = character;
        if (*text == '&' && parse_entity(text, &end, &text)) {
            result.append(character, static_cast<std::size_t>(end - character));
        } else {
            result += *text++;
        }
    }
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string text(input.substr(0, input.find('\0')));
    const std::string expected = decodePlainly(text);
    const auto source = exactCopy(text);
    const auto destination = std::make_unique<char[]>(expected.size() + 1);

    errno = EBADF;
    const std::size_t copied = remove_xml_reference_chars(source.get(), destination.get());
    require(holds(destination.get(), copied, expected), "the buffer holds the plain result");
    require(text == source.get(), "the source is left alone");
    require(decodeInSteps(source.get()) == expected, "the steps give the plain result");
    const std::size_t rewritten = remove_xml_reference_chars(source.get());
    require(holds(source.get(), rewritten, expected), "the rewritten text is the plain result");
    require(errno == EBADF, "errno is left alone");
    return 0;
}
