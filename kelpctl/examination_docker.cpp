#include "examination.h"

#include "json.h"

#include "host/files.h"
#include "host/text.h"

#include <array>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace kelpctl {
namespace {

namespace json = boost::json;

// Programs of the host product's own lie there.
constexpr char hostFolder[] = "bin\\win64";

constexpr char blanks[] = " \t\n\v\f\r";

std::string trimmed(const std::string& text)
{
    const std::size_t start = text.find_first_not_of(blanks);
    return start == std::string::npos ? std::string() : text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (line = trimmed(line); !line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

// The library's tests, in its order. What cannot be looked at ends its search with an error.
Fate fateOf(const std::string& candidate)
{
    if (candidate.find(hostFolder) != std::string::npos) {
        return Fate::hostsOwn;
    }
    const std::filesystem::path path = pathOf(candidate);
    if (!foundation::core::path::exists(path)) {
        return Fate::missing;
    }
    if (foundation::core::path::is_link(path)) {
        return Fate::link;
    }
    return foundation::core::path::is_regular_file(path) ? Fate::regularFile : Fate::notAFile;
}

// The look-up may have printed it in another code page.
std::string asUtf8(const std::string& printed)
{
    using namespace foundation::core::text;
    return cvt_ustring_utf8(cvt_string_ustring(printed));
}

void search(DockerExamination& docker, const std::string& printed)
{
    for (const std::string& line : linesOf(printed)) {
        Candidate candidate{line, Fate::notLookedAt, false, {}};
        if (docker.client.empty() && docker.searchFailure.empty()) {
            try {
                candidate.path = asUtf8(line);
                candidate.fate = fateOf(line);
            } catch (const std::system_error& error) {
                candidate.fate = Fate::notReadable;
                docker.searchFailure = foundation::core::text::readable(error.what());
            }
            candidate.taken = candidate.fate == Fate::regularFile;
            docker.client = candidate.taken ? candidate.path : std::string();
        }
        docker.candidates.push_back(candidate);
    }
}

// Without a candidate that is fit, all that the look-up printed is taken for the path.
void takeWhatIsThere(DockerExamination& docker, const std::string& printed)
{
    if (docker.client.empty() && docker.searchFailure.empty()) {
        docker.client = asUtf8(trimmed(printed));
        for (Candidate& candidate : docker.candidates) {
            candidate.taken = candidate.path == docker.client;
        }
    }
    try {
        docker.clientExists = !docker.client.empty() && foundation::core::path::exists(pathOf(docker.client));
    } catch (const std::filesystem::filesystem_error&) {
        docker.clientExists = false;
    }
}

// The look-up begins with the current folder, which for the library is that of drive C.
Reply lookUp(const Context& context, std::string& printed)
{
    const std::vector<std::string> arguments = {"where", "docker.exe"};
    try {
        printed = orb::process::detail::run(arguments, {}, "c:").standardOutput;
    } catch (const std::system_error& error) {
        return {Ending::notStarted, arguments, {}, {}, foundation::core::text::readable(error.what())};
    }
    return replyOf(context.journal.last().value_or(Run{arguments, std::nullopt, false}));
}

std::string textAt(const json::object& object, const char* name)
{
    const json::value* found = object.if_contains(name);
    return found != nullptr && found->is_string() ? std::string(found->get_string()) : std::string();
}

// One object a line; a line that is none is left out.
std::vector<json::object> objectsIn(const std::string& text)
{
    std::vector<json::object> objects;
    for (const std::string& line : linesOf(text)) {
        json::value value = parsedJson(line);
        if (value.is_object()) {
            objects.push_back(std::move(value.get_object()));
        }
    }
    return objects;
}

void examineContents(const Context& context, DockerExamination& docker)
{
    docker.imagesReply = question(context, {docker.client, "images", "--format", "{{json .}}"});
    for (const json::object& image : objectsIn(docker.imagesReply.output)) {
        docker.images.push_back(
            {textAt(image, "Repository"), textAt(image, "Tag"), textAt(image, "ID"), textAt(image, "Size")});
    }
    if (!docker.imagesReply.good()) {
        return;
    }
    docker.containersReply = question(context, {docker.client, "ps", "--all", "--format", "{{json .}}"});
    for (const json::object& container : objectsIn(docker.containersReply.output)) {
        docker.containers.push_back({textAt(container, "Names"), textAt(container, "Image"), textAt(container, "State"),
                                     textAt(container, "Status")});
    }
}

} // namespace

DockerExamination examineDocker(const Context& context)
{
    DockerExamination docker;
    std::string printed;
    docker.lookUp = lookUp(context, printed);
    if (!docker.lookUp.good()) {
        return docker;
    }
    search(docker, printed);
    takeWhatIsThere(docker, printed);
    if (!docker.clientExists) {
        return docker;
    }
    docker.engine = askEngine(context.console, docker.client);
    docker.engineReply = replyOf(docker.engine.answer, context.journal);
    if (docker.engineReply.good()) {
        examineContents(context, docker);
    }
    return docker;
}

} // namespace kelpctl
