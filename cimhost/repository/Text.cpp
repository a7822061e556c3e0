#include "cimhost/repository/Text.h"

#include <new>
#include <ostream>

namespace cimhost {

void Text::_copyShort(std::string_view content) noexcept {
    // Two words that may overlap: a copy of any length takes three times the instructions.
    const char* const from = content.data();
    const std::size_t size = content.size();
    if (size >= 8) {
        std::memcpy(_bytes.data(), from, 8);
        std::memcpy(_bytes.data() + size - 8, from + size - 8, 8);
    } else if (size >= 4) {
        std::memcpy(_bytes.data(), from, 4);
        std::memcpy(_bytes.data() + size - 4, from + size - 4, 4);
    } else {
        for (std::size_t i = 0; i < size; ++i) _bytes[i] = from[i];
    }
    _bytes[room] = static_cast<char>(size);
}

void Text::_copyOutside(std::string_view content) {
    auto* const block =
        ::new (::operator new(sizeof(Block) + content.size())) Block{content.size()};
    content.copy(reinterpret_cast<char*>(block + 1), content.size());
    std::memcpy(_bytes.data(), &block, sizeof block);
    _bytes[room] = static_cast<char>(outside);
}

std::ostream& operator<<(std::ostream& out, const Text& text) { return out << text.view(); }

}  // namespace cimhost
