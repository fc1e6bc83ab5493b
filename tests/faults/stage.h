// The folder that the simulated machine lives in: its programs, and what they and a test tell each other.
#pragma once

#include "simulation.h"

#include <filesystem>
#include <string>
#include <vector>

namespace faults {

struct StagedPlan {
    Fault fault = Fault::none;
    int call = 0;
    std::string program;
};

class Stage {
public:
    explicit Stage(std::filesystem::path root) : root_(std::move(root)) {}
    // The one that a program of it is on.
    static Stage around(const std::filesystem::path& program);

    const std::filesystem::path& root() const { return root_; }
    std::filesystem::path programs() const { return root_ / "programs"; }
    // What a program is called on this machine: its place below programs(), without the suffix that Windows gives
    // look-ups.
    std::string nameOfProgram(const std::filesystem::path& program) const;
    std::filesystem::path play() const { return root_ / "play"; }
    std::filesystem::path temporary() const { return root_ / "temporary"; }
    std::filesystem::path state() const { return play() / "state"; }
    // There when a program hangs, and made to let all go on that wait.
    std::filesystem::path hanging() const { return play() / "hanging"; }
    std::filesystem::path released() const { return play() / "released"; }
    // There when a program has done its work after its host was killed.
    std::filesystem::path orphanDone() const { return play() / "orphan-done"; }

    // A new machine on which `player` is installed.
    void build(const std::filesystem::path& player, const std::vector<std::string>& names, const State& state) const;
    // Forgets calls and plan, repairs the programs, and sets the next plan.
    void rewind(const StagedPlan& plan) const;

    StagedPlan plan() const;
    // The process that uses the library.
    long long host() const;
    void setHost(long long process) const;
    // The folder of the programs as where prints it, with a separator at its end.
    std::string shownFolder() const;

    // Writes a call down and gives its number, from 1 on.
    int recordCall(long long process, const std::vector<std::string>& command) const;
    void recordHelper(long long process) const;

    std::vector<std::vector<std::string>> calls() const;
    // Those that were started, and the one that keeps a pipe open (0 when there is none).
    std::vector<long long> processes() const;
    long long helper() const;

    // Takes a program away or puts something else in its place, as the plan says.
    void spoil(const StagedPlan& plan) const;

private:
    std::filesystem::path program(const std::string& name) const;

    std::filesystem::path root_;
};

} // namespace faults
