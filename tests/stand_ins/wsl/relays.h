#pragma once

#include "inside.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace stand_in {

// The standard streams of a program inside. A terminal is given to it as it is; anything else reaches it through pipes
// that this process copies, so that input is read whether the program wants it or not, and that what outlives this
// process holds none of the caller's streams.
class Relays {
public:
    Relays();
    ~Relays();
    Relays(const Relays&) = delete;
    Relays& operator=(const Relays&) = delete;

    // What the program is to have as its streams 0, 1 and 2.
    const std::array<int, 3>& inside() const { return inside_; }
    // For the parent, once the program has its own.
    void closeInside();

    // Copies until the Ending comes by the descriptor, or until that is closed without one.
    std::optional<Ending> copyUntilEnd(int endings);

private:
    void takeInput();
    void giveInput();
    void passOutput(int stream);
    void close(int stream);

    std::array<int, 3> inside_ = {0, 1, 2};
    // -1 where there is nothing to copy, or no longer.
    std::array<int, 3> outside_ = {-1, -1, -1};
    std::string input_;
    bool inputEnded_ = false;
};

// Makes the descriptors this process's standard streams.
void takeStreams(const std::array<int, 3>& streams);

} // namespace stand_in
