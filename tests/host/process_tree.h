// A program that starts others, and what becomes of the last of them.
#pragma once

#include "temporary_folder.h"

#include "host/process.h"

#include <chrono>
#include <string>
#include <vector>

// The last program of a tree. It prints "ready" once it is there, and lives until it is asked whether it does.
class Descendant {
public:
    // One that lives answers at once, but for a machine that has much else to do; one that does not is waited for in vain.
    static constexpr std::chrono::seconds patient{30};
    static constexpr std::chrono::seconds longEnough{2};

    // Runs the test child with arguments that make it start the descendant.
    orb::process::detail::RunResult runWith(std::vector<std::string> arguments,
                                            orb::process::detail::RunOptions options);

    // The same, and ends the run as soon as the descendant is there.
    orb::process::detail::RunResult endOnceItIsThere(std::vector<std::string> arguments,
                                                     orb::process::detail::RunOptions options);

    // Whether the descendant has been there since the run began.
    bool isThere() const;

    // How the run ended.
    const orb::process::detail::ExitReport& report() const { return report_; }

    // Whether the descendant lives, and so answers within this time; then it ends. To be asked once.
    bool answersWithin(std::chrono::seconds limit);

private:
    TemporaryFolder folder_;
    orb::process::detail::ExitReport report_;
};
