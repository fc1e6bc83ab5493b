// Ctrl-C.
#pragma once

#include <memory>

namespace kelpctl {

// Whether the user has interrupted kelpctl, by Ctrl-C or by asking it to end, while an Interruption lived.
bool interrupted() noexcept;

// Whether an Interruption lives that is to end the work, so that Ctrl-C reaches kelpctl and does not end it at once.
bool interruptionEndsWork() noexcept;

// The exit status of a command that was interrupted, as shells report it.
inline constexpr int statusInterrupted = 130;

// What kelpctl does on Ctrl-C while one lives.
class Interruption {
public:
    enum class Meaning {
        // The work is to be ended. A second Ctrl-C ends kelpctl itself.
        endWork,
        // It is meant for the program that shares the terminal; kelpctl goes on until that one ends.
        leaveToProgram,
    };

    explicit Interruption(Meaning meaning);
    ~Interruption();

    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace kelpctl
