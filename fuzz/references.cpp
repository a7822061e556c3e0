// Character references: the fast decoder, in place and into a buffer, and the single steps all
// agree with the plain decoder, within memory of exactly the size of the text.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "common/entities.h"
#include "fuzz/Require.h"
#include "tests/common/PlainDecoder.h"

namespace {

std::unique_ptr<char[]> exactCopy(std::string const& text) {
    auto copy = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(copy.get(), text.c_str(), text.size() + 1);
    return copy;
}

bool holds(char const* bytes, std::size_t size, std::string const& expected) {
    return size == expected.size() && std::memcmp(bytes, expected.c_str(), size + 1) == 0;
}

/// The text decoded with nothing but parse_entity().
std::string decodeInSteps(char const* text) {
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

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const input(reinterpret_cast<char const*>(data), size);
    std::string const text(input.substr(0, input.find('\0')));
    std::string const expected = decodePlainly(text);
    auto const source = exactCopy(text);
    auto const destination = std::make_unique<char[]>(expected.size() + 1);

    errno = EBADF;
    std::size_t const copied = remove_xml_reference_chars(source.get(), destination.get());
    require(holds(destination.get(), copied, expected), "the buffer holds the plain result");
    require(text == source.get(), "the source is left alone");
    require(decodeInSteps(source.get()) == expected, "the steps give the plain result");
    std::size_t const rewritten = remove_xml_reference_chars(source.get());
    require(holds(source.get(), rewritten, expected), "the rewritten text is the plain result");
    require(errno == EBADF, "errno is left alone");
    return 0;
}
