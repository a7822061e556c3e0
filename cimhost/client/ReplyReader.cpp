#include "cimhost/client/ReplyReader.h"

#include "cimhost/repository/Names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace cimhost {
namespace {

constexpr auto envelope = std::to_array<std::string_view>({"CIM", "MESSAGE", "SIMPLERSP"});
constexpr std::size_t responseDepth = envelope.size();

constexpr TagSet results{Tag::instance,     Tag::valueNamedInstance, Tag::valueObjectWithPath,
                         Tag::instanceName, Tag::objectPath,         Tag::value,
                         Tag::valueArray,   Tag::valueReference,     Tag::classDefinition,
                         Tag::className,    Tag::instancePath,       Tag::qualifierDeclaration,
                         Tag::returnValue,  Tag::parameterValue};

/// Elements one in the other in an error, whose details are passed over.
constexpr std::size_t errorDepthLimit = XmlLimits::depth;

[[noreturn]] void refuse(const std::string& what) {
    throw CimError(CimCode::failed, "the server's answer is no reply: " + what);
}

/// A code that the standard does not know is a failure like any other.
CimCode codeOf(std::string_view text) noexcept {
    int code = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code);
    const bool isNumber = error == std::errc{} && end == text.data() + text.size();
    return isNumber && code >= 1 && code <= 29 ? static_cast<CimCode>(code) : CimCode::failed;
}

}  // namespace

ReplyReader::Result::Result() : builder(document, results) {}

ReplyReader::ReplyReader(std::string_view operation, Taker take)
    : _operation(operation), _take(std::move(take)), _pieces(XmlLimits::parserMemory, *this) {}

void ReplyReader::read(std::string_view piece) { _read(piece, false); }

void ReplyReader::finish() {
    _read({}, true);
    if (_error) throw CimError(*_error);
    if (!_hasResponse) refuse("it holds no response");
}

void ReplyReader::_read(std::string_view piece, bool isLast) {
    try {
        _pieces.read(piece, isLast);
    } catch (const XmlError& error) {
        refuse(error.what());
    }
}

void ReplyReader::startElement(std::string_view name, const char* const* attributes) {
    if (_result) {
        ++_result->depth;
        return _result->builder.startElement(name, attributes);
    }
    if (_inError > 0) {
        if (++_inError > errorDepthLimit) refuse("elements are nested too deeply");
        return;
    }
    _openEnvelope(name, attributes);
}

void ReplyReader::_openEnvelope(std::string_view name, const char* const* attributes) {
    if (_depth < responseDepth) {
        if (name != envelope.at(_depth) || _hasResponse) refuse("element " + std::string(name));
    } else if (_depth == responseDepth) {
        _isIntrinsic = name == "IMETHODRESPONSE";
        if ((!_isIntrinsic && name != "METHODRESPONSE") || _hasResponse) {
            refuse("element " + std::string(name));
        }
        if (!equalNames(attributeOf(attributes, "NAME"), _operation)) {
            refuse("it answers another operation than " + _operation);
        }
        _hasResponse = true;
    } else if (name == "ERROR" && _depth == responseDepth + 1) {
        return _openError(attributes);
    } else if (!_isIntrinsic || _depth == responseDepth + 2) {
        _result.emplace();
        _result->depth = 1;
        return _result->builder.startElement(name, attributes);
    } else if (name != "IRETURNVALUE") {
        refuse("element " + std::string(name));
    }
    ++_depth;
}

void ReplyReader::_openError(const char* const* attributes) {
    if (_error) refuse("it holds two errors");
    _inError = 1;
    _error.emplace(codeOf(attributeOf(attributes, "CODE")),
                   std::string(attributeOf(attributes, "DESCRIPTION")));
}

void ReplyReader::endElement() {
    if (_result) {
        _result->builder.endElement();
        if (--_result->depth > 0) return;
        _result->builder.check();
        _take(_result->document.root());
        _result.reset();
    } else if (_inError > 0) {
        --_inError;
    } else {
        --_depth;
    }
}

void ReplyReader::characters(std::string_view text) {
    if (_result) return _result->builder.characters(text);
    if (_inError == 0 && text.find_first_not_of(" \t\r\n") != std::string_view::npos) {
        refuse("it holds text between elements");
    }
}

void ReplyReader::declaration(std::string_view, std::string_view) {}

void ReplyReader::documentType() { refuse("it has a DTD"); }

}  // namespace cimhost
