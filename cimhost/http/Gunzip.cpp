#include "cimhost/http/Gunzip.h"

#include <boost/beast/zlib/inflate_stream.hpp>

#include <cstdint>
#include <stdexcept>

namespace cimhost {
namespace {

namespace zlib = boost::beast::zlib;

constexpr std::size_t headBytes = 10;
constexpr std::size_t tailBytes = 8;  // checksum and length

std::uint32_t readLittleEndian(std::string_view bytes) noexcept {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) {
        number = (number << 8U) | static_cast<unsigned char>(bytes[i]);
    }
    return number;
}

}  // namespace

std::string gunzip(std::string_view file) {
    constexpr std::string_view begin("\x1F\x8B\x08\0", 4);  // deflated, and nothing optional
    if (file.size() < headBytes + tailBytes || !file.starts_with(begin)) {
        throw std::invalid_argument("no gzip file of the plain kind");
    }
    std::string text(readLittleEndian(file.substr(file.size() - 4)), '\0');
    zlib::z_params state;
    state.next_in = file.data() + headBytes;
    state.avail_in = file.size() - headBytes;  // it may look into the tail for the last bits
    state.next_out = text.data();
    state.avail_out = text.size();
    zlib::inflate_stream inflater;
    boost::beast::error_code error;
    inflater.write(state, zlib::Flush::finish, error);
    if (error != zlib::error::end_of_stream || state.avail_out > 0 || state.avail_in > tailBytes) {
        throw std::invalid_argument("a gzip file that is damaged");
    }
    return text;
}

}  // namespace cimhost
