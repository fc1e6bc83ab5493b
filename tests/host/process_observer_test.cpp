// What an observer sees of the process's runs.
#include "process_system.h"

#include "host/process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

using orb::process::detail::observeRuns;
using orb::process::detail::run;
using orb::process::detail::RunObserver;
using orb::process::detail::RunOptions;
using orb::process::detail::RunResult;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Lt;

namespace {

// No std::exception: those are answers to who tries programs.
struct GivenUp {};

// Writes down what it sees, while it lives.
class Witness : public RunObserver {
public:
    Witness() : before_(observeRuns(this)) {}
    ~Witness() override { observeRuns(before_); }
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;

    void starting(const std::vector<std::string>& arguments, RunOptions& /*options*/) override
    {
        events.push_back("starting " + arguments.back());
        if (refuses) {
            throw std::runtime_error("not now");
        }
    }
    bool shouldTerminate() override
    {
        if (givesUp) {
            throw GivenUp();
        }
        return ends;
    }
    void ended(const std::vector<std::string>& arguments, const RunResult* result) noexcept override
    {
        events.push_back("ended " + arguments.back() + (result == nullptr ? " without a result" : ""));
        if (result != nullptr) {
            last = *result;
        }
    }

    bool refuses = false;
    bool ends = false;
    bool givesUp = false;
    std::vector<std::string> events;
    RunResult last;

private:
    RunObserver* before_;
};

} // namespace

TEST(RunObserver, SeesEachRunFromItsStartToItsResult)
{
    const Witness witness;
    run(child({"print", "to output", "to error"}));
    run(child({"exit", "3"}));
    EXPECT_THAT(witness.events, ElementsAre("starting to error", "ended to error", "starting 3", "ended 3"));
    EXPECT_EQ(witness.last.status, 3);
}

TEST(RunObserver, SeesWhatTheProgramPrinted)
{
    const Witness witness;
    run(child({"print", "to output", "to error"}));
    EXPECT_EQ(witness.last.standardOutput, "to output");
    EXPECT_EQ(witness.last.standardError, "to error");
}

TEST(RunObserver, SeesAProgramThatDoesNotExistAsARunThatFailed)
{
    const Witness witness;
    run({"no-such-program-anywhere"});
    EXPECT_EQ(witness.last.status, 127);
    EXPECT_THAT(witness.events, ElementsAre("starting no-such-program-anywhere", "ended no-such-program-anywhere"));
}

TEST(RunObserver, IsToldThatARunHasNoResult)
{
    const Witness witness;
    EXPECT_ANY_THROW(run(child({"sleep", "0"}), {}, "/no/such/folder"));
    EXPECT_THAT(witness.events, ElementsAre("starting 0", "ended 0 without a result"));
}

TEST(RunObserver, DoesNotSeeWhatIsRefusedBeforeItStarts)
{
    const Witness witness;
    EXPECT_THROW(run({}), std::invalid_argument);
    EXPECT_THAT(witness.events, IsEmpty());
}

TEST(RunObserver, EndsAProgram)
{
    Witness witness;
    witness.ends = true;
    const auto begin = steady_clock::now();
    EXPECT_NE(run(child({"sleep", "120000"})).status, 0);
    EXPECT_THAT(steady_clock::now() - begin, Lt(seconds{30}));
}

TEST(RunObserver, EndsAProgramByAnExceptionThatPassesOut)
{
    Witness witness;
    witness.givesUp = true;
    const auto begin = steady_clock::now();
    EXPECT_THROW(run(child({"sleep", "120000"})), GivenUp);
    EXPECT_THAT(steady_clock::now() - begin, Lt(seconds{30}));
    EXPECT_THAT(witness.events, ElementsAre("starting 120000", "ended 120000 without a result"));
}

TEST(RunObserver, LeavesTheTerminationHandlerItsSay)
{
    const Witness witness;
    RunOptions options;
    options.setTerminationHandler([] { return true; });
    EXPECT_NE(run(child({"sleep", "120000"}), {}, {}, false, options).status, 0);
}

TEST(RunObserver, LetsAProgramRunWhenNobodyEndsIt)
{
    const Witness witness;
    RunOptions options;
    int asked = 0;
    options.setTerminationHandler([&asked] { return ++asked < 0; });
    EXPECT_EQ(run(child({"sleep", "400"}), {}, {}, false, options).status, 0);
    EXPECT_GT(asked, 0);
}

TEST(RunObserver, KeepsAProgramFromStartingByAnException)
{
    Witness witness;
    witness.refuses = true;
    EXPECT_THROW(run(child({"exit", "0"})), std::runtime_error);
    EXPECT_THAT(witness.events, ElementsAre("starting 0"));
}

TEST(RunObserver, SeesNothingOnceItIsReplaced)
{
    Witness witness;
    observeRuns(nullptr);
    run(child({"exit", "0"}));
    EXPECT_THAT(witness.events, IsEmpty());
}

TEST(RunObserver, DoesNotSeeDetachedRuns)
{
    const Witness witness;
    run(child({"exit", "0"}), {}, {}, true);
    EXPECT_THAT(witness.events, IsEmpty());
}
