// Uses the library from several threads at once, on whatever stands behind its programs here.
//
//   load_worker once ARCHIVE                      one provisioning; prints how it ended
//   load_worker race SECONDS THREADS ARCHIVE      mixed operations until the time is over
//   load_worker soak SECONDS THREADS ARCHIVE      the same in rounds; what the process holds must not grow
//
// USE_WSL chooses the backend. Prints a line of JSON; ends with 1 when an outcome is none that the operation may have,
// or when something grew.
#include "case_system.h"

#include "orb/lvm.h"

#include "host/array.h"
#include "host/configuration.h"
#include "host/diagnostics.h"
#include "host/exceptions.h"
#include "host/text.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Result = std::string;

// How an operation may end while others do what they like to the same names.
struct Operation {
    std::string name;
    int weight;
    std::function<Result()> call;
    std::set<Result> allowed;
};

// The reason at the end of the code path that wsl.exe prints, such as "Wsl/Service/RegisterDistro/ERROR_ALREADY_EXISTS".
std::string reasonIn(const std::string& captured)
{
    const std::string text = foundation::core::text::readable(captured);
    const std::size_t start = text.find("Wsl/");
    if (start == std::string::npos) {
        return text;
    }
    const std::string path = text.substr(start, text.find_first_of(" \r\n", start) - start);
    return path.substr(path.rfind('/') + 1);
}

Result errorOf(const std::function<Result()>& call)
{
    try {
        return call();
    } catch (const foundation::core::except::IMsgIDException& error) {
        const auto& arguments = error.message().arguments;
        const std::string& identifier = error.message().identifier;
        return identifier == "WSL_CANNOT_IMPORT_TAR_FILE" ? reasonIn(arguments.at(1).text()) : identifier;
    } catch (const std::exception& error) {
        return std::string("exception: ") + error.what();
    }
}

bool isWsl()
{
    const char* const value = std::getenv("USE_WSL");
    return value == nullptr || std::string(value) == "1";
}

Result check()
{
    hxArray* output = nullptr;
    kelp_container_wsl_check(1, &output, 0, nullptr);
    const hxArrayPtr owner(output);
    return std::to_string(static_cast<int>(hxGetScalar(owner.get())));
}

// The whole way to a command, as a caller goes it.
Result prepareCommand()
{
    std::vector<std::string> command = orb::lvm::getContainerArgumentsPrefix("");
    std::map<std::string, std::string> environment{{"NAME", "value"}};
    orb::lvm::applySharedEnvironment(command, environment);
    const std::string line = orb::lvm::getContainerCommandPrefix("");
    const std::string executable = orb::lvm::getContainerExecutablePath();
    const bool good = command.front() == executable && line.find(executable) != std::string::npos &&
                      environment.contains("LD_LIBRARY_PATH") && environment.contains("WSLENV") == isWsl() &&
                      !orb::lvm::getContainerTarsDirectory().empty();
    return good ? "as always" : "another command: " + line;
}

Result pause()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return "paused";
}

std::vector<Operation> operations(const std::string& archive)
{
    using namespace orb::lvm;
    const auto import = [archive] {
        importFromTarIfNecessary(archive, "", false);
        return Result("returns");
    };
    const auto clear = [] {
        clearDistroImage("");
        return Result("returns");
    };
    const auto truth = [](bool value) { return Result(value ? "true" : "false"); };
    // Somebody else may register or remove the name at any moment.
    const std::set<Result> afterImport =
        isWsl() ? std::set<Result>{"returns", "ERROR_ALREADY_EXISTS", "E_ILLEGAL_STATE_CHANGE"}
                : std::set<Result>{"returns", "IMAGE_NOT_EXIST", "TAR_FILE_LOAD_ERROR"};
    return {
        {"provision", 4, import, afterImport},
        {"remove", 2, clear, {"returns"}},
        {"start",
         2,
         [truth] { return truth(startContainerIfNecessary("", "")); },
         {"true", isWsl() ? "true" : "false"}},
        {"stop", 2, [truth] { return truth(stopContainerIfNecessary("")); }, {"true", isWsl() ? "true" : "false"}},
        {"check", 2, check, isWsl() ? std::set<Result>{"0"} : std::set<Result>{"0", "-3"}},
        {"command", 2, prepareCommand, {"as always"}},
        // Lets the others come to an end now and then.
        {"pause", 3, pause, {"paused"}},
    };
}

