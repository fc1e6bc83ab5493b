#include "check.h"

#include "programs.h"

#include <boost/json/serialize.hpp>

#include <exception>

namespace verify {

namespace json = boost::json;

namespace {

// A step without an expectation is a preparation, which must succeed.
const json::object& expectationOf(const json::object& step)
{
    static const json::object success = {{"status", 0}};
    const json::value* const expect = step.if_contains("expect");
    return expect == nullptr ? success : expect->as_object();
}

// Does one step; whether the next one has a meaning.
bool perform(const json::object& step, Steps& steps, const Names& names, Result& result)
{
    result.steps.push_back(steps.perform(step));
    const Step& done = result.steps.back();
    if (!done.answer.unable.empty()) {
        result.verdict = Verdict::notApplicable;
        result.why = done.answer.unable;
        return false;
    }
    const auto difference = compare(done.answer, expectationOf(step), done.encoding, names);
    if (!difference) {
        return true;
    }
    result.expected = difference->expected;
    result.got = difference->got;
    const bool isClaim = step.contains("expect");
    result.verdict = isClaim ? Verdict::differs : Verdict::notChecked;
    result.why = isClaim ? "" : "the preparation has failed: " + done.what;
    return false;
}

void judgeKnownDifference(const Fact& fact, Result& result)
{
    if (result.verdict == Verdict::differs) {
        result.verdict = Verdict::knownDifference;
        result.why = fact.differsUnderWine;
    } else if (result.verdict == Verdict::asClaimed) {
        result.verdict = Verdict::differs;
        result.expected = "a known difference: " + fact.differsUnderWine;
        result.got = "as claimed";
    }
}

void giveUpOn(Result& result, const std::exception& error)
{
    result.verdict = Verdict::notChecked;
    result.why = error.what();
}

} // namespace

Result check(const Fact& fact, Steps& steps, const Names& names, bool underWine)
{
    Result result;
    result.fact = &fact;
    try {
        bool goesOn = true;
        for (auto step = fact.steps.begin(); goesOn && step != fact.steps.end(); ++step) {
            goesOn = perform(step->as_object(), steps, names, result);
        }
        if (goesOn) {
            result.verdict = Verdict::asClaimed;
        }
    } catch (const std::exception& error) {
        giveUpOn(result, error);
    }
    try {
        for (const json::value& step : fact.finally) {
            steps.perform(step.as_object());
        }
    } catch (const std::exception& error) {
        giveUpOn(result, error);
    }
    if (interrupted()) {
        result.verdict = Verdict::notChecked;
        result.why = "interrupted";
    } else if (underWine && !fact.differsUnderWine.empty()) {
        judgeKnownDifference(fact, result);
    }
    return result;
}

} // namespace verify
