#include "request/names.h"

#include "request/backend.h"

#include "orb/lvm.h"

#include <algorithm>
#include <exception>

namespace kelpctl {
namespace {

using orb::lvm::hubName;

std::string quotedIfBlank(const std::string& text)
{
    return text.find(' ') == std::string::npos ? text : '"' + text + '"';
}

// The command's name and the flags that decide what it works on.
std::string invocationOf(const Request& request)
{
    std::string text = "kelpctl";
    if (request.backend) {
        text += std::string(" ") + wordsOf(*request.backend).flag;
    }
    if (request.root) {
        text += " --root " + quotedIfBlank(*request.root);
    }
    if (request.release) {
        text += " --release " + quotedIfBlank(*request.release);
    }
    if (request.language) {
        text += " --language " + *request.language;
    }
    return text;
}

// The name may be asked for before anything else has worked.
std::string defaultImage()
{
    try {
        return orb::lvm::addKVRelease(hubName);
    } catch (const std::exception&) {
        return hubName;
    }
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLower(char c)
{
    return c >= 'a' && c <= 'z';
}

bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

} // namespace

Names namesOf(const Request& request)
{
    Names names;
    names.invocation = invocationOf(request);
    names.image = !request.name.empty() ? request.name : !request.image.empty() ? request.image : defaultImage();
    names.container = request.container.empty() ? hubName : request.container;
    return names;
}

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

bool isWslName(const std::string& name)
{
    constexpr std::size_t longest = 256;
    const auto isAllowed = [](char c) {
        return isLower(c) || isUpper(c) || isDigit(c) || c == '.' || c == '_' || c == '-';
    };
    return !name.empty() && name.size() <= longest && lowered(name) != "legacy" &&
           std::all_of(name.begin(), name.end(), isAllowed);
}

// Groups of letters and digits, with one ".", one or two "_", or any number of "-" in between.
bool isDockerName(const std::string& name)
{
    const auto isWord = [](char c) { return isLower(c) || isDigit(c); };
    auto position = name.begin();
    while (position != name.end()) {
        const auto separator = std::find_if_not(position, name.end(), isWord);
        if (separator == position) {
            return false;
        }
        if (separator == name.end()) {
            return true;
        }
        position = std::find_if(separator, name.end(), isWord);
        const std::string between(separator, position);
        if (between != "." && between != "_" && between != "__" &&
            between.find_first_not_of('-') != std::string::npos) {
            return false;
        }
    }
    return false;
}

} // namespace kelpctl
