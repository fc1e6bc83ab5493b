#include "doctor/examination.h"

#include "request/backend.h"
#include "request/names.h"
#include "terminal/platform.h"

#include "lvm/files.h"

#include "host/files.h"
#include "host/install.h"
#include "host/network.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <system_error>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;
using foundation::core::net::NetworkInterface;
using foundation::core::text::readable;

constexpr char releaseVariable[] = "KORVANE_RELEASE";
constexpr char rootVariable[] = "KORVANE_ROOT";

// Does something that may fail, and gives back why it did; empty when it did not.
std::string reasonOf(const std::function<void()>& step)
{
    try {
        step();
    } catch (const std::exception& error) {
        return readable(error.what());
    }
    return {};
}

std::string variable(const char* name)
{
    return environmentVariable(name).value_or("");
}

// The host's own rule: an empty text counts as none.
Source settingSource(const std::optional<std::string>& flag, const char* name)
{
    if (flag && !flag->empty()) {
        return Source::flag;
    }
    return variable(name).empty() ? Source::builtIn : Source::variable;
}

Setting backendOf(const Request& request)
{
    if (request.backend) {
        return {wordsOf(*request.backend).flag, Source::flag};
    }
    const std::optional<std::string> value = environmentVariable(rules::backendVariable);
    return {readable(value.value_or("")), value ? Source::variable : Source::builtIn};
}

Setting releaseOf(const Request& request)
{
    const char* release = svKorvaneRelease();
    return {release == nullptr ? std::string() : readable(release), settingSource(request.release, releaseVariable)};
}

Setting rootOf(const Request& request)
{
    using namespace foundation::core;
    Setting root{{}, settingSource(request.root, rootVariable)};
    reasonOf([&root] {
        const path::Pathname native = path::make_native_form(path::get_install_path(), path::native_form);
        root.value = text::cvt_ustring_utf8(native.text);
    });
    return root;
}

std::string utf8(const std::u16string& text)
{
    std::string result;
    reasonOf([&] { result = foundation::core::text::cvt_ustring_utf8(text); });
    return result;
}

void examineAdapter(const NetworkInterface& nic, Adapter& adapter)
{
    const std::string address = rules::getWslAdapterAddress(nic);
    if (!address.empty() && adapter.address.empty()) {
        adapter.address = address;
        adapter.name = utf8(nic.getFriendlyName());
    } else if (address.empty() && nic.getFriendlyName().find(u"WSL") != std::u16string::npos) {
        adapter.passedOver.push_back(utf8(nic.getFriendlyName()));
    }
}

Adapter examineAdapters()
{
    Adapter adapter;
    adapter.failure = reasonOf([&adapter] {
        for (const NetworkInterface& nic : NetworkInterface::list()) {
            examineAdapter(nic, adapter);
        }
    });
    return adapter;
}

// The standard library does not name a temporary folder that is none; the first of these variables that is set does.
std::filesystem::path temporaryPath()
{
    try {
        return foundation::core::path::temp_directory_name();
    } catch (const std::filesystem::filesystem_error&) {
        for (const char* name : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"}) {
            if (const std::string value = variable(name); !value.empty()) {
                return rules::toPath(value);
            }
        }
        throw;
    }
}

TemporaryFolder examineTemporaryFolder()
{
    TemporaryFolder temporary;
    std::error_code error;
    reasonOf([&] {
        const std::filesystem::path path = temporaryPath();
        temporary.path = utf8(path.u16string());
        temporary.exists = std::filesystem::is_directory(path, error);
        temporary.writable = temporary.exists && mayWriteInto(path);
        const std::filesystem::space_info space = std::filesystem::space(path, error);
        if (!error) {
            temporary.freeBytes = space.available;
        }
    });
    return temporary;
}

void examineArchives(Examination& found)
{
    found.archiveFolderFailure = reasonOf([&found] {
        const std::filesystem::path folder(orb::lvm::getContainerTarsDirectory());
        found.archiveFolder = utf8(folder.u16string());
        found.archives = lookAtArchives(folder, wordsOf(found.backend).archives);
    });
}

} // namespace

Examination examine(const Context& context)
{
    const Request& request = context.request;
    context.journal.limitEachRun(request.timeLimit);
    Examination found;
    found.timeLimit = request.timeLimit;
    found.backend = selectedBackend();
    found.backendSetting = backendOf(request);
    found.release = releaseOf(request);
    found.root = rootOf(request);
    reasonOf([&found] { found.rootExists = std::filesystem::is_directory(rules::toPath(found.root.value)); });
    found.image = namesOf(request).image;
    found.container = namesOf(request).container;
    found.pullsFromRegistry = rules::isOne(variable(rules::registryVariable).c_str());
    found.wsl = examineWsl(context);
    found.docker = examineDocker(context);
    found.adapter = examineAdapters();
    examineArchives(found);
    found.temporary = examineTemporaryFolder();
    return found;
}

} // namespace kelpctl
