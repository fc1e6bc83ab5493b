#include "doctor/json.h"

#include "request/backend.h"
#include "terminal/json.h"

#include "host/text.h"

namespace kelpctl {
namespace {

using foundation::core::text::readable;
namespace json = boost::json;

const char* endingName(const Run& run)
{
    switch (run.ending) {
    case Ending::exited:
        return run.succeeded() ? "answered" : "failed";
    case Ending::notStarted:
        return "notStarted";
    case Ending::timedOut:
        return "timedOut";
    case Ending::notAsked:
    case Ending::interrupted:
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

json::object runObject(const Run& run)
{
    // A program may print any amount.
    constexpr std::size_t enough = 4096;
    json::array arguments;
    for (const std::string& argument : run.arguments) {
        arguments.emplace_back(readable(argument));
    }
    return {{"ending", endingName(run)},
            {"arguments", arguments},
            {"status", orNull(run.status)},
            {"output", run.output.substr(0, enough)},
            {"error", run.error.substr(0, enough)}};
}

json::object settingObject(const Setting& setting)
{
    return {{"value", textOrNull(setting.value)}, {"source", sourceName(setting.source)}};
}

json::array candidateList(const std::vector<Candidate>& candidates)
{
    json::array list;
    for (const Candidate& candidate : candidates) {
        list.push_back(json::object{{"path", candidate.path},
                                    {"taken", candidate.taken},
                                    {"reason", fateName(candidate.fate)},
                                    {"status", orNull(candidate.answer.status)}});
    }
    return list;
}

// Null while it is not known what there is.
template <class Things, class ToObject>
json::value listOf(bool known, const Things& things, const ToObject& toObject)
{
    if (!known) {
        return nullptr;
    }
    json::array list;
    for (const auto& thing : things) {
        list.push_back(toObject(thing));
    }
    return list;
}

json::object distributionObject(const Distribution& distribution)
{
    return {{"name", distribution.name},
            {"state", textOrNull(distribution.state)},
            {"version", distribution.version == 0 ? nullptr : json::value(distribution.version)},
            {"default", distribution.isDefault}};
}

json::object imageObject(const DockerImage& image)
{
    return {{"repository", image.repository}, {"tag", image.tag}, {"id", image.id}, {"size", image.size}};
}

json::object containerObject(const DockerContainer& container)
{
    return {
        {"name", container.name}, {"image", container.image}, {"state", container.state}, {"status", container.status}};
}

json::object wslObject(const WslExamination& wsl)
{
    return {{"executable", textOrNull(wsl.executable)},
            {"fallback", wsl.fallsBack()},
            {"lookUp", runObject(wsl.lookUp)},
            {"candidates", candidateList(wsl.candidates)},
            {"version", textOrNull(wsl.version)},
            {"listing", runObject(wsl.listing)},
            {"distributions", listOf(wsl.listing.succeeded(), wsl.distributions, distributionObject)}};
}

json::object dockerObject(const Examination& found)
{
    const DockerExamination& docker = found.docker;
    return {{"client", textOrNull(docker.client)},
            {"clientExists", docker.clientExists},
            {"lookUp", runObject(docker.lookUp)},
            {"candidates", candidateList(docker.candidates)},
            {"searchFailure", textOrNull(docker.searchFailure)},
            {"clientVersion", textOrNull(docker.engine.clientVersion)},
            {"engine",
             {{"reachable", docker.engine.reachable()},
              {"version", textOrNull(docker.engine.version)},
              {"system", textOrNull(docker.engine.system)},
              {"reply", runObject(docker.engine.answer)}}},
            {"images", listOf(docker.imageListing.succeeded(), docker.images, imageObject)},
            {"containers", listOf(docker.containerListing.succeeded(), docker.containers, containerObject)},
            {"pullsFromRegistry", found.pullsFromRegistry}};
}

json::object adapterObject(const Adapter& adapter)
{
    return {{"address", textOrNull(adapter.address)},
            {"name", textOrNull(adapter.name)},
            {"passedOver", arrayOf(adapter.passedOver)},
            {"failure", textOrNull(adapter.failure)}};
}

json::object archivesObject(const Examination& found)
{
    json::array files;
    for (const Archive& archive : found.archives) {
        files.push_back(json::object{{"name", archive.name},
                                     {"present", archive.present},
                                     {"size", archive.present ? json::value(archive.size) : nullptr},
                                     {"kind", kindName(archive.kind)},
                                     {"taken", archive.taken}});
    }
    return {{"folder", textOrNull(found.archiveFolder)},
            {"failure", textOrNull(found.archiveFolderFailure)},
            {"files", std::move(files)}};
}

json::array findingList(const Judgement& judgement, const Names& names)
{
    json::array list;
    for (const Finding& finding : judgement.findings) {
        list.push_back(json::object{{"severity", severityName(finding.severity)},
                                    {"identifier", finding.key.text()},
                                    {"about", placeName(finding.place)},
                                    {"subject", textOrNull(finding.subject)},
                                    {"message", findingText(finding, names)},
                                    {"next", findingNextStep(finding, names)}});
    }
    return list;
}

} // namespace

json::object doctorObject(const Examination& found, const Judgement& judgement, const Names& names)
{
    return {{"verdict", verdictName(judgement.verdict)},
            {"backend",
             {{"name", wordsOf(found.backend).name},
              {"source", sourceName(found.backendSetting.source)},
              {"value",
               found.backendSetting.source == Source::builtIn ? nullptr : json::value(found.backendSetting.value)}}},
            {"release", settingObject(found.release)},
            {"installationRoot", settingObject(found.root)},
            {"image", readable(found.image)},
            {"container", readable(found.container)},
            {"wsl", wslObject(found.wsl)},
            {"docker", dockerObject(found)},
            {"adapter", adapterObject(found.adapter)},
            {"archives", archivesObject(found)},
            {"temporaryFolder",
             {{"path", textOrNull(found.temporary.path)},
              {"exists", found.temporary.exists},
              {"writable", found.temporary.writable},
              {"freeBytes", orNull(found.temporary.freeBytes)}}},
            {"timeLimit", found.timeLimit.count()},
            {"findings", findingList(judgement, names)}};
}

} // namespace kelpctl
