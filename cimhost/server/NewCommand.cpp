#include "cimhost/server/Command.h"
#include "new_project_files.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

namespace cimhost {
namespace {

bool isCapital(char letter) { return letter >= 'A' && letter <= 'Z'; }
bool isSmall(char letter) { return letter >= 'a' && letter <= 'z'; }
bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// The names in a project, made of the one that it was given: "AcmeEthernet" has the class
/// ACME_Ethernet.
class ProjectName {
public:
    explicit ProjectName(const std::string& name) {
        for (const char letter : name) {
            if (isCapital(letter) || isSmall(letter) || isDigit(letter)) continue;
            _refuse(name, std::string("'") + letter + "' is neither a letter nor a digit");
        }
        const std::size_t second = _secondWord(name);
        if (name.empty() || !isCapital(name.front()) || second == name.size()) {
            _refuse(name, "it takes two words with capitals, the maker's and the thing's");
        }
        _vendor = name.substr(0, second);
        _thing = name.substr(second);
        for (const char letter : _vendor) {
            _prefix += isSmall(letter) ? static_cast<char>(letter - 'a' + 'A') : letter;
        }
        if (_prefix == "CIM" || _prefix == "PYL" || _prefix == "KT") {
            _refuse(name, "classes that begin with " + _prefix + "_ are others'");
        }
    }

    std::string className() const { return _prefix + "_" + _thing; }

    /// The text of the model project, with this one's names.
    std::string rename(std::string_view text) const {
        const std::pair<std::string_view, std::string_view> words[] = {
            {"Acme", _vendor}, {"ACME", _prefix}, {"Thing", _thing}};
        std::string renamed;
        while (!text.empty()) {
            std::string_view next = text.substr(0, 1);
            text.remove_prefix(1);
            for (const auto& [word, own] : words) {
                if (next.front() != word.front() || !text.starts_with(word.substr(1))) continue;
                text.remove_prefix(word.size() - 1);
                next = own;
                break;
            }
            renamed += next;
        }
        return renamed;
    }

private:
    [[noreturn]] static void _refuse(const std::string& name, const std::string& reason) {
        throw UsageError("'" + name + "' cannot name a project: " + reason +
                         ", as in AcmeEthernet");
    }

    /// Where a capital follows a small letter or a digit, or comes before a small letter.
    static std::size_t _secondWord(const std::string& name) {
        for (std::size_t place = 1; place < name.size(); ++place) {
            const bool isBeforeSmall = place + 1 < name.size() && isSmall(name[place + 1]);
            if (isCapital(name[place]) && (!isCapital(name[place - 1]) || isBeforeSmall)) {
                return place;
            }
        }
        return name.size();
    }

    std::string _vendor;
    std::string _thing;
    std::string _prefix;
};

void writeText(const std::filesystem::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    if (!stream.flush()) throw std::runtime_error("cannot write " + file.string());
}

/// What its README has people type.
void showCommands(const std::string& readMe) {
    std::istringstream lines(readMe);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("    ")) std::puts(line.c_str());
    }
}

int make(const std::string& given, std::filesystem::path folder) {
    const ProjectName name(given);
    if (folder.empty()) folder = given;
    if (folder.has_parent_path()) std::filesystem::create_directories(folder.parent_path());
    if (!std::filesystem::create_directory(folder)) {
        throw UsageError(folder.string() + " is there already; --folder names another place");
    }
    for (const auto& [file, text] : newProjectFiles) {
        writeText(folder / name.rename(file), name.rename(text));
    }
    std::printf("%s has a provider of %s. Next:\n    cd %s\n", folder.c_str(),
                name.className().c_str(), folder.c_str());
    showCommands(name.rename(newProjectReadMe));
    return 0;
}

}  // namespace

void addNewCommand(CLI::App& application, Command& chosen) {
    struct Options {
        std::string name;
        std::string folder;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* command = application.add_subcommand(
        "new", "Make a project: a provider of one class that builds, is tested, and is served");
    command
        ->add_option("name", options->name,
                     "The maker and the thing, such as AcmeEthernet, whose class is ACME_Ethernet")
        ->required();
    command->add_option("--folder", options->folder, "Where it goes, by default ./<name>")
        ->type_name("DIR");
    command->callback([options, &chosen] {
        chosen = [options] { return make(options->name, options->folder); };
    });
}

}  // namespace cimhost
