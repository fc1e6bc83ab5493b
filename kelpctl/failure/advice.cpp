#include "failure/advice.h"

#include "host/messages.h"

#include <algorithm>

namespace kelpctl {
namespace {

constexpr char catalogue[] = "kelpctl";

const Advice* find(std::string_view key)
{
    const auto found =
        std::find_if(allAdvice.begin(), allAdvice.end(), [key](const Advice& advice) { return key == advice.key; });
    return found == allAdvice.end() ? nullptr : &*found;
}

std::string localised(const std::string& key, const std::string& english, const Names& names)
{
    using namespace foundation::core::message;
    return localisedText({catalogue, key, {names.invocation, names.image, names.container, names.subject}}, english);
}

} // namespace

const Advice& adviceFor(AdviceKey key)
{
    const Advice* found = find(key.text());
    return found == nullptr ? *find("UNEXPECTED_ERROR") : *found;
}

AdviceKey adviceKey(std::string_view identifier)
{
    const Advice* found = find(identifier);
    return found == nullptr ? AdviceKey("UNEXPECTED_ERROR") : AdviceKey(*found);
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
