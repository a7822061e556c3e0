#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Decodes `text` into `room`, which holds it with its closing zero and a little more, and returns
/// the size of the result. What is made on the way is freed.
using Decode = std::size_t (*)(const std::string& text, char* room);

struct Decoder {
    std::string_view name;
    Decode decode;
};

std::size_t decodeWithLibrary(const std::string& text, char* room);
std::size_t decodeWithRapidxml(const std::string& text, char* room);
std::size_t decodeWithPugixml(const std::string& text, char* room);
std::size_t decodeWithGumbo(const std::string& text, char* room);
std::size_t decodeWithMyhtml(const std::string& text, char* room);

/// What more the room must hold: the element that a parser wants around the text.
constexpr std::size_t extraRoom = 16;

/// The others that know the five names of XML and numbers.
inline constexpr auto xmlDecoders = std::to_array<Decoder>({
    {"rapidxml", decodeWithRapidxml},
    {"pugixml", decodeWithPugixml},
});

/// The others that know the names of HTML too.
inline constexpr auto htmlDecoders = std::to_array<Decoder>({
    {"gumbo", decodeWithGumbo},
    {"myhtml", decodeWithMyhtml},
});
