#include "operations.h"

#include "orb/lvm.h"

#include "host/array.h"
#include "host/diagnostics.h"
#include "host/exceptions.h"
#include "host/text.h"

#include <array>
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

// Takes an archive, for those that name one.
using Call = std::function<std::string(const std::string&)>;

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

Call returning(const std::function<void(const std::string&)>& call)
{
    return [call](const std::string& archive) {
        call(archive);
        return std::string("returns");
    };
}

void setUp(const std::string& archive)
{
    const hxArrayPtr text(hxCreateString(foundation::core::text::cvt_utf8_ustring(archive)));
    std::array<hxArray*, 1> inputs = {text.get()};
    kelp_container_setup(0, nullptr, 1, inputs.data());
}

std::string check(const std::string&)
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
        {"nothing", returning([](auto&) {})},
        {"import", returning([](auto&) { importFromTarIfNecessary("", "", false); })},
        {"import-named", returning([](auto& archive) { importFromTarIfNecessary(archive, otherName, false); })},
        {"import-rootfs", returning([](auto&) { importFromTarIfNecessary("", "kelp_hub_R2026b", true); })},
        {"import-unnamed", returning([](auto&) { importFromTarIfNecessary("", "", true); })},
        {"setup", returning([](auto&) { kelp_container_setup(0, nullptr, 0, nullptr); })},
        {"setup-given", returning(setUp)},
        {"clear", returning([](auto&) { clearDistroImage(""); })},
        {"clear-named", returning([](auto&) { clearDistroImage(otherName); })},
        {"teardown", returning([](auto&) { kelp_container_teardown(0, nullptr, 0, nullptr); })},
        {"check", check},
        {"start", [](auto&) { return truth(startContainerIfNecessary("", "")); }},
        {"start-named", [](auto&) { return truth(startContainerIfNecessary(otherContainer, otherName)); }},
        {"stop", [](auto&) { return truth(stopContainerIfNecessary("")); }},
        {"stop-named", [](auto&) { return truth(stopContainerIfNecessary(otherContainer)); }},
        {"command-prefix", [](auto&) { return getContainerCommandPrefix(""); }},
        {"arguments-prefix", [](auto&) { return joined(getContainerArgumentsPrefix("")); }},
        {"executable", [](auto&) { return getContainerExecutablePath(); }},
    };
    return all;
}

void call(const std::string& operation, const std::string& archive, Outcome& outcome)
{
    try {
        outcome.result = calls().at(operation)(archive);
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

std::string resultOf(const std::string& operation, const std::string& archive)
{
    Outcome outcome;
    try {
        call(operation, archive, outcome);
    } catch (const std::bad_alloc&) {
        // While the result was written down.
        outcome.result = "std::bad_alloc";
    }
    return std::move(outcome.result);
}

Outcome performReally(const std::string& operation, const std::string& archive)
{
    Outcome outcome;
    const auto sink = foundation::core::diag::attach_sink([&outcome](const foundation::core::diag::log_record& record) {
        outcome.log.push_back({record.channel, record.severity, record.message});
    });
    std::ostringstream printed;
    std::streambuf* const before = std::cout.rdbuf(printed.rdbuf());
    call(operation, archive, outcome);
    std::cout.rdbuf(before);
    outcome.printed = printed.str();
    return outcome;
}

} // namespace faults
