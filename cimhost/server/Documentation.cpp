#include "cimhost/server/Documentation.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <sstream>
#include <string_view>
#include <vector>

namespace cimhost {
namespace {

/// Text that troff takes for nothing else.
std::string plain(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (result.empty() && (character == '.' || character == '\'')) result += "\\&";
        if (character == '\\') {
            result += "\\e";
        } else if (character == '-') {
            result += "\\-";
        } else {
            result += character;
        }
    }
    return result;
}

/// The same in lines of the length that readers of pages like.
std::string filled(const std::string& text) {
    constexpr std::size_t width = 78;
    std::string result;
    std::string line;
    std::istringstream stream(text);
    for (std::string word; stream >> word;) {
        const std::string next = plain(word);
        if (!line.empty() && line.size() + 1 + next.size() > width) {
            result += line + "\n";
            line.clear();
        }
        line += (line.empty() ? "" : " ") + next;
    }
    return result + line + "\n";
}

std::string upper(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char character) {
        return static_cast<char>(std::toupper(character));
    });
    return text;
}

std::string nameOf(const CLI::App& application) {
    const CLI::App* const parent = application.get_parent();
    return parent ? parent->get_name() + "-" + application.get_name() : application.get_name();
}

std::vector<const CLI::App*> commandsOf(const CLI::App& application) {
    std::vector<const CLI::App*> shown;
    for (const CLI::App* const each :
         application.get_subcommands([](const CLI::App*) { return true; })) {
        if (!each->get_group().empty()) shown.push_back(each);
    }
    return shown;
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& application) {
    return application.get_options(
        [](const CLI::Option* option) { return !option->get_group().empty(); });
}

bool isFlag(const CLI::Option& option) { return option.get_expected_max() == 0; }

/// NUMBER of "NUMBER:INT in [0 - 65535]".
std::string typeOf(const CLI::Option& option) {
    const std::string text = option.get_type_name();
    return text.substr(0, text.find(':'));
}

/// What stands behind that.
std::string rangeOf(const CLI::Option& option) {
    const std::string text = option.get_type_name();
    const std::size_t colon = text.find(':');
    return colon == std::string::npos ? "" : text.substr(colon + 1);
}

/// The words of "warn, refuse or pass"; none for another kind of range.
std::vector<std::string> choicesOf(const CLI::Option& option) {
    std::string range = rangeOf(option);
    const std::size_t last = range.find(" or ");
    if (last == std::string::npos) return {};
    range.replace(last, 4, ", ");
    std::vector<std::string> words;
    std::istringstream stream(range);
    for (std::string word; std::getline(stream, word, ',');) {
        words.push_back(CLI::detail::trim(word));
    }
    return words;
}

std::string sentenceOf(const CLI::Option& option) {
    std::string text = option.get_description() + ".";
    const std::string range = rangeOf(option);
    if (!range.empty()) text += " One of: " + range + ".";
    if (!option.get_default_str().empty()) text += " Default: " + option.get_default_str() + ".";
    return text;
}

std::string headOf(const std::string& name, int section, const std::string& date) {
    return ".TH " + upper(plain(name)) + " " + std::to_string(section) + " " + date +
           " cimhost \"Development object manager\"\n";
}

void addOption(std::string& page, const CLI::Option& option) {
    page += ".TP\n\\fB" + plain(option.get_name(option.get_positional(), true)) + "\\fR";
    const bool hasValue = !isFlag(option) && !option.get_positional();
    if (hasValue) page += " \\fI" + plain(typeOf(option)) + "\\fR";
    page += "\n" + filled(sentenceOf(option));
}

/// The options by group, in the order of the help.
template <typename Add>
void addGroups(std::string& page, const CLI::App& application, const Add& add) {
    std::vector<std::string> groups;
    for (const CLI::Option* const option : optionsOf(application)) {
        if (std::ranges::find(groups, option->get_group()) == groups.end()) {
            groups.push_back(option->get_group());
        }
    }
    for (const std::string& group : groups) {
        if (groups.size() > 1) page += ".SS " + plain(group) + "\n";
        for (const CLI::Option* const option : optionsOf(application)) {
            if (option->get_group() == group) add(*option);
        }
    }
}

/// Text whose indented lines are examples.
void addText(std::string& page, const std::string& text) {
    std::istringstream stream(text);
    bool isExample = false;
    for (std::string line; std::getline(stream, line);) {
        const bool isIndented = line.starts_with("  ");
        if (isIndented != isExample) page += isIndented ? ".PP\n.EX\n" : ".EE\n";
        isExample = isIndented;
        page += line.empty() ? ".PP\n" : isExample ? plain(line) + "\n" : filled(line);
    }
    if (isExample) page += ".EE\n";
}

void addSeeAlso(std::string& page, const CLI::App& application) {
    const CLI::App* const parent = application.get_parent();
    const CLI::App& program = parent ? *parent : application;
    std::vector<std::string> pages;
    if (parent) pages.push_back(program.get_name() + " 1");
    for (const CLI::App* const each : commandsOf(program)) {
        if (each != &application) pages.push_back(nameOf(*each) + " 1");
    }
    pages.push_back("cimhost.toml 5");
    pages.push_back("pylcommon 7");
    page += ".SH SEE ALSO\n";
    for (const std::string& each : pages) {
        const std::size_t blank = each.find(' ');
        page += ".BR " + plain(each.substr(0, blank)) + " (" + each.substr(blank + 1) + ")" +
                (&each == &pages.back() ? "\n" : " ,\n");
    }
}

}  // namespace

