#include "programs.h"

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace verify {

using orb::process::detail::RunOptions;

namespace {

std::atomic<bool> wasInterrupted = false;
std::atomic<bool> cleans = false;
std::atomic<bool> lent = false;

Answer answerOf(std::string output)
{
    Answer answer;
    answer.status = notStarted;
    answer.output = std::move(output);
    return answer;
}

} // namespace

Answer runProgram(const Program& program)
{
    const auto begin = std::chrono::steady_clock::now();
    Answer answer;
    RunOptions options;
    options.setTerminationHandler([&] {
        const bool late = std::chrono::steady_clock::now() - begin > std::chrono::seconds(program.limitSeconds);
        answer.terminated = answer.terminated || late || (interrupted() && !cleans);
        return answer.terminated;
    });
    if (program.input) {
        options.setInputHandler([rest = *program.input]() mutable { return std::exchange(rest, std::string()); });
    }
    try {
        auto result = orb::process::detail::run(program.arguments, program.environment, program.folder, false, options);
        if (result.programMissing) {
            return answerOf("missing: " + result.standardError);
        }
        answer.status = result.status;
        answer.output = std::move(result.standardOutput);
        answer.errors = std::move(result.standardError);
        return answer;
    } catch (const std::system_error& error) {
        return answerOf("error " + std::to_string(error.code().value()) + ": " + error.what());
    } catch (const std::invalid_argument& error) {
        return answerOf(std::string("refused: ") + error.what());
    }
}

void interrupt() noexcept
{
    if (!lent) {
        wasInterrupted = true;
    }
}

ConsoleLent::ConsoleLent() noexcept
{
    lent = true;
}

ConsoleLent::~ConsoleLent()
{
    lent = false;
}

bool interrupted() noexcept
{
    return wasInterrupted;
}

void cleaningUp() noexcept
{
    cleans = true;
}

} // namespace verify
