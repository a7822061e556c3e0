#include "cimhost/indications/SubscriptionText.h"

#include "cimhost/mof/MofWriter.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {

namespace {

constexpr std::string_view header = "// cimhost subscriptions 2\n";
constexpr std::string_view oldHeader = "cimhost subscriptions 1\n";

std::string trailer(std::size_t count) {
    return "// end of " + std::to_string(count) + " instances\n";
}

// The escapes of form 1 have two digits, those of MOF up to four.
void appendProperty(std::string_view line, std::string& mof) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        mof += line[i];
        if (line[i] != '\\' || i + 1 == line.size()) continue;
        mof += line[++i];
        if (line[i] == 'x') mof += "00";
    }
    mof += ';';
}

bool appendHead(std::string_view line, std::string& mof) {
    constexpr std::string_view between = " in ";
    const std::string_view name = line.substr(0, findNameEnd(line));
    const std::string_view rest = line.substr(name.size());
    if (name.empty() || !rest.starts_with(between)) return false;
    mof.append("#pragma namespace (\"").append(rest.substr(between.size()));
    mof.append("\") instance of ").append(name).append(" {");
    return true;
}

// Line for line, so that errors name the right one. What makes no sense stays as it is, and makes
// none in MOF either.
std::string mofOfOldForm(std::string_view text) {
    std::string mof(header);
    text.remove_prefix(oldHeader.size());
    bool isOpen = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        const bool isProperty = line.starts_with("    ");
        if (isOpen && !isProperty) mof += "}; ";
        isOpen = isOpen && isProperty;
        if (isProperty) {
            appendProperty(line, mof);
        } else if (appendHead(line, mof)) {
            isOpen = true;
        } else {
            if (line.starts_with("end of ")) mof += "// ";
            mof += line;
        }
        mof += text.substr(end, 1);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return mof;
}

MofPosition lastLine(std::string_view text, const std::string& file) {
    const auto ends = std::ranges::count(text, '\n');
    return {&file, static_cast<std::size_t>(ends) + (text.ends_with('\n') ? 0 : 1), 1};
}

}  // namespace

std::string formatSubscriptions(const std::vector<Instance>& instances) {
    return std::string(header) + writeInstances(instances) + trailer(instances.size());
}

bool isOldForm(std::string_view text) noexcept { return text.starts_with(oldHeader); }

std::vector<DeclaredInstance> parseSubscriptions(const Repository& repository,
                                                 std::string_view text, const std::string& file) {
    if (isOldForm(text)) return parseSubscriptions(repository, mofOfOldForm(text), file);
    if (!text.starts_with(header)) {
        failAt({&file, 1, 1},
               "the line '" + std::string(header.substr(0, header.size() - 1)) + "' is expected");
    }
    std::vector<DeclaredInstance> instances = readInstances(repository, text, file);
    if (text.ends_with(trailer(instances.size()))) return instances;
    failAt(lastLine(text, file), "there are " + std::to_string(instances.size()) +
                                     " instances, but the last line does not say so");
}

}  // namespace cimhost
