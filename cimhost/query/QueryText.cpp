#include "cimhost/query/QueryText.h"

#include "cimhost/query/WqlParser.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {

namespace {

// The end of a string in quotes, a name, or any other single character at the front of the text.
std::size_t tokenEnd(std::string_view text) noexcept {
    if (text[0] == '"' || text[0] == '\'') {
        for (std::size_t i = 1; i < text.size(); ++i) {
            if (text[i] == '\\') {
                ++i;
            } else if (text[i] == text[0]) {
                return i + 1;
            }
        }
        return text.size();
    }
    return std::max<std::size_t>(findNameEnd(text), 1);
}

std::string_view nextToken(std::string_view& text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (text.empty()) return {};
    const std::string_view token = text.substr(0, tokenEnd(text));
    text.remove_prefix(token.size());
    return token;
}

}  // namespace

std::string queriedClass(std::string_view language, std::string_view query) {
    requireQueryLanguage(language);
    std::string_view token = nextToken(query);
    const bool isSelection = equalNames(token, "SELECT");
    while (!token.empty() && !equalNames(token, "FROM")) token = nextToken(query);
    const std::string_view name = nextToken(query);
    if (!isSelection || name.empty() || findNameEnd(name) != name.size()) {
        throw CimError(CimCode::invalidQuery, "the query does not select from a class");
    }
    return std::string(name);
}

}  // namespace cimhost
