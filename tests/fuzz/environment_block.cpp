// The environment of a Windows program: any variables come back from their block, and any block can be read.
#include "fuzz.h"

#include "../../host/process/windows/environment_block.h"

#include "arguments.h"

#include <algorithm>
#include <stdexcept>

namespace orb::process::detail {

// In the place of the system's comparison.
bool BeforeWithoutCase::operator()(const std::wstring& left, const std::wstring& right) const noexcept
{
    const auto upper = [](wchar_t letter) { return letter >= L'a' && letter <= L'z' ? letter - L'a' + L'A' : letter; };
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [upper](wchar_t a, wchar_t b) { return upper(a) < upper(b); });
}

} // namespace orb::process::detail

namespace {

using namespace orb::process::detail;

std::wstring wide(std::string_view text)
{
    return {text.begin(), text.end()};
}

// Whether a caller may pass such a variable to the process service.
bool isAccepted(const std::string& name, const std::string& value)
{
    try {
        checkArguments({"program"}, {{name, value}}, {});
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = fuzz::textOf(data, size);
    Variables variables;
    const std::vector<std::string> fields = fuzz::split(text, '\n');
    for (std::size_t i = 0; i + 1 < fields.size(); i += 2) {
        if (isAccepted(fields[i], fields[i + 1])) {
            variables.insert_or_assign(wide(fields[i]), wide(fields[i + 1]));
        }
    }
    const std::wstring block = environmentBlock(variables);
    fuzz::require(block.ends_with(L'\0') && (variables.empty() || block.ends_with(std::wstring(2, L'\0'))),
                  "a block ends in zeros");
    fuzz::require(variablesIn(block.c_str()) == variables, "variables come back");

    // Any block: two zeros end it.
    const std::wstring any = wide(text) + std::wstring(2, L'\0');
    const Variables read = variablesIn(any.c_str());
    fuzz::require(variablesIn(environmentBlock(read).c_str()) == read, "what was read comes back");
    return 0;
}
