// A check of the doctor's is one row: what it finds out, what that means for `setup`, and what people and programs are
// told. The rows stand in the files that have their code; doctor.cpp goes through all of them.
#pragma once

#include "doctor/examination.h"
#include "failure/finding.h"
#include "request/request.h"
#include "terminal/table.h"

#include <boost/json/value.hpp>

#include <algorithm>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

// Whether the distribution or the image is there.
enum class Presence { unknown, missing, stopped, exists };

// What the checks have found so far.
struct Findings {
    Presence presence = Presence::unknown;
    const char* about = "environment";
    std::vector<Finding> all = {};

    void add(Severity severity, AdviceKey key, const std::string& subject = {});
    // What was found elsewhere: a problem there is one here where it is one for sure.
    void add(const std::vector<Finding>& others);
    void problem(AdviceKey key, const std::string& subject = {}) { add(Severity::problem, key, subject); }
    void note(AdviceKey key, const std::string& subject = {}) { add(Severity::note, key, subject); }

    bool needsCreation() const { return presence == Presence::unknown || presence == Presence::missing; }
    // How bad it is when something is not there that creating the environment needs. That is no problem for sure
    // while the environment may be there.
    Severity needed() const { return presence == Presence::unknown ? Severity::note : Severity::problem; }
};

// Takes what one check has to say: rows of the table, and members for programs. The row that is judged bears the worst
// mark of the check's findings.
class CheckOutput {
public:
    CheckOutput(TableLines& table, boost::json::object& object, Mark worst, bool counts, std::chrono::seconds timeLimit)
        : table_(table), object_(object), worst_(worst), counts_(counts), timeLimit_(timeLimit)
    {
    }

    // docs/use/kelpctl.schema.json describes the members.
    boost::json::value& member(const char* name) { return object_[name]; }
    boost::json::value& member(const char* name, const char* part) { return object_[name].as_object()[part]; }

    void row(const std::string& label, const std::string& value) { table_.row(Mark::none, label, value); }
    void more(const std::string& value) { table_.more(value); }
    // What is right is marked only where it counts: for the chosen backend, and where `known`.
    void judged(const std::string& label, const std::string& value, bool known = true);
    // The first lines of what a program printed.
    void said(const std::string& text);
    void said(const Run& run) { said(run.output + "\n" + run.error); }
    // The first ten of those that are not the expected one.
    template <class Thing>
    void others(const std::string& label, const std::vector<Thing>& things, const Thing* expected,
                std::string (*textOf)(const Thing& thing))
    {
        std::vector<std::string> texts;
        for (const Thing& thing : things) {
            if (&thing != expected) {
                texts.push_back(textOf(thing));
            }
        }
        list(label, texts);
    }
    void candidates(const Run& lookUp, const std::vector<Candidate>& candidates);
    // "it failed with status 1 (0x00000001)".
    std::string endingText(const Run& run) const;

private:
    void list(const std::string& label, const std::vector<std::string>& texts);

    TableLines& table_;
    boost::json::object& object_;
    Mark worst_;
    bool counts_;
    std::chrono::seconds timeLimit_;
};

// What a row does not name does nothing.
struct Check {
    // What its findings are about, for programs.
    const char* about;
    // Finds the facts out, by looking and asking. Throws nothing, and changes nothing.
    void (*examine)(const Context& context, Examination& found) = [](const Context&, Examination&) {};
    // Pure: facts in, findings out. Only what concerns the chosen backend is judged.
    void (*judge)(const Examination& found, Findings& findings) = [](const Examination&, Findings&) {};
    // Each fact as a row, and as a member.
    void (*describe)(const Examination& found, CheckOutput& out) = [](const Examination&, CheckOutput&) {};
};

// Does something that may fail, and gives back why it did; empty when it did not.
std::string reasonOf(const std::function<void()>& step);

// Empty for text that is not well-formed.
std::string utf8OrEmpty(const std::u16string& text);

// What became of a candidate: "taken: it answers \"-v\"".
std::string candidateText(const Candidate& candidate, std::chrono::seconds timeLimit);

boost::json::object runObject(const Run& run);
boost::json::array candidateList(const std::vector<Candidate>& candidates);

// The first that is meant, null when there is none.
template <class Thing, class IsMeant>
const Thing* findIn(const std::vector<Thing>& things, const IsMeant& isMeant)
{
    const auto found = std::find_if(things.begin(), things.end(), isMeant);
    return found == things.end() ? nullptr : &*found;
}

// Null while it is not known what there is.
template <class Things, class ToObject>
boost::json::value listOf(bool known, const Things& things, const ToObject& toObject)
{
    if (!known) {
        return nullptr;
    }
    boost::json::array list;
    for (const auto& thing : things) {
        list.push_back(toObject(thing));
    }
    return list;
}

} // namespace kelpctl
