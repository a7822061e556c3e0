#include "cimhost/server/ProjectFile.h"

#include "cimhost/server/Command.h"
#include "cimhost/server/Installation.h"
#include "cimhost/server/SchemaOptions.h"

#include <CLI/CLI.hpp>
#include <toml++/toml.h>

#include <string>
#include <vector>

namespace cimhost {
namespace {

using std::filesystem::path;

/// A project file while it is taken over into the options of a command.
class ProjectReader {
public:
    ProjectReader(CLI::App& command, SchemaOptions& schema, path file)
        : _command(command), _schema(schema), _file(std::move(file)) {}

    void read() {
        for (const auto& [key, node] : _parse()) {
            if (key == "schema") {
                _readSchema(node);
            } else {
                _readOption(std::string(key.str()), node);
            }
        }
    }

private:
    toml::table _parse() const try {
        return toml::parse_file(_file.string());
    } catch (const toml::parse_error& error) {
        _refuse(error.source(), std::string(error.description()));
    }

    [[noreturn]] void _refuse(const toml::source_region& place, const std::string& reason) const {
        const auto line = place.begin.line;
        throw UsageError(_file.string() + (line != 0 ? ":" + std::to_string(line) : "") + ": " +
                         reason);
    }

    std::string _resolve(const std::string& name) const {
        return (_file.parent_path() / name).lexically_normal().string();
    }

    /// What the project has not is the installation's.
    std::string _resolveSchema(const std::string& name) const {
        std::string own = _resolve(name);
        const path installed = installedData() / "mof" / name;
        const bool isInstalled =
            !std::filesystem::exists(own) && std::filesystem::exists(installed);
        return isInstalled ? installed.string() : own;
    }

    void _readSchema(const toml::node& node) {
        const toml::table* const nameSpaces = node.as_table();
        if (!nameSpaces) _refuse(node.source(), "schema is a table of namespaces");
        std::vector<SchemaFile> files;
        for (const auto& [name, list] : *nameSpaces) {
            const std::string nameSpace(name.str());
            for (const std::string& file : _words("schema." + nameSpace, list)) {
                files.push_back({_resolveSchema(file), nameSpace});
            }
        }
        _schema.setFiles(std::move(files));
    }

    void _readOption(const std::string& key, const toml::node& node) {
        CLI::Option* const option = _command.get_option_no_throw("--" + key);
        if (!option && _isOfAnotherCommand(key)) return;
        if (!option || !option->get_configurable()) {
            _refuse(node.source(), "unknown key '" + key +
                                       "': keys are the options of 'cimhost serve --help' without "
                                       "the dashes, and the table 'schema'");
        }
        std::vector<std::string> words = _words(key, node);
        const bool isList = option->get_expected_max() > 1;
        if (option->count() != 0 && !isList) return;
        const bool isFlag = option->get_expected_max() == 0;
        if (isFlag && !node.is_boolean()) _refuse(node.source(), key + " is true or false");
        if (isFlag && words == std::vector<std::string>{"false"}) return;
        const std::string kind = option->get_type_name();
        for (std::string& word : words) {
            if ((kind == "FILE" || kind == "DIR") && word != "-") word = _resolve(word);
        }
        _give(*option, node, std::move(words));
    }

    void _give(CLI::Option& option, const toml::node& node, std::vector<std::string> words) const {
        if (words.empty()) return;
        try {
            option.add_result(std::move(words));
            option.run_callback();
        } catch (const CLI::ParseError& error) {
            _refuse(node.source(), error.what());
        }
    }

    bool _isOfAnotherCommand(const std::string& key) const {
        const CLI::App* const parent = _command.get_parent();
        if (!parent) return false;
        for (const CLI::App* const other :
             parent->get_subcommands([](const auto*) { return true; })) {
            if (other->get_option_no_throw("--" + key)) return true;
        }
        return false;
    }

    std::vector<std::string> _words(const std::string& key, const toml::node& node) const {
        std::vector<std::string> words;
        if (const toml::array* const list = node.as_array()) {
            for (const toml::node& each : *list) words.push_back(_word(key, each));
        } else {
            words.push_back(_word(key, node));
        }
        return words;
    }

    std::string _word(const std::string& key, const toml::node& node) const {
        if (const auto text = node.value_exact<std::string>()) return *text;
        if (const auto flag = node.value_exact<bool>()) return *flag ? "true" : "false";
        if (const auto number = node.value_exact<std::int64_t>()) return std::to_string(*number);
        if (const auto number = node.value_exact<double>()) return std::to_string(*number);
        _refuse(node.source(), key + " is a text, a number, true or false, or a list of these");
    }

    CLI::App& _command;
    SchemaOptions& _schema;
    path _file;
};

}  // namespace

void addProjectOption(CLI::App& command, SchemaOptions& schema, path& file) {
    // The callbacks of options run in the order in which these were added: this one finds the
    // others parsed, and not yet used.
    command
        .add_option_function<std::string>(
            "--project",
            [&command, &schema, &file](const std::string& name) {
                file = name;
                ProjectReader(command, schema, name).read();
            },
            "Take schema, registrations and options from this file, cimhost.toml(5); what the "
            "command line has wins")
        ->type_name("FILE")
        ->configurable(false)
        ->group("Schema");
}

}  // namespace cimhost
