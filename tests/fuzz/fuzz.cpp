#include "fuzz.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <iconv.h>

namespace fuzz {

void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

std::vector<std::string> split(std::string_view text, char separator)
{
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (character == separator) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

std::vector<std::string> streamWords(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

bool isUtf8(std::string_view text)
{
    static const iconv_t converter = iconv_open("UTF-16LE", "UTF-8");
    std::string input(text);
    std::string output(4 * text.size() + 4, '\0');
    char* from = input.data();
    char* to = output.data();
    std::size_t left = input.size();
    std::size_t room = output.size();
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    return iconv(converter, &from, &left, &to, &room) == 0 && left == 0;
}

namespace {

Runner& runner()
{
    static Runner current;
    return current;
}

} // namespace

void setRunner(Runner given)
{
    runner() = std::move(given);
}

} // namespace fuzz

// In the place of the process service.
namespace orb::process::detail {

RunResult run(const std::vector<std::string>& arguments, const Environment& environment, const std::string&,
              bool detach, const RunOptions&)
{
    fuzz::require(environment.empty() && !detach, "the library runs its programs with the defaults");
    return fuzz::runner()(arguments);
}

// What kelpctl's commands are linked with; no target runs any.
RunObserver::~RunObserver() = default;

RunObserver* observeRuns(RunObserver*) noexcept
{
    return nullptr;
}

std::int32_t runAttached(const std::vector<std::string>&, const Environment&, const std::string&)
{
    fuzz::require(false, "no program is run on the user's streams");
    return 0;
}

} // namespace orb::process::detail
