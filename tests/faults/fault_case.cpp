// One case of the fault matrix, in a process of its own.
//
//   fault_case --list                        all scenarios, their child runs and the faults
//   fault_case FOLDER SCENARIO FAULT CALL    the scenario with one fault, and again without, on a new machine in FOLDER
//   fault_case FOLDER SCENARIO --again       the scenario by a new process, on the machine that is there
//
// Prints "outcome: ..." and ends with 0 when everything that can be seen is as the model says and nothing is left over;
// otherwise prints what differs.
#include "case_system.h"
#include "model.h"
#include "operations.h"
#include "player_system.h"
#include "setting.h"

#include "host/process.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <functional>
#include <iostream>
#include <thread>

namespace {

using namespace faults;
using Clock = std::chrono::steady_clock;

// What a provisioning is to make.
std::string wantedName(const Scenario& scenario)
{
    return scenario.operation.ends_with("-named") ? otherName : "kelp_hub_R2026b";
}

// One case: the machine, and the process that uses the library on it.
class Case {
public:
    Case(const std::filesystem::path& folder, const Scenario& scenario)
        : setting_(folder, scenario), stage_(setting_.stage()), scenario_(scenario)
    {
        adoptOrphans();
    }

    // A new machine, as the scenario wants it.
    void build(const std::filesystem::path& player) const { setting_.build(player); }

    // What happens without any fault, on the model alone.
    static Outcome undisturbed(const Scenario& scenario, const Places& places)
    {
        return Model(scenario, places, scenario.before).perform({});
    }

    // Both calls of a case: with the fault, and without.
    bool runWithFault(Fault fault, int call);

    // By a process that starts anew.
    bool runAgain();

private:
    void warmUp();
    Outcome performOn(const Plan& plan);
    void checkLeftOvers(const std::string& what);
    void compare(const Outcome& expected, const Outcome& actual, const std::string& what);
    void complain(const std::string& text)
    {
        std::cout << text << '\n';
        good_ = false;
    }
    // The new folder of an import has a name that nobody can tell beforehand.
    std::string withoutFolderName(std::string text) const;
    void checkTemporaryDirectory(std::size_t imports, const std::string& what);

