#include "session.h"

#include "commands/program.h"

#include <boost/json/parse.hpp>

#include <sstream>

namespace {

std::string joined(const std::vector<std::string>& words)
{
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + word;
    }
    return line;
}

} // namespace

int Session::run(const std::vector<std::string>& arguments)
{
    std::ostringstream outStream;
    std::ostringstream errorStream;
    const auto answer = [this](const std::vector<std::string>& program, const auto& /*environment*/,
                               const auto& /*folder*/) {
        asked.push_back(joined(program));
        const auto known = late[asked.back()]-- > 0 ? answers.end() : answers.find(asked.back());
        return kelpctl::runOf(program,
                              known == answers.end() ? orb::process::detail::RunResult{127, {}, {}} : known->second);
    };
    const auto start = [this](const auto& started, const auto& environment) {
        startedArguments = started;
        startedEnvironment = environment;
        return programStatus;
    };
    kelpctl::Console console{outStream, errorStream, errorIsTerminal, interactive, false, errorColours};
    const int status = kelpctl::run(arguments, console, {answer, start});
    out = outStream.str();
    error = errorStream.str();
    return status;
}

boost::json::value Session::json() const
{
    return boost::json::parse(out);
}
