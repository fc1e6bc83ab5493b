// The programs of the simulated machine. Installed as where, which, wsl.exe and docker.exe in "programs" of a folder, it
// answers from the state in "play" of the same folder, writes down that it was called, and misbehaves as the plan there
// says.
#include "player_system.h"
#include "simulation.h"
#include "stage.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>

namespace {

using namespace faults;

void print(const std::string& text, std::FILE* stream)
{
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

void awaitRelease(const Stage& stage)
{
    while (std::filesystem::exists(stage.play()) && !std::filesystem::exists(stage.released())) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

int play(const Stage& stage, const std::string& program, const std::vector<std::string>& command)
{
    const StagedPlan plan = stage.plan();
    const int call = stage.recordCall(ownProcess(), command);
    const Fault fault = call == plan.call ? plan.fault : Fault::none;
    if (fault == Fault::hangs) {
        std::ofstream(stage.hanging()) << "";
        awaitRelease(stage);
    }
    if (fault == Fault::hostKilledBefore) {
        killProcess(stage.host());
    }
    State state = loadState(stage.state());
    const Arguments arguments(command.begin() + 1, command.end());
    const Answer result = answerWith(fault, state, stage.shownFolder(), program, arguments);
    saveState(state, stage.state());
    if (fault == Fault::hostKilledAfter) {
        killProcess(stage.host());
    }
    if (fault == Fault::hostKilledBefore || fault == Fault::hostKilledAfter) {
        std::ofstream(stage.orphanDone()) << "";
    }
    if (fault == Fault::keepsPipe) {
        stage.recordHelper(startBeside(ownPath(), "--keep-streams-open"));
    }
    print(result.output, stdout);
    print(result.error, stderr);
    if (fault == Fault::killed) {
        killSelf();
    }
    if (call + 1 == plan.call) {
        stage.spoil(plan);
    }
    exitWithStatus(result.status);
}

} // namespace

int main(int argc, char** argv)
{
    makeStreamsBinary();
    const std::filesystem::path self = ownPath();
    const Stage stage = Stage::around(self);
    std::vector<std::string> command(argv, argv + argc);
    if (command.back() == "--keep-streams-open") {
        awaitRelease(stage);
        return 0;
    }
    return play(stage, stage.nameOfProgram(self), command);
}