// The outcomes of all threads.
class Tally {
public:
    void add(const Operation& operation, const Result& result)
    {
        const std::lock_guard lock(mutex_);
        ++counts_[operation.name + ": " + result];
        if (!operation.allowed.contains(result)) {
            ++wrong_;
            std::cerr << operation.name << " came to " << result << '\n';
        }
    }
    int wrong() const { return wrong_; }
    int total() const
    {
        int sum = 0;
        for (const auto& [name, count] : counts_) {
            sum += count;
        }
        return sum;
    }
    boost::json::object report() const
    {
        boost::json::object outcomes;
        for (const auto& [name, count] : counts_) {
            outcomes.emplace(name, count);
        }
        return {{"operations", total()}, {"wrong", wrong_}, {"outcomes", outcomes}};
    }

private:
    std::mutex mutex_;
    std::map<std::string, int> counts_;
    int wrong_ = 0;
};

const Operation& pick(const std::vector<Operation>& all, std::mt19937& random)
{
    int sum = 0;
    for (const Operation& operation : all) {
        sum += operation.weight;
    }
    int left = std::uniform_int_distribution(0, sum - 1)(random);
    for (const Operation& operation : all) {
        left -= operation.weight;
        if (left < 0) {
            return operation;
        }
    }
    return all.back();
}

void runThreads(int threads, Clock::time_point end, const std::vector<Operation>& all, Tally& tally)
{
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i) {
        running.emplace_back([&] {
            std::mt19937 random(std::random_device{}());
            do {
                const Operation& operation = pick(all, random);
                tally.add(operation, errorOf(operation.call));
            } while (Clock::now() < end);
        });
    }
    for (std::thread& thread : running) {
        thread.join();
    }
}

// What this process holds.
struct Holdings {
    std::size_t handles = openHandles();
    std::size_t threads = threadCount();
    std::size_t memory = residentMemory();
};

int soak(std::chrono::seconds time, int threads, const std::vector<Operation>& all, Tally& tally)
{
    const auto start = Clock::now();
    const auto end = start + time;
    // Caches are filled and the memory's pools have their size after the first part.
    const auto settled = start + time / 4;
    const auto round = std::max<Clock::duration>(time / 20, std::chrono::seconds(2));
    Holdings before;
    Holdings after;
    int rounds = 0;
    while (Clock::now() < end) {
        const bool warmingUp = Clock::now() < settled;
        runThreads(threads, Clock::now() + round, all, tally);
        after = Holdings();
        if (warmingUp) {
            before = after;
        } else {
            ++rounds;
        }
    }
    constexpr std::size_t mebibyte = 1024 * 1024;
    const bool flat = rounds > 0 && after.handles <= before.handles && after.threads <= before.threads &&
                      after.memory <= before.memory + before.memory / 10 + 2 * mebibyte;
    boost::json::object report = tally.report();
    report["rounds"] = rounds;
    report["handles"] = {before.handles, after.handles};
    report["threads"] = {before.threads, after.threads};
    report["memory in KiB"] = {before.memory / 1024, after.memory / 1024};
    std::cout << boost::json::serialize(report) << std::endl;
    if (!flat) {
        std::cerr << "what the process holds has grown\n";
    }
    return flat && tally.wrong() == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    foundation::core::config::Configuration configuration = foundation::core::config::configuration();
    configuration.setChannelMasks({{"orb", 8 | 512}});
    foundation::core::config::configure(configuration);
    std::atomic<int> records = 0;
    const auto sink = foundation::core::diag::attach_sink([&records](const auto&) { ++records; });
    if (arguments.size() == 2 && arguments[0] == "once") {
        const Result result = errorOf(operations(arguments[1]).front().call);
        std::cout << result << std::endl;
        return result == "returns" ? 0 : 1;
    }
    if (arguments.size() != 4) {
        std::cerr << "load_worker once ARCHIVE | race|soak SECONDS THREADS ARCHIVE\n";
        return 2;
    }
    const std::chrono::seconds time(std::stoi(arguments[1]));
    const int threads = std::stoi(arguments[2]);
    const std::vector<Operation> all = operations(arguments[3]);
    Tally tally;
    if (arguments[0] == "soak") {
        return soak(time, threads, all, tally);
    }
    runThreads(threads, Clock::now() + time, all, tally);
    std::cout << boost::json::serialize(tally.report()) << std::endl;
    return tally.wrong() == 0 ? 0 : 1;
}
