#include "doctor/environment.h"

#include "archive/judgement.h"
#include "asking/limited.h"
#include "asking/volume.h"
#include "request/backend.h"
#include "request/request.h"
#include "terminal/json.h"
#include "terminal/platform.h"
#include "terminal/text.h"

#include "lvm/files.h"
#include "lvm/rules.h"

#include "host/environment.h"
#include "host/files.h"
#include "host/install.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <array>
#include <filesystem>
#include <system_error>

namespace kelpctl {
namespace {

namespace json = boost::json;
namespace rules = orb::lvm::detail;
using foundation::core::text::readable;

// The host's own rule: an empty text counts as none.
Source settingSource(const std::optional<std::string>& flag, const char* variable)
{
    if (flag && !flag->empty()) {
        return Source::flag;
    }
    return foundation::core::env::variable(variable).value_or("").empty() ? Source::builtIn : Source::variable;
}

std::size_t indexOf(Source source)
{
    return static_cast<std::size_t>(source);
}

const char* sourceName(Source source)
{
    constexpr std::array names = {"flag", "variable", "builtIn"};
    return names.at(indexOf(source));
}

std::string settingText(const Setting& setting, const char* none, const std::array<const char*, 3>& sources)
{
    return setting.value.empty() ? none : setting.value + " (" + sources.at(indexOf(setting.source)) + ")";
}

json::object settingObject(const Setting& setting)
{
    return {{"value", textOrNull(setting.value)}, {"source", sourceName(setting.source)}};
}

void examineBackend(const Context& context, Examination& found)
{
    found.backend = selectedBackend();
    if (context.request.backend) {
        found.backendSetting = {traitsOf(*context.request.backend).flag, Source::flag};
        return;
    }
    const std::optional<std::string> value = foundation::core::env::variable(rules::backendVariable);
    found.backendSetting = {readable(value.value_or("")), value ? Source::variable : Source::builtIn};
}

void describeBackend(const Examination& found, CheckOutput& out)
{
    const Setting& setting = found.backendSetting;
    out.member("backend") = {{"name", traitsOf(found.backend).name},
                             {"source", sourceName(setting.source)},
                             {"value", setting.source == Source::builtIn ? nullptr : json::value(setting.value)}};
    const std::array<std::string, 3> reasons = {setting.value + " was given", "USE_WSL is \"" + setting.value + "\"",
                                                "USE_WSL is not set"};
    out.row("backend", traitsOf(found.backend).title + (": " + reasons.at(indexOf(setting.source))));
}

void examineTree(const Context& context, Examination& found)
{
    const char* release = svKorvaneRelease();
    found.release = {release == nullptr ? std::string() : readable(release),
                     settingSource(context.request.release, "KORVANE_RELEASE")};
    found.root.source = settingSource(context.request.root, "KORVANE_ROOT");
    reasonOf([&found] {
        using namespace foundation::core;
        const path::Pathname native = path::make_native_form(path::get_install_path(), path::native_form);
        found.root.value = text::cvt_ustring_utf8(native.text);
    });
    const auto isThere = [root = found.root.value] { return std::filesystem::is_directory(rules::toPath(root)); };
    found.rootExists = within(found.timeLimit, isThere).value_or(false);
}

void describeTree(const Examination& found, CheckOutput& out)
{
    out.member("release") = settingObject(found.release);
    out.member("installationRoot") = settingObject(found.root);
    out.row("release", settingText(found.release, "none: neither --release nor KORVANE_RELEASE names one",
                                   {"--release", "KORVANE_RELEASE", ""}));
    out.row("installation root",
            settingText(found.root, "not known", {"--root", "KORVANE_ROOT", "where kelpctl is installed"}));
}

void examineNames(const Context& context, Examination& found)
{
    const Names names = namesOf(context.request);
    found.image = names.image;
    found.container = names.container;
}

void describeNames(const Examination& found, CheckOutput& out)
{
    out.member("image") = readable(found.image);
    out.member("container") = readable(found.container);
    out.judged("name", std::string("the ") + traitsOf(found.backend).image + " " + found.image);
    switch (found.backend) {
    case Backend::wsl:
        out.row("container", "WSL needs none");
        return;
    case Backend::docker:
        out.row("container", found.container);
        return;
    }
}

TemporaryFolder lookAt(const std::filesystem::path& path, TemporaryFolder temporary)
{
    std::error_code error;
    temporary.exists = std::filesystem::is_directory(path, error);
    temporary.writable = temporary.exists && mayWriteInto(path);
    temporary.freeBytes = volumeOf(path).freeBytes;
    return temporary;
}

void examineTemporaryFolder(const Context& /*context*/, Examination& found)
{
    reasonOf([&found] {
        const std::filesystem::path path = temporaryPath();
        TemporaryFolder unseen;
        unseen.path = utf8OrEmpty(path.u16string());
        found.temporary = within(found.timeLimit, [path, unseen] { return lookAt(path, unseen); }).value_or(unseen);
    });
}

// WSL keeps the distribution there.
void judgeTemporaryFolder(const Examination& found, Findings& findings)
{
    const TemporaryFolder& temporary = found.temporary;
    if (found.backend != Backend::wsl || !findings.needsCreation()) {
        return;
    }
    if (!temporary.exists || !temporary.writable) {
        findings.add(findings.needed(), "TEMPORARY_FOLDER_NOT_USABLE", temporary.path);
        return;
    }
    findings.add(judgeRoom(found.taken, Purpose::distribution, {temporary.path, temporary.freeBytes}));
}

void describeTemporaryFolder(const Examination& found, CheckOutput& out)
{
    const TemporaryFolder& temporary = found.temporary;
    out.member("temporaryFolder") = {{"path", textOrNull(temporary.path)},
                                     {"exists", temporary.exists},
                                     {"writable", temporary.writable},
                                     {"freeBytes", orNull(temporary.freeBytes)}};
    out.judged("folder", temporary.path.empty() ? "not known" : temporary.path, found.backend == Backend::wsl);
    out.row("state", !temporary.exists     ? "missing"
                     : !temporary.writable ? "may not be written to"
                                           : "may be written to");
    out.row("free", temporary.freeBytes ? sizeText(*temporary.freeBytes) : "not known");
}

// Whether a name will do each backend judges for itself.
constexpr std::array settingRows = {
    Check{.about = "backend", .examine = examineBackend, .describe = describeBackend},
    Check{.about = "installation", .examine = examineTree, .describe = describeTree},
    Check{.about = "name", .examine = examineNames, .describe = describeNames},
};

constexpr std::array folderRows = {
    Check{"temporaryFolder", examineTemporaryFolder, judgeTemporaryFolder, describeTemporaryFolder}};

} // namespace

std::span<const Check> environmentChecks()
{
    return settingRows;
}

std::span<const Check> temporaryFolderChecks()
{
    return folderRows;
}

} // namespace kelpctl
