// A machine as its programs where, which, wsl.exe and docker.exe know it: what they answer, what that changes, and how
// they may misbehave. The programs that the library runs and the model of what it then has to do share this code; the
// words of wsl.exe are those of the stand-in.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace faults {

// What is on the machine.
struct State {
    std::vector<std::string> distributions = {};
    std::vector<std::string> running = {};
    std::vector<std::string> images = {};
    std::vector<std::string> containers = {};
    // What the look-up prints, relative to the programs' folder; the program that is looked for where there is nothing.
    std::vector<std::string> candidates = {};

    bool operator==(const State&) const = default;
};

State loadState(const std::filesystem::path& file);
void saveState(const State& state, const std::filesystem::path& file);

// What stands at the place of a candidate. An old program knows none of its arguments.
enum class Entry { nothing, folder, program };

inline constexpr char oldWsl[] = "old/wsl.exe";
Entry entryOf(const std::string& candidate);

struct Answer {
    std::int32_t status = 0;
    std::string output;
    std::string error;
};

// How a program misbehaves.
enum class Fault {
    none,
    missing,          // is not there
    unstartable,      // is there, but is no program
    fails,            // does nothing, prints long texts to both streams, status 1
    failsSilently,    // does nothing, prints nothing, status 1
    minusOne,         // does nothing, prints to standard output, status -1
    killed,           // does its work, is killed while it prints
    hangs,            // stands still until it is released, then does its work
    garbage,          // does its work, prints bytes that are no text
    silent,           // does its work, prints nothing
    flood,            // does its work, prints 64 MB more
    idle,             // does nothing, prints and reports what success looks like
    keepsPipe,        // does its work, leaves a process behind that keeps its streams open
    hostKilledBefore, // the host process is killed before the program does its work
    hostKilledAfter   // the host process is killed after it
};

const char* nameOf(Fault fault);
Fault faultNamed(const std::string& name);

// How the system reports a program that is killed, or that ends with -1.
extern const std::int32_t killedStatus;
extern const std::int32_t minusOneStatus;
// Whether text that is not UTF-8 may be a path all the same.
extern const bool consolesHaveCodePages;

// What a program of the machine answers: its path below the programs' folder, and that folder in native form.
using Arguments = std::vector<std::string>;
Answer answer(State& state, const std::string& folder, const std::string& program, const Arguments& arguments);

// The same from a program that misbehaves. For hangs, keepsPipe and the two of the host it is the ordinary answer.
Answer answerWith(Fault fault, State& state, const std::string& folder, const std::string& program,
                  const Arguments& arguments);

// A path below a folder in native form, as programs print it.
std::string nativePath(const std::string& folder, const std::string& relative);

// The image in the archive of the install tree, and that in any other.
inline constexpr char savedImage[] = "kelp_hub_R2026b";
inline constexpr char otherImage[] = "other_name";

} // namespace faults
