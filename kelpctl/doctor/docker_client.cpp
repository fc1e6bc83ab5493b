#include "doctor/docker_client.h"

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

namespace rules = orb::lvm::detail;

CandidateState stateOfFile(rules::ClientKind kind)
{
    switch (kind) {
    case rules::ClientKind::file:
        return CandidateState::regularFile;
    case rules::ClientKind::hostsOwn:
        return CandidateState::hostsOwn;
    case rules::ClientKind::missing:
        return CandidateState::missing;
    case rules::ClientKind::link:
        return CandidateState::link;
    case rules::ClientKind::noFile:
        break;
    }
    return CandidateState::notAFile;
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
        Candidate candidate{line, CandidateState::notLookedAt, false, {}};
        if (docker.client.empty() && docker.searchFailure.empty()) {
            try {
                candidate.path = asUtf8(line);
                candidate.state = stateOfFile(rules::clientKindOf(line));
            } catch (const std::system_error& error) {
                candidate.state = CandidateState::notReadable;
                docker.searchFailure = foundation::core::text::readable(error.what());
            }
            candidate.taken = candidate.state == CandidateState::regularFile;
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

} // namespace

void examineClient(const Context& context, Examination& found)
{
    DockerExamination& docker = found.docker;
    // It begins with the current folder, which for the library is that of drive C.
    docker.lookUp = ask(context.programs, rules::commands::dockerLookUp(), "c:");
    if (docker.lookUp.succeeded()) {
        search(docker, docker.lookUp.captured);
        takeWhatIsThere(docker, docker.lookUp.captured);
    }
}

void judgeClient(const Examination& found, Findings& findings)
{
    const DockerExamination& docker = found.docker;
    if (docker.lookUp.ending == Ending::timedOut) {
        findings.problem("TOOL_HANGS", docker.lookUp.arguments.front());
    } else if (!docker.searchFailure.empty()) {
        findings.problem("FILE_NOT_ACCESSIBLE", docker.searchFailure);
    } else if (!docker.clientExists) {
        findings.problem(docker.lookUp.programMissing ? AdviceKey("LOOK_UP_MISSING")
                                                      : AdviceKey("DOCKER_NOT_AVAILABLE"));
    } else if (docker.engine.answer.ending == Ending::notStarted) {
        findings.problem("PROGRAM_NOT_STARTED", docker.engine.answer.error);
    }
}

void describeClient(const Examination& found, CheckOutput& out)
{
    const DockerExamination& docker = found.docker;
    out.member("docker") = {{"client", textOrNull(docker.client)},
                            {"clientExists", docker.clientExists},
                            {"lookUp", runObject(docker.lookUp)},
                            {"candidates", candidateList(docker.candidates)},
                            {"searchFailure", textOrNull(docker.searchFailure)},
                            {"clientVersion", textOrNull(docker.engine.clientVersion)}};
    const std::string missing = docker.searchFailure.empty() ? "not found" : docker.searchFailure;
    out.judged("docker.exe", docker.client.empty() ? missing : docker.client);
    out.candidates(docker.lookUp, docker.candidates);
    if (docker.clientExists) {
        out.row("client version", docker.engine.clientVersion.empty() ? "not known" : docker.engine.clientVersion);
    }
}

bool hasClient(const Examination& found)
{
    Findings findings;
    judgeClient(found, findings);
    return findings.all.empty();
}

} // namespace kelpctl
