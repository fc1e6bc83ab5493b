// Lets each allocation of an operation fail in turn: "allocation_failure FOLDER SCENARIO...".
//
// Every try is a process of its own. In half of them the library has been used before, so that its caches are filled; in
// the others nothing has. A try is good when the operation throws std::bad_alloc or comes to an outcome that it may have
// for other reasons, when the next call does what it always does, and when nothing is left: as many allocations live as
// without a failure, no descriptor, no process.
#include "case_system.h"
#include "operations.h"
#include "setting.h"

#include "host/diagnostics.h"

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <map>
#include <new>
#include <string>

namespace {

std::atomic<long> live{0};
// The allocation that fails, counted from 1; none while it is 0.
std::atomic<long> failing{0};
std::atomic<long> counted{0};

void* allocate(std::size_t size)
{
    if (failing != 0 && ++counted == failing) {
        throw std::bad_alloc();
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++live;
    return memory;
}

void release(void* memory) noexcept
{
    if (memory != nullptr) {
        --live;
        std::free(memory);
    }
}

} // namespace

// These take the place of the standard library's, in the libraries too. The others call them.
void* operator new(std::size_t size)
{
    return allocate(size);
}
void operator delete(void* memory) noexcept
{
    release(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    release(memory);
}

// The library's pauses are not what is tried here.
extern "C" [[gnu::visibility("default")]] int nanosleep(const timespec*, timespec*)
{
    return 0;
}

namespace {

using namespace faults;

// How a try ended, as the exit status of its process.
enum Try { survived = 0, threw = 10, otherOutcome = 11, notReached = 12, wrong = 20 };

bool complain(const std::string& text)
{
    std::cerr << text << '\n';
    return false;
}

class Tries {
public:
    Tries(const std::filesystem::path& folder, const Scenario& scenario)
        : setting_(folder, scenario),
          scenario_(scenario),
          // Records are made for somebody who takes them, and needs no memory for it.
          sink_(foundation::core::diag::attach_sink([](const foundation::core::diag::log_record&) {}))
    {
        setting_.build(FAULT_PLAYER);
        archive_ = setting_.places().givenArchive;
        usual_ = Model(scenario, setting_.places(), scenario.before).perform({}).result;
    }

    // Each allocation once, until the operation needs no more.
    bool run(bool warm);

    const std::map<int, int>& endings() const { return endings_; }

private:
    std::string perform() const
    {
        setting_.stage().rewind({});
        setting_.resetState();
        return resultOf(scenario_.operation, archive_);
    }
    // What this may come to when memory is short: a candidate that cannot be tried is passed over, and a folder that
    // cannot be made is left for wsl.exe to report.
    bool isDocumented(const std::string& result) const
    {
        const bool asksWsl = scenario_.backend == Backend::wsl || scenario_.operation == "check";
        return asksWsl && (result == "WSL_CANNOT_IMPORT_TAR_FILE" || result == "-3" ||
                           result.find("System32") != std::string::npos);
    }
    int inOwnProcess(bool warm, long number, long* liveAfterwards) const;
    Try tryOnce(bool warm, long number, long expectedLive, int report) const;

    Setting setting_;
    const Scenario& scenario_;
    foundation::core::diag::sink_handle sink_;
    std::string usual_;
    std::string archive_;
    long expectedLive_ = 0;
    std::map<int, int> endings_;
};

Try Tries::tryOnce(bool warm, long number, long expectedLive, int report) const
{
    const auto describe = [&](const std::string& text) {
        return complain(scenario_.name + (warm ? ", used before, " : ", ") + "allocation " + std::to_string(number) +
                        ": " + text);
    };
    const long liveAtFirst = live;
    if (warm) {
        perform();
    }
    setting_.stage().rewind({});
    setting_.resetState();
    const std::size_t handles = openHandles();
    counted = 0;
    failing = number;
    std::string result = resultOf(scenario_.operation, archive_);
    failing = 0;
    const bool reached = number != 0 && counted >= number;
    std::string next = perform();
    bool good = true;
    if (result != usual_ && result != "std::bad_alloc" && !isDocumented(result)) {
        good = describe(result);
    }
    if (next != usual_ && !isDocumented(next)) {
        good = describe("the next call: " + next);
    }
    const Try ending = result == "std::bad_alloc" ? threw : result == usual_ ? survived : otherOutcome;
    // Their texts may be long or short.
    std::string().swap(result);
    const bool comparable = next == usual_;
    std::string().swap(next);
    const long left = live - liveAtFirst;
    if (::write(report, &left, sizeof left) != sizeof left) {
        return wrong;
    }
    // A path of wsl.exe that could not be tried is kept, and the calls after it take other ways and fill other caches.
    if (number != 0 && comparable && left > expectedLive) {
        good = describe(std::to_string(left - expectedLive) + " allocations left over");
    }
    if (openHandles() != handles || remainingChildren() != 0) {
        good = describe("descriptors or processes left over");
    }
    if (!reached) {
        return good ? notReached : wrong;
    }
    return good ? ending : wrong;
}

int Tries::inOwnProcess(bool warm, long number, long* liveAfterwards) const
{
    int ends[2];
    if (::pipe(ends) != 0) {
        return wrong;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        ::alarm(60);
        ::_exit(tryOnce(warm, number, expectedLive_, ends[1]));
    }
    ::close(ends[1]);
    const bool reported = ::read(ends[0], liveAfterwards, sizeof *liveAfterwards) == sizeof *liveAfterwards;
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status) || !reported) {
        complain(scenario_.name + (warm ? ", used before, " : ", ") + "allocation " + std::to_string(number) +
                 ": the process died" + (WIFSIGNALED(status) ? " of signal " + std::to_string(WTERMSIG(status)) : ""));
        return wrong;
    }
    return WEXITSTATUS(status);
}

bool Tries::run(bool warm)
{
    long left = 0;
    if (inOwnProcess(warm, 0, &expectedLive_) != notReached) {
        return complain(scenario_.name + ": cannot even be done undisturbed");
    }
    bool good = true;
    for (long number = 1;; ++number) {
        const int ending = inOwnProcess(warm, number, &left);
        if (ending == notReached) {
            return good;
        }
        constexpr long far = 20000;
        if (number == far) {
            return complain(scenario_.name + ": needs allocations without end");
        }
        ++endings_[ending];
        good = good && ending != wrong;
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::cerr << "allocation_failure FOLDER SCENARIO...\n";
        return 2;
    }
    bool good = true;
    std::map<int, int> all;
    for (int i = 2; i < argc; ++i) {
        Tries tries(std::filesystem::absolute(argv[1]) / argv[i], scenarioNamed(argv[i]));
        good = tries.run(false) && good;
        good = tries.run(true) && good;
        for (const auto& [ending, count] : tries.endings()) {
            all[ending] += count;
        }
    }
    std::cout << all[threw] << " std::bad_alloc, " << all[survived] << " undisturbed, " << all[otherOutcome]
              << " documented, " << all[wrong] << " wrong" << std::endl;
    return good ? 0 : 1;
}
