#include "failure/advice.h"

#include "host/messages.h"

#include <algorithm>

namespace kelpctl {
namespace {

constexpr char catalogue[] = "kelpctl";

auto rowOf(std::string_view key)
{
    return std::find_if(allAdvice.begin(), allAdvice.end(), [key](const Advice& advice) { return key == advice.key; });
}

const Advice& find(std::string_view key)
{
    const auto found = rowOf(key);
    return found == allAdvice.end() ? *rowOf("UNEXPECTED_ERROR") : *found;
}

std::string localised(const std::string& key, const std::string& english, const Names& names)
{
    using namespace foundation::core::message;
    return localisedText({catalogue, key, {names.invocation, names.image, names.container, names.subject}}, english);
}

} // namespace

const Advice& adviceFor(AdviceKey key)
{
    return find(key.text());
}

AdviceKey adviceKey(std::string_view identifier)
{
    return AdviceKey(find(identifier));
}

std::string adviceText(const Advice& advice, const Names& names)
{
    return localised(advice.key, advice.text, names);
}

std::string adviceNextStep(const Advice& advice, const Names& names)
{
    return localised(std::string(advice.key) + ".next", advice.nextStep, names);
}

bool hasCatalogue(const std::string& language)
{
    return foundation::core::message::hasLanguage(catalogue, language);
}

} // namespace kelpctl
