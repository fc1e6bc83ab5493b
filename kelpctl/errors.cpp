#include "errors.h"

#include "command_line.h"
#include "next_steps.h"

#include "host/exceptions.h"
#include "host/text.h"

#include <filesystem>
#include <new>
#include <system_error>

namespace kelpctl {
namespace {

using foundation::core::except::IMsgIDException;
using foundation::core::text::readable;

std::vector<std::string> readableAll(const std::vector<std::string>& texts)
{
    std::vector<std::string> result;
    result.reserve(texts.size());
    for (const std::string& text : texts) {
        result.push_back(readable(text));
    }
    return result;
}

std::string firstCodePath(const std::vector<std::string>& texts)
{
    for (const std::string& text : texts) {
        if (std::string path = wslCodePath(text); !path.empty()) {
            return path;
        }
    }
    return {};
}

// The translation is looked up under the installation root, which may be the very thing that is wrong.
std::string userTextOf(const IMsgIDException& error)
{
    try {
        return error.userText();
    } catch (const std::exception&) {
        return readable(error.description());
    }
}

// The catalogue's text holds the arguments, so only the code to search for is further evidence.
Report reportOf(const IMsgIDException& error)
{
    Report report;
    report.identifier = error.message().identifier;
    report.text = userTextOf(error);
    for (const foundation::core::message::Argument& argument : error.message().arguments) {
        report.arguments.push_back(readable(argument.text()));
    }
    const std::string codePath = firstCodePath(report.arguments);
    if (!codePath.empty()) {
        report.evidence.push_back(codePath);
    }
    report.nextStep = nextStep(report.identifier, codePath);
    return report;
}

Report plainReport(const std::string& identifier, const std::string& text)
{
    Report report;
    report.identifier = identifier;
    report.text = readable(text);
    report.nextStep = nextStep(identifier, {});
    return report;
}

// The process service names the program in the text, the text service its own failures by one code.
Report reportOf(const std::system_error& error)
{
    return error.code() == std::errc::illegal_byte_sequence ? plainReport("TEXT_NOT_VALID", error.what())
                                                            : plainReport("PROGRAM_NOT_STARTED", error.what());
}

Report reportOf(const UsageError& error)
{
    Report report = plainReport("USAGE", error.what());
    report.status = statusUsage;
    return report;
}

} // namespace

Report reportOf(const Failure& failure)
{
    Report report;
    report.identifier = failure.identifier();
    report.text = failure.what();
    report.arguments = readableAll(failure.evidence());
    report.evidence = report.arguments;
    report.nextStep = nextStep(report.identifier, firstCodePath(report.arguments));
    return report;
}

Report reportOf(const std::exception_ptr& error)
{
    try {
        std::rethrow_exception(error);
    } catch (const UsageError& usage) {
        return reportOf(usage);
    } catch (const Failure& failure) {
        return reportOf(failure);
    } catch (const IMsgIDException& message) {
        return reportOf(message);
    } catch (const std::filesystem::filesystem_error& file) {
        return plainReport("FILE_NOT_ACCESSIBLE", file.what());
    } catch (const std::system_error& system) {
        return reportOf(system);
    } catch (const std::invalid_argument& argument) {
        return plainReport("INVALID_ARGUMENT", argument.what());
    } catch (const std::bad_alloc&) {
        return plainReport("OUT_OF_MEMORY", "There is not enough memory.");
    } catch (const std::exception& other) {
        return plainReport("UNEXPECTED_ERROR", other.what());
    } catch (...) {
        return plainReport("UNEXPECTED_ERROR", "An unknown error occurred.");
    }
}

} // namespace kelpctl
