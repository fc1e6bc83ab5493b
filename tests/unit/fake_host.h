// A host that stands behind the library in the unit tests. Every call the library makes is recorded, in one ordered
// list across processes, log records, network queries and host services; what the calls give back is scripted.
#pragma once

#include "host/install.h"
#include "host/network.h"
#include "host/process.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace fake {

using orb::process::detail::Environment;
using orb::process::detail::RunResult;
using Arguments = std::vector<std::string>;
using Events = std::vector<std::string>;
using Interfaces = std::vector<foundation::core::net::NetworkInterface>;

constexpr std::uint32_t detailBit = 8;
constexpr std::uint32_t errorBit = 512;

class Host {
public:
    // The next run must have this argument vector; it gives this result.
    void expectRun(Arguments arguments, RunResult result = {});
    // The next run must have this argument vector; it does what `action` does.
    void expectRun(Arguments arguments, std::function<RunResult()> action);
    // The mask of a channel, 8 and 512 at first.
    std::atomic<std::uint32_t>& mask(const std::string& channel);

    void record(std::string event);
    // Lets the calls fail whose event begins so, with a std::runtime_error.
    void failAt(std::string start);
    Events events();
    // The recorded events that begin with `start`.
    Events eventsLike(std::string_view start);
    void forgetEvents();

    // Fails the test when an expected run did not happen.
    void verify();

    // Answers of the services. A test changes them before it calls the library.

    // When set it answers all runs, in any order, and none needs to be expected.
    std::function<RunResult(const Arguments&)> anyRun;
    std::function<Arguments(const std::string&)> splitCommandLine;
    std::function<Interfaces()> interfaces;
    std::function<const char*()> release;
    std::function<foundation::core::path::Pathname()> installPath;
    // The text that the native form of any path has.
    std::u16string nativeForm = u"native:root";
    std::u16string temporaryDirectory = u"the temp dir";
    std::u16string temporaryName = u"the temp dir/new name";
    std::function<bool(const std::filesystem::path&, std::error_code&)> isLink;
    // The types of paths that the file system is not asked for.
    std::map<std::u16string, std::filesystem::file_type> fileTypes;
    bool acceptsRecords = true;
    bool sleepsReally = false;
    // Called with each event after it is recorded; an exception passes to whoever called the service.
    std::function<void(const std::string&)> afterEvent;

    // What happened, beyond the events.

    // Each logger as it was made: "channel" or "channel < parent".
    Events loggers;
    // The same of each as it was destroyed.
    Events destroyedLoggers;
    int openedRecords = 0;
    int streamedRecords = 0;

    // Guards everything above while calls come from several threads.
    std::recursive_mutex mutex;

    RunResult run(const Arguments& arguments, std::string_view event);

private:
    struct ScriptedRun {
        Arguments arguments;
        std::function<RunResult()> action;
    };

    std::deque<ScriptedRun> script_;
    std::map<std::string, std::atomic<std::uint32_t>> masks_;
    Events events_;
};

// The host of this process. It is never destroyed, because the library's loggers live until the process exits.
Host& host();

// UTF-16 as UTF-8, for events; an unpaired surrogate becomes "?".
std::string narrow(std::u16string_view text);

// How the events read.

std::string ran(const Arguments& arguments);
std::string ranIn(const std::string& directory, const Arguments& arguments);
std::string wslDetail(const std::string& text);
std::string wslError(const std::string& text);
std::string dockerDetail(const std::string& text);
std::string dockerError(const std::string& text);
std::string commonDetail(const std::string& text);
std::string commonError(const std::string& text);
inline constexpr char askedInterfaces[] = "NetworkInterface::list";
inline constexpr char askedRelease[] = "svKorvaneRelease";

// One list of events from several.
Events sequence(std::initializer_list<Events> parts);

// Compares the whole recorded list and forgets it; shows the first difference.
void expectEvents(const Events& expected);

} // namespace fake
