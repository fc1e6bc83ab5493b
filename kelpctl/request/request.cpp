#include "request/request.h"

#include "terminal/text.h"

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
        text += std::string(" ") + traitsOf(*request.backend).flag;
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

constexpr char lettersAndDigits[] = "abcdefghijklmnopqrstuvwxyz0123456789";

} // namespace

std::vector<std::string> secretsOf(const Request& request)
{
    std::vector<std::string> secrets;
    for (const auto& [name, value] : request.environment) {
        secrets.push_back(value);
    }
    return secrets;
}

Names namesOf(const Request& request)
{
    Names names;
    names.invocation = invocationOf(request);
    names.setup = names.invocation + " setup" +
                  (request.location ? " --location " + quotedIfBlank(*request.location) : std::string());
    names.image = !request.name.empty() ? request.name : !request.image.empty() ? request.image : defaultImage();
    names.container = request.container.empty() ? hubName : request.container;
    return names;
}

bool isWslName(const std::string& name)
{
    constexpr std::size_t longest = 256;
    const std::string allowed = std::string(lettersAndDigits) + "._-";
    return !name.empty() && name.size() <= longest && lowered(name) != "legacy" &&
           lowered(name).find_first_not_of(allowed) == std::string::npos;
}

// Groups of letters and digits, with one ".", one or two "_", or any number of "-" in between.
bool isDockerName(const std::string& name)
{
    for (std::size_t start = 0; start < name.size();) {
        const std::size_t separator = name.find_first_not_of(lettersAndDigits, start);
        if (separator == std::string::npos) {
            return true;
        }
        const std::size_t next = name.find_first_of(lettersAndDigits, separator);
        const std::string between = name.substr(separator, next - separator);
        if (separator == start || (between != "." && between != "_" && between != "__" &&
                                   between.find_first_not_of('-') != std::string::npos)) {
            return false;
        }
        start = next;
    }
    return false;
}

} // namespace kelpctl
