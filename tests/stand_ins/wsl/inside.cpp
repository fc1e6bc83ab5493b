#include "inside.h"

#include "output.h"
#include "process.h"
#include "relays.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace stand_in {
namespace {

[[noreturn]] void giveUp(const char* step)
{
    printRawError("wsl stand-in: " + std::string(step) + ": " + std::strerror(errno) + "\n");
    ::_exit(1);
}

void require(int result, const char* step)
{
    if (result != 0) {
        giveUp(step);
    }
}

// The form of the messages that come from within; the line numbers are those that were once seen.
void reportRelayError(const std::string& function, int line, const std::string& call)
{
    printRawError(relayError(::getpid(), function, line, call, std::strerror(errno)));
}

void bindDevice(const char* name)
{
    const std::string target = "dev/" + std::string(name);
    const int file = ::open(target.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    ::close(file);
    require(::mount(("/dev/" + std::string(name)).c_str(), target.c_str(), nullptr, MS_BIND, nullptr), "device");
}

// With the new root as the current folder, and the old one still there.
void mountCallersFolder(const std::string& folder)
{
    if (folder.empty()) {
        return;
    }
    ::mkdir("mnt", 0755);
    ::mkdir("mnt/z", 0755);
    require(::mount("tmpfs", "mnt/z", "tmpfs", MS_NOSUID, "mode=755"), "drive Z");
    const std::string target = callersFolderInside(folder).substr(1);
    std::filesystem::create_directories(target);
    require(::mount(folder.c_str(), target.c_str(), nullptr, MS_BIND, nullptr), "the caller's folder");
}

// Mounts live in this namespace only and end with it.
void enterRoot(const std::filesystem::path& root, const std::string& callersFolder)
{
    require(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "private mounts");
    require(::mount(root.c_str(), root.c_str(), nullptr, MS_BIND | MS_REC, nullptr), "root file system");
    require(::chdir(root.c_str()), "root file system");
    ::mkdir("proc", 0555);
    ::mkdir("dev", 0755);
    require(::mount("proc", "proc", "proc", MS_NOSUID | MS_NOEXEC | MS_NODEV, nullptr), "/proc");
    require(::mount("tmpfs", "dev", "tmpfs", MS_NOSUID, "mode=755"), "/dev");
    for (const char* device : {"null", "zero", "full", "random", "urandom", "tty"}) {
        bindDevice(device);
    }
    require(::symlink("/proc/self/fd", "dev/fd"), "/dev/fd");
    mountCallersFolder(callersFolder);
    // The old root is stacked on top of the new one, and taken away.
    require(static_cast<int>(::syscall(SYS_pivot_root, ".", ".")), "new root");
    require(::umount2(".", MNT_DETACH), "old root");
    require(::chdir("/"), "new root");
}

void becomeUser(const User& user)
{
    require(::setgroups(0, nullptr), "groups");
    require(::setgid(user.group), "group");
    require(::setuid(user.number), "user");
}

// The caller's folder is entered as root: on a drive of Windows the user's own rights are others.
bool enterCallersFolder(const Program& program)
{
    return !program.callersFolder.empty() && ::chdir(callersFolderInside(program.callersFolder).c_str()) == 0;
}

void enterFolder(const Program& program)
{
    if (!program.folder.empty() && ::chdir(program.folder.c_str()) == 0) {
        return;
    }
    if (!program.folder.empty()) {
        reportRelayError("CreateProcessParseCommon", 909, "chdir(" + program.folder + ")");
    }
    if (::chdir(program.user.home.c_str()) != 0) {
        require(::chdir("/"), "folder");
    }
}

void resetSignals()
{
    for (int signal = 1; signal < NSIG; ++signal) {
        ::signal(signal, SIG_DFL);
    }
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// The program is looked up in the PATH of its own environment.
[[noreturn]] void becomeProgram(const Program& program)
{
    resetSignals();
    ::clearenv();
    for (const auto& [name, value] : program.environment) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    const bool entered = enterCallersFolder(program);
    becomeUser(program.user);
    if (!entered) {
        enterFolder(program);
    }
    std::vector<char*> argv;
    for (const std::string& argument : program.arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    ::execvp(argv[0], argv.data());
    reportRelayError("CreateProcessCommon", 640, "execvpe(" + program.arguments[0] + ")");
    ::_exit(programNotStarted);
}

// The first process must not keep the caller's streams open for longer than the programs inside do.
void leaveStreams()
{
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        ::dup2(null, stream);
    }
    ::close(null);
}

// Nothing but the standard streams comes from outside.
void closeOthersThan(int kept)
{
    ::close_range(STDERR_FILENO + 1, static_cast<unsigned>(kept) - 1, 0);
    ::close_range(static_cast<unsigned>(kept) + 1, ~0U, 0);
}

// Orphans inside become this process's children.
bool collectOthers(int options)
{
    for (;;) {
        const pid_t collected = ::waitpid(-1, nullptr, options);
        if (collected == 0) {
            return true;
        }
        if (collected < 0 && errno != EINTR) {
            return false;
        }
    }
}

} // namespace

std::string callersFolderInside(const std::string& folder)
{
    return "/mnt/z" + (folder == "/" ? std::string() : folder);
}

pid_t cloneIntoNamespaces()
{
    constexpr unsigned long flags = CLONE_NEWNS | CLONE_NEWPID | CLONE_NEWUTS | CLONE_NEWIPC | SIGCHLD;
    return static_cast<pid_t>(::syscall(SYS_clone, flags, nullptr, nullptr, nullptr, 0));
}

void runFirstProcess(const Program& program, int endings)
{
    ::signal(SIGPIPE, SIG_IGN);
    takeStreams(program.streams);
    closeOthersThan(endings);
    enterRoot(program.root, program.callersFolder);
    const pid_t child = ::fork();
    if (child == 0) {
        becomeProgram(program);
    }
    leaveStreams();
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    const Ending ending{status, collectOthers(WNOHANG)};
    writeBytes(endings, {reinterpret_cast<const char*>(&ending), sizeof ending});
    ::close(endings);
    collectOthers(0);
    ::_exit(0);
}

} // namespace stand_in
