#include "fake_lvm.h"

#include "host/array.h"
#include "host/diagnostics.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <cstdlib>
#include <string_view>

namespace {

constexpr char wslPath[] = "/windows/wsl.exe";
constexpr char runtimePath[] = "/runtime";

bool fakeUsesWsl()
{
    const char* value = std::getenv("USE_WSL");
    return value == nullptr || std::string_view(value) == "1";
}

void note(const std::string& function, const std::vector<std::string>& arguments)
{
    std::string call = function;
    for (const std::string& argument : arguments) {
        call += " [" + argument + "]";
    }
    fakeLvm().calls.push_back(call);
}

std::string containerOrHub(const std::string& name)
{
    return name.empty() ? "kelp_hub" : name;
}

void listInWslenv(std::map<std::string, std::string>& env)
{
    std::string names;
    for (const auto& [name, value] : env) {
        names += (names.empty() ? "" : ":") + name;
    }
    env.try_emplace("WSLENV", names);
}

void insertOptions(std::vector<std::string>& args, const std::map<std::string, std::string>& env)
{
    for (const auto& [name, value] : env) {
        args.insert(args.end() - 1, {"-e", name + "=" + value});
    }
}

} // namespace

FakeLvm& fakeLvm()
{
    static FakeLvm fake;
    return fake;
}

void ranProgram(const std::vector<std::string>& arguments, const orb::process::detail::RunResult& result)
{
    using namespace orb::process::detail;
    RunObserver* const observer = observeRuns(nullptr);
    observeRuns(observer);
    if (observer != nullptr) {
        RunOptions options;
        observer->starting(arguments, options);
        observer->ended(arguments, &result);
    }
}

void logAs(const char* channel, std::uint32_t severity, const std::string& message)
{
    foundation::core::diag::basic_diagnostic_logger logger(channel);
    if ((logger.mask() & severity) == 0) {
        return;
    }
    foundation::core::diag::record record(logger, severity);
    if (record) {
        record.stream() << message;
        record.push();
    }
}

namespace orb::lvm {

void importFromTarIfNecessary(const std::string& tarPath, const std::string& imageName, bool useRootFsArchive)
{
    note("import", {tarPath, imageName, useRootFsArchive ? "rootfs" : "image"});
    fakeLvm().duringImport();
}

void clearDistroImage(const std::string& imageName)
{
    note("clear", {imageName});
    fakeLvm().duringClear();
}

bool startContainerIfNecessary(const std::string& containerName, const std::string& imageName)
{
    note("start", {containerName, imageName});
    return fakeLvm().duringStart();
}

bool stopContainerIfNecessary(const std::string& containerName)
{
    note("stop", {containerName});
    return fakeLvm().duringStop();
}

std::string getContainerCommandPrefix(const std::string& containerName)
{
    return fakeUsesWsl() ? std::string(wslPath) + " -d kelp_hub --exec "
                         : fakeLvm().dockerPath + " exec " + containerOrHub(containerName);
}

std::vector<std::string> getContainerArgumentsPrefix(const std::string& containerName)
{
    fakeLvm().duringSearch();
    if (fakeUsesWsl()) {
        return {wslPath, "-d", "kelp_hub", "--exec"};
    }
    return {fakeLvm().dockerPath, "exec", containerOrHub(containerName)};
}

std::string getContainerExecutablePath()
{
    fakeLvm().duringSearch();
    return fakeUsesWsl() ? wslPath : fakeLvm().dockerPath;
}

void applySharedEnvironment(std::vector<std::string>& args, std::map<std::string, std::string>& env)
{
    env.try_emplace("LD_LIBRARY_PATH", runtimePath);
    if (fakeUsesWsl()) {
        listInWslenv(env);
    } else if (!args.empty()) {
        insertOptions(args, env);
    }
}

std::string addKVRelease(const std::string& name)
{
    return name + "_R1";
}

const std::u16string& getContainerTarsDirectory()
{
    static const std::u16string folder = u"/tree/tar_files";
    return folder;
}

} // namespace orb::lvm

void kelp_container_setup(int /*outputCount*/, hxArray* /*outputs*/[], int inputCount, hxArray* inputs[])
{
    note("gateway setup", inputCount > 0 ? std::vector{foundation::core::text::cvt_ustring_utf8(get_ustring(inputs[0]))}
                                         : std::vector<std::string>{});
    fakeLvm().duringImport();
}

void kelp_container_teardown(int /*outputCount*/, hxArray* /*outputs*/[], int /*inputCount*/, hxArray* /*inputs*/[])
{
    note("gateway teardown", {});
    fakeLvm().duringClear();
}

void kelp_container_wsl_check(int /*outputCount*/, hxArray* outputs[], int /*inputCount*/, hxArray* /*inputs*/[])
{
    note("gateway check", {});
    fakeLvm().duringCheck();
    outputs[0] = hxCreateDoubleScalar(fakeLvm().checkResult);
}

const char* const libzqorb_lvm_version = "1.2.3.4";
const char* const libzqorb_lvm_build_date = "Nov 21 2026";
