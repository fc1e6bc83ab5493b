#include "process_tree.h"

#include "process_system.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>
#include <utility>

using orb::process::detail::ExitReport;
using orb::process::detail::run;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;

RunResult Descendant::runWith(std::vector<std::string> arguments, RunOptions options)
{
    const auto file = [this](const char* name) { return (folder_.path() / name).string(); };
    arguments.insert(arguments.end(), {"relay", file("go"), file("done"), file("there")});
    options.setExitCallback([this](const ExitReport& report, void*) { report_ = report; });
    return run(child(std::move(arguments)), {}, {}, false, options);
}

RunResult Descendant::endOnceItIsThere(std::vector<std::string> arguments, RunOptions options)
{
    options.setTerminationHandler([this] { return isThere(); });
    return runWith(std::move(arguments), std::move(options));
}

bool Descendant::isThere() const
{
    return std::filesystem::exists(folder_.path() / "there");
}

bool Descendant::answersWithin(std::chrono::seconds limit)
{
    std::ofstream(folder_.path() / "go") << "";
    const auto deadline = std::chrono::steady_clock::now() + limit;
    const std::filesystem::path done = folder_.path() / "done";
    while (!std::filesystem::exists(done) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    return std::filesystem::exists(done);
}
