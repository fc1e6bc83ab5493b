#pragma once

#include "asking/run.h"

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

// Programs that answer by their command line; any other fails.
class FakePrograms {
public:
    std::map<std::string, orb::process::detail::RunResult> answers;
    std::map<std::string, std::string> environment;
    kelpctl::Programs programs{[this](const auto& arguments, const auto& given, const auto& /*folder*/) {
                                   environment = given;
                                   return answer(arguments);
                               },
                               {}};

private:
    kelpctl::Run answer(const std::vector<std::string>& arguments)
    {
        std::string line;
        for (const std::string& argument : arguments) {
            line += (line.empty() ? "" : " ") + argument;
        }
        if (line.starts_with("broken")) {
            throw std::runtime_error("cannot start");
        }
        const auto known = answers.find(line);
        return kelpctl::runOf(arguments,
                              known == answers.end() ? orb::process::detail::RunResult{1, {}, "no"} : known->second);
    }
};
