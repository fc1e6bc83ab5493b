#include "doctor_json.h"

#include "host/text.h"

namespace kelpctl {
namespace {

using foundation::core::text::readable;
using nlohmann::ordered_json;

ordered_json orNull(const std::string& text)
{
    return text.empty() ? ordered_json(nullptr) : ordered_json(text);
}

template <class Number>
ordered_json orNull(const std::optional<Number>& number)
{
    return number ? ordered_json(*number) : ordered_json(nullptr);
}

const char* endingName(Ending ending)
{
    switch (ending) {
    case Ending::answered:
        return "answered";
    case Ending::failed:
        return "failed";
    case Ending::notStarted:
        return "notStarted";
    case Ending::timedOut:
        return "timedOut";
    case Ending::notAsked:
        break;
    }
    return "notAsked";
}

const char* fateName(Fate fate)
{
    switch (fate) {
    case Fate::answers:
        return "answers";
    case Fate::failed:
        return "failed";
    case Fate::notStarted:
        return "notStarted";
    case Fate::timedOut:
        return "timedOut";
    case Fate::regularFile:
        return "regularFile";
    case Fate::hostsOwn:
        return "hostsOwn";
    case Fate::missing:
        return "missing";
    case Fate::link:
        return "link";
    case Fate::notAFile:
        return "notAFile";
    case Fate::notReadable:
        return "notReadable";
    case Fate::notAsked:
    case Fate::notLookedAt:
        break;
    }
    return "notLookedAt";
}

const char* sourceName(Source source)
{
    switch (source) {
    case Source::flag:
        return "flag";
    case Source::variable:
        return "variable";
    case Source::builtIn:
        break;
    }
    return "builtIn";
}

const char* placeName(Place place)
{
    switch (place) {
    case Place::image:
        return "name";
    case Place::wsl:
        return "wsl";
    case Place::distribution:
        return "distribution";
    case Place::client:
        return "client";
    case Place::engine:
        return "engine";
    case Place::dockerImage:
        return "image";
    case Place::container:
        return "container";
    case Place::archives:
        return "archives";
    case Place::temporary:
        return "temporaryFolder";
    case Place::none:
        break;
    }
    return "environment";
}

const char* verdictName(Verdict verdict)
{
    switch (verdict) {
    case Verdict::exists:
        return "exists";
    case Verdict::wouldStart:
        return "wouldStart";
    case Verdict::ready:
        return "ready";
    case Verdict::blocked:
        break;
    }
    return "blocked";
}

ordered_json replyObject(const Reply& reply)
{
    // A program may print any amount.
    constexpr std::size_t enough = 4096;
    std::vector<std::string> arguments;
    for (const std::string& argument : reply.arguments) {
        arguments.push_back(readable(argument));
    }
    return {{"ending", endingName(reply.ending)},
            {"arguments", arguments},
            {"status", orNull(reply.status)},
            {"output", reply.output.substr(0, enough)},
            {"error", reply.error.substr(0, enough)}};
}

ordered_json settingObject(const Setting& setting)
{
    return {{"value", orNull(setting.value)}, {"source", sourceName(setting.source)}};
}

ordered_json candidateList(const std::vector<Candidate>& candidates)
{
    ordered_json list = ordered_json::array();
    for (const Candidate& candidate : candidates) {
        list.push_back({{"path", candidate.path},
                        {"taken", candidate.taken},
                        {"reason", fateName(candidate.fate)},
                        {"status", orNull(candidate.answer.status)}});
    }
    return list;
}

// Null while it is not known what there is.
template <class Things, class ToObject>
ordered_json listOf(bool known, const Things& things, const ToObject& toObject)
{
    if (!known) {
        return nullptr;
    }
    ordered_json list = ordered_json::array();
    for (const auto& thing : things) {
        list.push_back(toObject(thing));
    }
    return list;
}

ordered_json distributionObject(const Distribution& distribution)
{
    return {{"name", distribution.name},
            {"state", orNull(distribution.state)},
            {"version", distribution.version == 0 ? ordered_json(nullptr) : ordered_json(distribution.version)},
            {"default", distribution.isDefault}};
}

ordered_json imageObject(const DockerImage& image)
{
    return {{"repository", image.repository}, {"tag", image.tag}, {"id", image.id}, {"size", image.size}};
}

ordered_json containerObject(const DockerContainer& container)
{
    return {
        {"name", container.name}, {"image", container.image}, {"state", container.state}, {"status", container.status}};
}

ordered_json wslObject(const WslExamination& wsl)
{
    return {{"executable", orNull(wsl.executable)},
            {"fallback", wsl.fallsBack()},
            {"lookUp", replyObject(wsl.lookUp)},
            {"candidates", candidateList(wsl.candidates)},
            {"version", orNull(wsl.version)},
            {"listing", replyObject(wsl.listing)},
            {"distributions", listOf(wsl.listing.good(), wsl.distributions, distributionObject)}};
}

ordered_json dockerObject(const Examination& found)
{
    const DockerExamination& docker = found.docker;
    return {{"client", orNull(docker.client)},
            {"clientExists", docker.clientExists},
            {"lookUp", replyObject(docker.lookUp)},
            {"candidates", candidateList(docker.candidates)},
            {"searchFailure", orNull(docker.searchFailure)},
            {"clientVersion", orNull(docker.engine.clientVersion)},
            {"engine",
             {{"reachable", docker.engineReply.good()},
              {"version", orNull(docker.engine.version)},
              {"system", orNull(docker.engine.system)},
              {"reply", replyObject(docker.engineReply)}}},
            {"images", listOf(docker.imagesReply.good(), docker.images, imageObject)},
            {"containers", listOf(docker.containersReply.good(), docker.containers, containerObject)},
            {"pullsFromRegistry", found.pullsFromRegistry}};
}

ordered_json adapterObject(const Adapter& adapter)
{
    return {{"address", orNull(adapter.address)},
            {"name", orNull(adapter.name)},
            {"passedOver", adapter.passedOver},
            {"failure", orNull(adapter.failure)}};
}

ordered_json archivesObject(const Examination& found)
{
    ordered_json files = ordered_json::array();
    for (const Archive& archive : found.archives) {
        files.push_back({{"name", archive.name},
                         {"present", archive.present},
                         {"size", archive.present ? ordered_json(archive.size) : ordered_json(nullptr)},
                         {"kind", kindName(archive.kind)},
                         {"taken", archive.taken}});
    }
    return {{"folder", orNull(found.archiveFolder)},
            {"failure", orNull(found.archiveFolderFailure)},
            {"files", std::move(files)}};
}

ordered_json findingList(const Judgement& judgement, const Names& names)
{
    ordered_json list = ordered_json::array();
    for (const Finding& finding : judgement.findings) {
        list.push_back({{"severity", severityName(finding.severity)},
                        {"identifier", finding.key},
                        {"about", placeName(finding.place)},
                        {"subject", orNull(finding.subject)},
                        {"message", findingText(finding, names)},
                        {"next", findingNextStep(finding, names)}});
    }
    return list;
}

} // namespace

ordered_json doctorObject(const Examination& found, const Judgement& judgement, const Names& names)
{
    return {{"verdict", verdictName(judgement.verdict)},
            {"backend",
             {{"name", found.usesWsl ? "wsl" : "docker"},
              {"source", sourceName(found.backend.source)},
              {"value",
               found.backend.source == Source::builtIn ? ordered_json(nullptr) : ordered_json(found.backend.value)}}},
            {"release", settingObject(found.release)},
            {"installationRoot", settingObject(found.root)},
            {"image", readable(found.image)},
            {"container", readable(found.container)},
            {"wsl", wslObject(found.wsl)},
            {"docker", dockerObject(found)},
            {"adapter", adapterObject(found.adapter)},
            {"archives", archivesObject(found)},
            {"temporaryFolder",
             {{"path", orNull(found.temporary.path)},
              {"exists", found.temporary.exists},
              {"writable", found.temporary.writable},
              {"freeBytes", orNull(found.temporary.freeBytes)}}},
            {"timeLimit", found.timeLimit.count()},
            {"findings", findingList(judgement, names)}};
}

} // namespace kelpctl
