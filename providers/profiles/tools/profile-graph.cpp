// Prints the catalogue of registered profiles as Graphviz text: what each profile references and
// extends, and the classes that implement it.
//   profile-graph | dot -Tsvg

#include "common/ProfileDB.h"
#include "platform/logger/Logger.h"
#include "platform/logger/StandardErrorSink.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using PYL::PRPDBRec;

/// Who owns profiles, and how theirs look.
struct Owner {
    int organization;  ///< CIM_RegisteredProfile.RegisteredOrganization
    const char* label;
    const char* colour;
};

constexpr Owner owners[] = {
    {2, "DMTF", "#dcebfb"},
    {11, "SNIA", "#e0f3e0"},
    {1, "KT WBEM TC", "#fff3d6"},
};

std::string escaped(std::string_view text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '&': result += "&amp;"; break;
            case '<': result += "&lt;"; break;
            case '>': result += "&gt;"; break;
            case '"': result += "&quot;"; break;
            default: result += character;
        }
    }
    return result;
}

/// The id, name and version, and below them the classes.
std::string label(const PRPDBRec& record) {
    auto text = std::to_string(record.getId()) + " <b>" + escaped(record.getRegName()) + "</b> " +
                escaped(record.getRegVersion());
    for (unsigned int i = 0; i < record.getSizeofImpClassNames(); ++i) {
        text += R"(<br align="left"/><font point-size="9">)" + escaped(record.getImpClassName(i)) +
                "</font>";
    }
    return text + R"(<br align="left"/>)";
}

void printLegend() {
    std::printf("    legend [shape=none, style=\"\", label=<<table border=\"0\">\n");
    for (const auto& owner : owners) {
        std::printf("        <tr><td bgcolor=\"%s\" border=\"1\">%s</td></tr>\n", owner.colour,
                    escaped(owner.label).c_str());
    }
    std::printf("    </table>>];\n");
}

const char* colourOf(const PRPDBRec& record) {
    const auto* const owner = std::ranges::find(owners, record.getRegOrgId(), &Owner::organization);
    return owner == std::end(owners) ? "white" : owner->colour;
}

void printProfile(const PRPDBRec& record) {
    std::printf("    p%d [fillcolor=\"%s\", label=<%s>];\n", record.getId(), colourOf(record),
                label(record).c_str());
}

void printRelations(const PRPDBRec& record) {
    for (unsigned int i = 0; i < record.getSizeofRefedProfiles(); ++i) {
        std::printf("    p%d -> p%d;\n", record.getId(), record.getRefedProfile(i));
    }
    for (unsigned int i = 0; i < record.getSizeofExtendsProfiles(); ++i) {
        std::printf("    p%d -> p%d [style=dashed, arrowhead=empty];\n", record.getId(),
                    record.getExtendsProfile(i));
    }
}

void printGraph(const std::vector<PRPDBRec>& records) {
    std::printf(
        "digraph profiles {\n"
        "    rankdir=LR; ranksep=1.0; nodesep=0.1; fontname=\"Helvetica\";\n"
        "    node [shape=box, style=\"filled,rounded\", fontname=\"Helvetica\", fontsize=11,"
        " height=0.3];\n"
        "    edge [color=\"#555555\"];\n");
    printLegend();
    for (const auto& record : records) printProfile(record);
    for (const auto& record : records) printRelations(record);
    std::printf("}\n");
}

std::vector<PRPDBRec> catalogue() {
    Logger log("profile-graph", std::make_shared<StandardErrorSink>(), LogLevel::warning);
    PYL::ProfileDB profiles(log);
    profiles.initialize();
    std::vector<PRPDBRec> records(profiles.getNumRecords());
    for (unsigned int i = 0; i < records.size(); ++i) profiles.getRecord(i, records[i]);
    return records;
}

}  // namespace

int main(int argc, char**) {
    if (argc > 1) {
        std::fputs("usage: profile-graph\n", stderr);
        return 2;
    }
    try {
        printGraph(catalogue());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "profile-graph: %s\n", error.what());
        return 1;
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
