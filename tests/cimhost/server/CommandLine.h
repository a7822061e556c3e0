#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace cimhost {

/// Options of any kind as a command line gives them. Parsing throws CLI::ParseError.
template <typename Options>
struct CommandLine {
    CLI::App application;
    Options options;

    CommandLine() { options.addTo(application); }

    Options& parse(std::vector<std::string> words) {
        application.parse(std::vector<std::string>(words.rbegin(), words.rend()));
        return options;
    }
};

}  // namespace cimhost
