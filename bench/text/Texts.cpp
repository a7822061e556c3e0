#include "bench/text/Texts.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>
#include <string_view>

namespace {

// The generator itself is fixed by the standard; the distributions are not, so none is used.
class Random {
public:
    unsigned below(unsigned limit) { return static_cast<unsigned>(_engine() % limit); }

private:
    std::mt19937 _engine{1};
};

std::string_view randomName(Random& random, Names names) {
    // The five of XML first, then some of those that real pages use.
    static constexpr auto all = std::to_array<std::string_view>(
        {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;", "&nbsp;", "&eacute;", "&uuml;", "&copy;",
         "&hellip;", "&euro;", "&rarr;", "&Aring;", "&ndash;", "&thetasym;"});
    return all[random.below(names == Names::xml ? 5 : all.size())];
}

std::string randomReference(Random& random, Names names) {
    const unsigned kind = random.below(3);
    if (kind == 0) return std::string(randomName(random, names));
    const unsigned codePoint =
        random.below(2) ? 0x20 + random.below(0x5F) : random.below(0x2800) + 0xA0;
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), kind == 1 ? "&#%u;" : "&#x%X;", codePoint);
    return text.data();
}

void appendLetters(std::string& text, Random& random, std::size_t count) {
    while (count-- > 0) text += static_cast<char>('a' + random.below(26));
}

}  // namespace

std::string plainText(std::size_t size) {
    Random random;
    std::string text;
    appendLetters(text, random, size);
    return text;
}

std::string textWithReferences(std::size_t size, unsigned percent, Names names) {
    Random random;
    std::string text;
    std::size_t inReferences = 0;
    while (text.size() < size) {
        const std::string reference = randomReference(random, names);
        text += reference;
        inReferences += reference.size();
        // Letters up to the share, a few more or less so that no place can be foretold.
        const std::size_t wanted = inReferences * 100 / percent;
        if (percent == 100 || wanted <= text.size()) continue;
        const auto gap = static_cast<unsigned>(wanted - text.size());
        appendLetters(text, random, gap / 2 + random.below(gap + 1));
    }
    return text;
}

std::size_t countReferences(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '&'));
}