    Setting setting_;
    const Stage& stage_;
    const Scenario& scenario_;
    bool good_ = true;
    Clock::duration lasted_{};
    std::size_t imports_ = 0;
};

std::string Case::withoutFolderName(std::string text) const
{
    std::filesystem::path folder = stage_.temporary() / "";
    const std::string start = utf8(folder.make_preferred());
    constexpr std::size_t digits = 32;
    for (std::size_t position = text.find(start); position != std::string::npos;
         position = text.find(start, position)) {
        text.replace(position, start.size() + digits, "{new folder}");
    }
    return text;
}

std::string shortened(const std::string& text)
{
    constexpr std::size_t enough = 300;
    return text.size() <= enough ? text : text.substr(0, enough) + "... (" + std::to_string(text.size()) + " bytes)";
}

template <class List, class Show>
std::string show(const List& list, const Show& one)
{
    std::string text;
    for (const auto& element : list) {
        text += "\n    " + one(element);
    }
    return text;
}

std::string showCall(const std::vector<std::string>& call)
{
    std::string text;
    for (const std::string& argument : call) {
        text += "[" + shortened(argument) + "] ";
    }
    return text;
}

std::string showLine(const LogLine& line)
{
    return line.channel + " " + std::to_string(line.severity) + " " + shortened(line.text);
}

void Case::compare(const Outcome& expected, const Outcome& actual, const std::string& what)
{
    const auto differ = [&](const std::string& part, const std::string& wanted, const std::string& got) {
        complain(what + ": " + part + "\n  expected: " + wanted + "\n  actual:   " + got);
    };
    if (expected.result != actual.result) {
        differ("result", expected.result, actual.result);
    }
    if (expected.arguments != actual.arguments) {
        differ("arguments of the error", showCall(expected.arguments), showCall(actual.arguments));
    }
    if (expected.log != actual.log) {
        differ("log", show(expected.log, showLine), show(actual.log, showLine));
    }
    if (expected.calls != actual.calls) {
        differ("child runs", show(expected.calls, showCall), show(actual.calls, showCall));
    }
    if (expected.printed != actual.printed) {
        differ("standard output", expected.printed, actual.printed);
    }
}

Outcome Case::performOn(const Plan& plan)
{
    stage_.rewind({plan.fault, plan.call, plan.program});
    stage_.setHost(ownProcess());
    Outcome outcome;
    std::atomic<bool> done = false;
    const auto start = Clock::now();
    std::thread caller([&] {
        outcome = performReally(scenario_.operation, setting_.places().givenArchive);
        done = true;
    });
    if (plan.fault == Fault::hangs) {
        while (!std::filesystem::exists(stage_.hanging()) && !done) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        if (done) {
            complain("the call did not wait for a program that hangs");
        }
        std::ofstream(stage_.released()) << "";
    }
    caller.join();
    lasted_ = Clock::now() - start;
    outcome.calls = stage_.calls();
    for (auto& call : outcome.calls) {
        for (std::string& argument : call) {
            argument = withoutFolderName(argument);
        }
    }
    for (LogLine& line : outcome.log) {
        line.text = withoutFolderName(line.text);
    }
    return outcome;
}

void Case::checkTemporaryDirectory(std::size_t imports, const std::string& what)
{
    const std::filesystem::directory_iterator listing(stage_.temporary());
    std::size_t found = 0;
    for (const auto& entry : listing) {
        ++found;
        if (!entry.is_directory() || !std::filesystem::is_empty(entry.path())) {
            complain(what + ": left in the temporary directory: " + entry.path().string());
        }
    }
    if (found != imports) {
        complain(what + ": " + std::to_string(found) + " folders in the temporary directory, one for each of " +
                 std::to_string(imports) + " imports are right");
    }
}

// Systems forget processes and threads that have ended, and what they held, a moment later, which is long on a busy
// machine. What is left over for good stays for longer.
bool isSoon(const std::function<bool()>& condition)
{
    const auto limit = Clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (Clock::now() > limit) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

void Case::checkLeftOvers(const std::string& what)
{
    const long long helper = stage_.helper();
    const std::filesystem::path programs = stage_.programs();
    for (const long long process : stage_.processes()) {
        if (process != helper && !isSoon([&] { return !isRunning(process, programs); })) {
            complain(what + ": a program still runs");
        }
    }
    if (helper != 0) {
        if (!isRunning(helper, programs)) {
            complain(what + ": the process that keeps the pipe open was ended");
        }
        if (lasted_ < std::chrono::seconds(5) || lasted_ > std::chrono::seconds(30)) {
            complain(what + ": a stream that is kept open must be given up after 5 s");
        }
        std::ofstream(stage_.released()) << "";
        const bool ended = isSoon([&] {
            remainingChildren();
            return !isRunning(helper, programs);
        });
        if (!ended) {
            complain(what + ": the helper does not end");
        }
    }
    if (!isSoon([] { return remainingChildren() == 0; })) {
        complain(what + ": a child process is left");
    }
}

std::size_t importsIn(const Outcome& outcome)
{
    std::size_t count = 0;
    for (const LogLine& line : outcome.log) {
        count += line.text.find("wasCreated = 1") != std::string::npos ? 1U : 0U;
    }
    return count;
}

// Whatever a process makes on first use is there afterwards.
void Case::warmUp()
{
    stage_.rewind({});
    std::thread([this] {
        orb::process::detail::run({utf8(stage_.programs() / "docker.exe"), "images"});
        performReally("nothing", {});
    }).join();
}

bool Case::runWithFault(Fault fault, int call)
{
    const Outcome usual = undisturbed(scenario_, setting_.places());
    Plan plan{fault, call, {}};
    if (call > 0) {
        plan.program = relativeProgram(setting_.places(), usual.calls.at(static_cast<std::size_t>(call) - 1).front());
    }
    warmUp();
    const std::size_t handles = openHandles();
    const std::size_t threads = threadCount();

    Model model(scenario_, setting_.places(), scenario_.before);
    const Outcome expected = model.perform(plan);
    const Outcome actual = performOn(plan);
    std::cout << "outcome: " << actual.result << '\n';
    compare(expected, actual, "with the fault");
    checkLeftOvers("with the fault");
    imports_ += importsIn(expected);
    checkTemporaryDirectory(imports_, "with the fault");
    if (!(loadState(stage_.state()) == model.state())) {
        complain("with the fault: another state of the machine than expected");
    }

    const Outcome expectedNext = model.perform({});
    const Outcome actualNext = performOn({});
    compare(expectedNext, actualNext, "the next call");
    checkLeftOvers("the next call");
    imports_ += importsIn(expectedNext);
    checkTemporaryDirectory(imports_, "the next call");

    if (!isSoon([handles] { return openHandles() <= handles; })) {
        complain(std::to_string(openHandles()) + " open handles after, " + std::to_string(handles) + " before");
    }
    if (!isSoon([threads] { return threadCount() == threads; })) {
        complain(std::to_string(threadCount()) + " threads after, " + std::to_string(threads) + " before");
    }
    return good_;
}

bool Case::runAgain()
{
    if (!provisions(scenario_)) {
        // Whether a removal or a start succeeds depends on what is there; let that be as at first.
        setting_.resetState();
    }
    Model model(scenario_, setting_.places(), loadState(stage_.state()));
    const Outcome expected = model.perform({});
    const Outcome actual = performOn({});
    compare(expected, actual, "by a new process");
    const Outcome usual = undisturbed(scenario_, setting_.places());
    if (actual.result != usual.result) {
        complain("by a new process: " + actual.result + " instead of " + usual.result);
    }
    const State state = loadState(stage_.state());
    const auto& names = scenario_.backend == Backend::wsl ? state.distributions : state.images;
    const auto there = std::count(names.begin(), names.end(), wantedName(scenario_));
    if (provisions(scenario_) && usual.result == "returns" && there != 1) {
        complain("by a new process: the environment is there " + std::to_string(there) + " times");
    }
    std::cout << "outcome: " << actual.result << '\n';
    return good_;
}

int list()
{
    for (const Scenario& scenario : scenarios()) {
        int number = 0;
        std::cout << scenario.name << "\t0\t\n";
        for (const std::vector<std::string>& call : Case::undisturbed(scenario, {"", "", "given.tar"}).calls) {
            std::cout << scenario.name << '\t' << ++number << '\t';
            for (const std::string& argument : call) {
                std::cout << argument << ' ';
            }
            std::cout << '\n';
        }
    }
    return 0;
}

int usage()
{
    std::cerr << "fault_case --list | FOLDER SCENARIO FAULT CALL | FOLDER SCENARIO --again\n";
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments == std::vector<std::string>{"--list"}) {
        return list();
    }
    if (arguments.size() < 3) {
        return usage();
    }
    Case theCase(arguments[0], scenarioNamed(arguments[1]));
    if (arguments.size() == 3) {
        return theCase.runAgain() ? 0 : 1;
    }
    theCase.build(FAULT_PLAYER);
    return theCase.runWithFault(faultNamed(arguments[2]), std::stoi(arguments[3])) ? 0 : 1;
}