std::string manualPage(const CLI::App& application, const std::string& date) {
    const std::string name = nameOf(application);
    const CLI::App* const parent = application.get_parent();
    std::string page = headOf(name, 1, date);
    page += ".SH NAME\n" + filled(name + " - " + application.get_description());
    page += ".SH SYNOPSIS\n.B " +
            plain(parent ? parent->get_name() + " " + application.get_name() : name) + "\n";
    page += parent ? "[\\fIOPTION\\fR]...\n" : "\\fICOMMAND\\fR [\\fIOPTION\\fR]...\n";
    for (const CLI::Option* const option : optionsOf(application)) {
        if (option->get_positional()) page += "\\fI" + plain(option->get_name(true)) + "\\fR\n";
    }
    if (!parent) {
        page += ".SH COMMANDS\n";
        for (const CLI::App* const each : commandsOf(application)) {
            page += ".TP\n\\fB" + plain(each->get_name()) + "\\fR\n" +
                    filled(each->get_description() + ".");
        }
    }
    page += ".SH OPTIONS\n";
    addGroups(page, application, [&page](const CLI::Option& option) { addOption(page, option); });
    if (!application.get_footer().empty()) {
        page += ".SH NOTES\n";
        addText(page, application.get_footer());
    }
    addSeeAlso(page, application);
    return page;
}

std::string projectFilePage(const CLI::App& serve, const std::string& date) {
    std::string page = headOf("cimhost.toml", 5, date);
    page +=
        ".SH NAME\ncimhost.toml \\- what cimhost serves and how\n"
        ".SH SYNOPSIS\n.B cimhost serve \\-\\-project cimhost.toml\n"
        ".SH DESCRIPTION\n"
        "A project file is TOML. Its keys are the options of\n"
        ".BR cimhost\\-serve (1)\n"
        "without the dashes, and the table\n.BR schema ,\n"
        "which has the MOF files of each namespace in the order in which they are\n"
        "read. Paths are seen from the folder of the file. What the command line has\n"
        "wins; lists get both.\n"
        ".SH EXAMPLE\n.EX\n"
        "registration = \"acme.registration\"\n"
        "provider\\-dir = [\"build\"]\n"
        "port = 5988\n\n"
        "[schema]\n"
        "\"root/acme\" = [\"base/base.mof\", \"ACME_Port.mof\"]\n"
        ".EE\n.SH KEYS\n";
    addGroups(page, serve, [&page](const CLI::Option& option) {
        if (!option.get_configurable() || option.get_positional()) return;
        if (option.check_name("--namespace") || option.check_name("--schema")) return;
        page += ".TP\n\\fB" + plain(option.get_single_name()) + "\\fR = \\fI" +
                plain(isFlag(option) ? "true" : typeOf(option)) + "\\fR\n" +
                filled(sentenceOf(option));
    });
    page += ".SH SEE ALSO\n.BR cimhost\\-serve (1)\n";
    return page;
}

std::string bashCompletion(const CLI::App& application) {
    std::ostringstream script;
    const std::string& program = application.get_name();
    script << "# Completion of " << program << " for bash.\n_" << program
           << "() {\n    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
           << "    local options values= kind=\n    case ${COMP_WORDS[1]} in\n";
    std::string names;
    for (const CLI::App* const command : commandsOf(application)) {
        names += command->get_name() + " ";
        script << "        " << command->get_name() << ")\n            options=\"";
        for (const CLI::Option* const option : optionsOf(*command)) {
            if (!option->get_positional()) script << "--" << option->get_single_name() << " ";
        }
        script << "\"\n            case $before in\n";
        for (const CLI::Option* const option : optionsOf(*command)) {
            if (option->get_positional() || isFlag(*option)) continue;
            const std::string type = typeOf(*option);
            script << "                --" << option->get_single_name() << ") ";
            std::string words;
            for (const std::string& word : choicesOf(*option)) words += word + " ";
            if (type == "FILE" || type == "DIR") {
                script << "kind=" << (type == "FILE" ? "-f" : "-d");
            } else {
                script << "kind=-W values=\"" << words << "\"";
            }
            script << " ;;\n";
        }
        script << "            esac ;;\n";
    }
    script << "        *) options=\"" << names << "--help --version\" ;;\n    esac\n"
           << "    case $kind in\n"
           << "        -W) mapfile -t COMPREPLY < <(compgen -W \"$values\" -- \"$word\") ;;\n"
           << "        -?) compopt -o filenames; mapfile -t COMPREPLY < <(compgen \"$kind\" -- "
              "\"$word\") ;;\n"
           << "        *) mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$word\") ;;\n"
           << "    esac\n}\ncomplete -o default -F _" << program << " " << program << "\n";
    return script.str();
}

}  // namespace cimhost
