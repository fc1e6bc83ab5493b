#include "steps.h"

#include "fact.h"
#include "measures.h"
#include "programs.h"

#include "host/environment.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value_to.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <iostream>
#include <thread>

namespace verify {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

constexpr std::array kinds = {"run", "write", "folder", "copy", "remove", "look", "wait", "measure", "answer", "show"};

std::string kindOf(const json::object& step)
{
    const auto found = std::find_if(kinds.begin(), kinds.end(), [&](const char* kind) { return step.contains(kind); });
    if (found == kinds.end()) {
        throw std::invalid_argument("no such step: " + json::serialize(step));
    }
    return *found;
}

Encoding encodingOf(const std::string& name)
{
    if (name == "utf-16") {
        return Encoding::utf16;
    }
    return name == "oem" ? Encoding::console : Encoding::bytes;
}

Answer saying(std::string text)
{
    Answer answer;
    answer.output = std::move(text);
    return answer;
}

Answer lookAt(const fs::path& path)
{
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) {
        return saying("nothing");
    }
    return saying(fs::is_directory(status) ? "folder" : "file");
}

void write(const fs::path& path, const std::string& content)
{
    if (!std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()))) {
        throw fs::filesystem_error("cannot write", path, std::make_error_code(std::errc::io_error));
    }
}

void copy(const fs::path& from, const fs::path& to, std::int64_t size)
{
    std::string content = contentOf(from);
    if (size >= 0) {
        content.resize(std::min(content.size(), static_cast<std::size_t>(size)));
    }
    write(to, content);
}

void wait(std::int64_t seconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (std::chrono::steady_clock::now() < end && !interrupted()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

// A run with the console's own streams is not captured: a person says what it was like.
Answer showAndAsk(const std::vector<std::string>& arguments, const std::string& before, const std::string& question)
{
    std::cout << "\n" << before << (before.empty() ? "" : "\n") << std::flush;
    Answer answer;
    {
        const ConsoleLent lent;
        answer.status = orb::process::detail::runAttached(arguments);
    }
    std::cout << "\n" << question << " [y/n] " << std::flush;
    std::getline(std::cin, answer.output);
    return answer;
}

} // namespace

Answer Steps::run(const json::object& step) const
{
    Program program;
    for (const json::value& argument : step.at("run").as_array()) {
        program.arguments.push_back(names_.filled(json::value_to<std::string>(argument)));
    }
    if (const json::value* const with = step.if_contains("with")) {
        for (const auto& [name, value] : with->as_object()) {
            program.environment[std::string(name)] = names_.filled(json::value_to<std::string>(value));
        }
    }
    if (const std::string path = names_.filled(textAt(step, "path")); !path.empty()) {
        program.environment["PATH"] = path + ";" + foundation::core::env::variable("PATH").value_or("");
    }
    program.folder = names_.filled(textAt(step, "in"));
    if (const std::int64_t size = numberAt(step, "input", -1); size >= 0) {
        program.input = std::string(static_cast<std::size_t>(size), 'i');
    }
    const std::int64_t limit = numberAt(step, "limit", Program().limitSeconds);
    program.limitSeconds = static_cast<int>(numberAt(step, "end-after", limit));
    return runProgram(program);
}

Answer Steps::deed(const json::object& step, const std::string& kind)
{
    if (kind == "wait") {
        wait(step.at("wait").as_int64());
        return {};
    }
    const std::string text = kind == "show" ? "" : names_.filled(textAt(step, kind.c_str()));
    if (kind == "measure") {
        return measure(text, textAt(step, "argument"), names_);
    }
    if (kind == "answer") {
        return text == "import" ? own_.distribution() : own_.image();
    }
    const fs::path path = pathOf(text);
    if (kind == "look") {
        return lookAt(path);
    }
    if (kind == "write") {
        write(path, textAt(step, "text"));
    } else if (kind == "folder") {
        fs::create_directories(path);
    } else if (kind == "copy") {
        copy(path, pathOf(names_.filled(textAt(step, "to"))), numberAt(step, "size", -1));
    } else {
        fs::remove(path);
    }
    return {};
}

Step Steps::perform(const json::object& step)
{
    const std::string kind = kindOf(step);
    Step done;
    done.encoding = encodingOf(textAt(step, "as"));
    done.what = kind + " " + json::serialize(step.at(kind));
    if (kind == "run") {
        done.answer = run(step);
    } else if (kind == "show") {
        std::vector<std::string> arguments;
        for (const json::value& argument : step.at(kind).as_array()) {
            arguments.push_back(names_.filled(json::value_to<std::string>(argument)));
        }
        done.answer = showAndAsk(arguments, textAt(step, "tell"), textAt(step, "ask"));
    } else {
        done.answer = deed(step, kind);
    }
    return done;
}

} // namespace verify
