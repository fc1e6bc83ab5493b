#include "operations.h"

#include "orb/lvm.h"

#include "host/array.h"
#include "host/diagnostics.h"
#include "host/exceptions.h"

#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <new>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace faults {
namespace {

using Call = std::function<std::string()>;

std::string joined(const std::vector<std::string>& elements)
{
    std::string text;
    for (const std::string& element : elements) {
        text += element + "|";
    }
    return text;
}

std::string truth(bool value)
{
    return value ? "true" : "false";
}

std::string nothing(const std::function<void()>& call)
{
    call();
    return "returns";
}

std::string check()
{
    hxArray* output = nullptr;
    kelp_container_wsl_check(1, &output, 0, nullptr);
    const hxArrayPtr owner(output);
    return hxGetScalar(output) == 0.0 ? "0" : std::to_string(static_cast<int>(hxGetScalar(output)));
}

const std::map<std::string, Call>& calls()
{
    using namespace orb::lvm;
    static const std::map<std::string, Call> all{
        {"nothing", [] { return std::string("returns"); }},
        {"import", [] { return nothing([] { importFromTarIfNecessary("", "", false); }); }},
        {"import-rootfs", [] { return nothing([] { importFromTarIfNecessary("", "kelp_hub_R2026b", true); }); }},
        {"setup", [] { return nothing([] { kelp_container_setup(0, nullptr, 0, nullptr); }); }},
        {"clear", [] { return nothing([] { clearDistroImage(""); }); }},
        {"teardown", [] { return nothing([] { kelp_container_teardown(0, nullptr, 0, nullptr); }); }},
        {"check", check},
        {"start", [] { return truth(startContainerIfNecessary("", "")); }},
        {"stop", [] { return truth(stopContainerIfNecessary("")); }},
        {"command-prefix", [] { return getContainerCommandPrefix(""); }},
        {"arguments-prefix", [] { return joined(getContainerArgumentsPrefix("")); }},
        {"executable", [] { return getContainerExecutablePath(); }},
    };
    return all;
}

void call(const std::string& operation, Outcome& outcome)
{
    try {
        outcome.result = calls().at(operation)();
    } catch (const foundation::core::except::IMsgIDException& error) {
        outcome.result = error.message().identifier;
        for (const auto& argument : error.message().arguments) {
            outcome.arguments.push_back(argument.text());
        }
    } catch (const std::filesystem::filesystem_error&) {
        outcome.result = "std::filesystem::filesystem_error";
    } catch (const std::system_error&) {
        outcome.result = "std::system_error";
    } catch (const std::invalid_argument&) {
        outcome.result = "std::invalid_argument";
    } catch (const std::bad_alloc&) {
        outcome.result = "std::bad_alloc";
    }
}

} // namespace

std::string resultOf(const std::string& operation)
{
    Outcome outcome;
    try {
        call(operation, outcome);
    } catch (const std::bad_alloc&) {
        // While the result was written down.
        outcome.result = "std::bad_alloc";
    }
    return std::move(outcome.result);
}

Outcome performReally(const std::string& operation)
{
    Outcome outcome;
    const auto sink = foundation::core::diag::attach_sink([&outcome](const foundation::core::diag::log_record& record) {
        outcome.log.push_back({record.channel, record.severity, record.message});
    });
    std::ostringstream printed;
    std::streambuf* const before = std::cout.rdbuf(printed.rdbuf());
    call(operation, outcome);
    std::cout.rdbuf(before);
    outcome.printed = printed.str();
    return outcome;
}

} // namespace faults
