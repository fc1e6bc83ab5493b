#include "doctor/docker.h"

#include "terminal/json.h"

#include "lvm/commands.h"
#include "lvm/files.h"
#include "lvm/rules.h"
#include "lvm/text.h"

#include "host/files.h"
#include "host/text.h"

#include <filesystem>
#include <system_error>

namespace kelpctl {
namespace {

namespace json = boost::json;
namespace rules = orb::lvm::detail;

Fate fateOfFile(rules::ClientKind kind)
{
    switch (kind) {
    case rules::ClientKind::file:
        return Fate::regularFile;
    case rules::ClientKind::hostsOwn:
        return Fate::hostsOwn;
    case rules::ClientKind::missing:
        return Fate::missing;
    case rules::ClientKind::link:
        return Fate::link;
    case rules::ClientKind::noFile:
        break;
    }
    return Fate::notAFile;
}

// The look-up may have printed it in another code page.
std::string asUtf8(std::string_view printed)
{
    using namespace foundation::core::text;
    return cvt_ustring_utf8(cvt_string_ustring(printed));
}

// What cannot be looked at ends the library's search with an error.
void search(DockerExamination& docker, const std::string& printed)
{
    for (const std::string& line : rules::trimmedLines(printed)) {
        Candidate candidate{line, Fate::notLookedAt, false, {}};
        if (docker.client.empty() && docker.searchFailure.empty()) {
            try {
                candidate.path = asUtf8(line);
                candidate.fate = fateOfFile(rules::clientKindOf(line));
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
        docker.client = asUtf8(rules::trim(printed));
        for (Candidate& candidate : docker.candidates) {
            candidate.taken = candidate.path == docker.client;
        }
    }
    try {
        docker.clientExists = !docker.client.empty() && foundation::core::path::exists(rules::toPath(docker.client));
    } catch (const std::filesystem::filesystem_error&) {
        docker.clientExists = false;
    }
}

// One object a line; a line that is none is left out.
std::vector<json::value> objectsIn(const std::string& text)
{
    std::vector<json::value> objects;
    for (const std::string& line : rules::trimmedLines(text)) {
        json::value value = parsedJson(line);
        if (value.is_object()) {
            objects.push_back(std::move(value));
        }
    }
    return objects;
}

void examineContents(const Context& context, DockerExamination& docker)
{
    docker.imageListing = ask(context.programs, {docker.client, "images", "--format", "{{json .}}"});
    for (const json::value& image : objectsIn(docker.imageListing.output)) {
        docker.images.push_back(
            {textAt(image, "Repository"), textAt(image, "Tag"), textAt(image, "ID"), textAt(image, "Size")});
    }
    if (!docker.imageListing.succeeded()) {
        return;
    }
    docker.containerListing = ask(context.programs, {docker.client, "ps", "--all", "--format", "{{json .}}"});
    for (const json::value& container : objectsIn(docker.containerListing.output)) {
        docker.containers.push_back({textAt(container, "Names"), textAt(container, "Image"), textAt(container, "State"),
                                     textAt(container, "Status")});
    }
}

} // namespace

DockerExamination examineDocker(const Context& context)
{
    DockerExamination docker;
    // It begins with the current folder, which for the library is that of drive C.
    docker.lookUp = ask(context.programs, rules::commands::dockerLookUp(), "c:");
    if (!docker.lookUp.succeeded()) {
        return docker;
    }
    search(docker, docker.lookUp.captured);
    takeWhatIsThere(docker, docker.lookUp.captured);
    if (!docker.clientExists) {
        return docker;
    }
    docker.engine = askEngine(context.programs, docker.client);
    if (docker.engine.reachable()) {
        examineContents(context, docker);
    }
    return docker;
}

} // namespace kelpctl
