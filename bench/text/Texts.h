#pragma once

#include <cstddef>
#include <string>

/// What is decoded. The same text at every call.

/// Letters without a single reference.
std::string plainText(std::size_t size);

enum class Names { xml, html };  ///< the five of XML, or any of HTML too

/// Named, decimal and hexadecimal references in equal numbers, which make up `percent` of the
/// bytes.
std::string textWithReferences(std::size_t size, unsigned percent, Names names);

/// How many references a text has whose every '&' begins one.
std::size_t countReferences(const std::string& text);
