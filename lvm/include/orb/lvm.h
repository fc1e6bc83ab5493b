// libzqorb_lvm: a Linux environment for the host's companion service, the hub.
//
// The environment is a WSL distribution or a Docker image with a long-lived container. Which of the two is decided
// by the environment variable USE_WSL, read by each function below that depends on it: unset or exactly "1" is
// WSL, anything else, an empty value included, is Docker. Once the variable has been found set, its first value stays
// in force for the process.
//
// Text            All narrow strings are UTF-8. Paths are in the system's native form.
// Threads         Every function may be called from any thread, and runs its child processes on that thread until they
//                 have ended. There is no lock: of two threads that provision at the same time both may try, and the
//                 one that the backend refuses gets the backend's error; threads that need wsl.exe before it has been
//                 found each look for it, and what is found first is kept. So an observer of runs (host/process.h) may
//                 call these functions, whose own runs it sees as well. The environment is read with getenv, so
//                 nothing may change it meanwhile.
// Default names   The distribution and the image are "kelp_hub_" followed by the host's release ("kelp_hub" when the
//                 host reports none), the container is "kelp_hub".
// Cached          For the life of the process: the path of wsl.exe, the release text, the archive directory, and
//                 USE_WSL once it is set. A later change of the configured release or installation root is not seen; one
//                 of the temporary folder, the language and the channel masks is. Nothing else is kept;
//                 distributions, images and docker.exe are asked for every time.
//                 wsl.exe is the first program found that answers "-v" with status 0. Who ends the runs of that
//                 search from outside (RunObserver::shouldTerminate) makes them fail, and a worse path is kept: leave
//                 {"where", "wsl.exe"}, {"which", "wsl.exe"} and {PATH, "-v"} alone, or call
//                 getContainerExecutablePath() once before runs are ended.
// Read            USE_WSL; USE_DOCKER_REPOSITORY ("1": pull the image from the registry before the archive is used);
//                 AUX_DOCKER_ARGS (further arguments of "docker run", split at white space, no quoting);
//                 KELP_ADDITIONAL_LOGGING ("1": log the arguments and the result of each distribution listing).
// Logged          On the channels "orb:lvm:common", "orb:lvm:wsl" and "orb:lvm:docker", at the levels 8 (detail) and
//                 512 (error). While a channel's mask has none of the bits 1, 4, 8, 256 and 512, its messages are
//                 written on the channel "orb:lvm" instead, as far as that one's mask lets them. To silence one channel
//                 alone give it the mask 1.
// Errors          The five errors of the catalogue are foundation::core::except::Exception<TAG, std::exception, void>
//                 with a TAG of orb::container_support, declared in host/exceptions.h; catch
//                 foundation::core::except::IMsgIDException for all of them. Besides these pass through:
//                 std::system_error when a program is there but cannot be started, a text is not well-formed, or the
//                 system does not tell its network adapters, also while an address is waited for;
//                 std::filesystem::filesystem_error when a file cannot be looked at; std::invalid_argument when a name
//                 or a path cannot be passed to a program: it holds a zero character, or, on Windows, is not UTF-8.
//                 A program that is not there is no exception but a run that failed with status 127.
#pragma once

#include <map>
#include <string>
#include <vector>

#if defined(ZQORB_LVM_STATIC)
#define ZQORB_LVM_API
#elif defined(_WIN32)
#if defined(ZQORB_LVM_BUILD)
#define ZQORB_LVM_API __declspec(dllexport)
#else
#define ZQORB_LVM_API __declspec(dllimport)
#endif
#else
#define ZQORB_LVM_API __attribute__((visibility("default")))
#endif

#if defined(_WIN32)
#define ZQORB_LVM_TAG
#else
#define ZQORB_LVM_TAG __attribute__((visibility("default")))
#endif

class hxArray;

// The errors of the message catalogue "orb:container_support", one tag type each, with their arguments in order.
namespace orb::container_support {

inline constexpr char catalogue[] = "orb:container_support";

// The Docker client was not found. No arguments.
struct ZQORB_LVM_TAG DOCKER_NOT_AVAILABLE {
    static constexpr char identifier[] = "DOCKER_NOT_AVAILABLE";
};
// The image is not listed after it was pulled, loaded or imported. 1: the image name.
struct ZQORB_LVM_TAG IMAGE_NOT_EXIST {
    static constexpr char identifier[] = "IMAGE_NOT_EXIST";
};
// Docker could not load or import the archive. 1: the archive; 2: the image name; 3: what the client printed on
// standard error.
struct ZQORB_LVM_TAG TAR_FILE_LOAD_ERROR {
    static constexpr char identifier[] = "TAR_FILE_LOAD_ERROR";
};
// Docker only: the archive does not exist. 1: the archive.
struct ZQORB_LVM_TAG TAR_FILE_NOT_AVAILABLE {
    static constexpr char identifier[] = "TAR_FILE_NOT_AVAILABLE";
};
// WSL could not import the archive, which may also be missing. 1: the archive; 2: "cout = ", a line end, what wsl.exe
// printed on standard output, a line end, "cerr = ", a line end, its standard error and a line end, as captured.
struct ZQORB_LVM_TAG WSL_CANNOT_IMPORT_TAR_FILE {
    static constexpr char identifier[] = "WSL_CANNOT_IMPORT_TAR_FILE";
};

} // namespace orb::container_support

namespace orb::lvm {

// The stem of all default names, and the default container name as it stands.
inline constexpr char hubName[] = "kelp_hub";

// The files that importFromTarIfNecessary() looks for in getContainerTarsDirectory(): the archives of a root file system
// and of a saved image, each packed and as it is.
inline constexpr char16_t packedDistroArchive[] = u"kelp_hub_distro.tar.gz";
inline constexpr char16_t distroArchive[] = u"kelp_hub_distro.tar";
inline constexpr char16_t packedImageArchive[] = u"kelp_hub_docker.tar.gz";
inline constexpr char16_t imageArchive[] = u"kelp_hub_docker.tar";

// Makes the environment exist: does nothing when the distribution or image is there, otherwise creates it from an
// archive. Under WSL, when the distribution is there but stopped and the host has no address on the WSL network, the
// default distribution is started, whichever was asked for, and the address waited for, at most 0.3 s.
//
// tarPath            The archive file, relative paths from the current folder; not looked at when the environment is
//                    there. Empty: "kelp_hub_distro.tar.gz" (WSL) or "kelp_hub_docker.tar.gz" (Docker), or
//                    the same name without ".gz", in getContainerTarsDirectory().
// imageName          The distribution or image. Empty: the default name. For Docker it is the repository's last
//                    component, without registry, path or tag.
// useRootFsArchive   Docker only. True: the archive is a root file system for "docker import" (default
//                    "kelp_hub_distro.tar.gz", else "kelp_hub_docker.tar"); name the image then, an empty
//                    imageName is passed to "docker import" as it is. False: a saved image for "docker load".
//
// A new distribution's files lie in a new folder of the temporary directory (temp_directory_name() of host/files.h), for
// as long as the distribution exists.
//
// Throws WSL_CANNOT_IMPORT_TAR_FILE; DOCKER_NOT_AVAILABLE, TAR_FILE_NOT_AVAILABLE, TAR_FILE_LOAD_ERROR,
// IMAGE_NOT_EXIST. An import that fails, or cannot be started, leaves its empty folder in the temporary directory. When
// the registry pull is enabled and fails with text on standard error, "ERROR in pullImageFromRegistry: ", that text as
// it is, of one line or several, and a line end go to standard output, and the archive is used.
ZQORB_LVM_API void importFromTarIfNecessary(const std::string& tarPath, const std::string& imageName,
                                            bool useRootFsArchive);

// Removes the distribution with its files, or the image. Empty name: the default. Failure is only logged, at the error
// level on "orb:lvm:common".
ZQORB_LVM_API void clearDistroImage(const std::string& imageName);

// Starts the container `containerName` (empty: "kelp_hub") of the image `imageName` (empty: the default), detached, on
// the host's network, with the arguments of AUX_DOCKER_ARGS. True when the client reports success; a container that
// runs already makes it false. Under WSL there is nothing to start: true.
ZQORB_LVM_API bool startContainerIfNecessary(const std::string& containerName, const std::string& imageName);

// Stops and removes the container (empty: "kelp_hub"). True when the client reports success. Under WSL: true.
ZQORB_LVM_API bool stopContainerIfNecessary(const std::string& containerName);

// The start of a command line that runs a program inside the environment; the program and its arguments are appended.
// Under WSL it is always the default distribution that runs the program, and `containerName` is ignored; under Docker
// it is the container of that name (empty: "kelp_hub"). The path is quoted when it holds a blank. The WSL form ends in
// " --exec " with a blank, the Docker form in the container name without one.
ZQORB_LVM_API std::string getContainerCommandPrefix(const std::string& containerName);

// The same as an argument vector, unquoted: the program and its arguments are appended as elements.
ZQORB_LVM_API std::vector<std::string> getContainerArgumentsPrefix(const std::string& containerName);

// The path of wsl.exe ("C:\Windows\System32\wsl.exe" when none was found), or of docker.exe (empty when the look-up
// found none). It is as the look-up printed it, here and in the prefixes: on Windows a path with letters outside ASCII
// may be in the code page of consoles, which run() of host/process.h understands.
ZQORB_LVM_API std::string getContainerExecutablePath();

// Prepares a command that runs inside the environment so that it sees the variables of `env`. The hub runtime's library
// path is put at the end of LD_LIBRARY_PATH in `env` first, in both backends.
//
// WSL: `args` is left alone, and `env` gains a WSLENV entry that names its variables; a WSLENV entry that `env` has
// already stays as it is and decides alone what is shared. Start wsl.exe with `env` added to its environment. A key may
// carry a WSLENV flag ("NAME/p").
// Docker: for each variable "-e" and "NAME=VALUE" are put in front of the last element of `args`, so pass the vector of
// getContainerArgumentsPrefix() before the program is appended. A flag is dropped from the name; empty `args` stay
// empty.
ZQORB_LVM_API void applySharedEnvironment(std::vector<std::string>& args, std::map<std::string, std::string>& env);

// `name`, "_" and the host's release; `name` alone when the host reports none.
ZQORB_LVM_API std::string addKVRelease(const std::string& name);

// The folder of the archives: "toolbox/shared/kavori/kelp/tar_files" under the host's installation root, in native form
// without a separator at the end. The same object at each call, valid until the process exits.
ZQORB_LVM_API const std::u16string& getContainerTarsDirectory();

} // namespace orb::lvm

extern "C" {

// The gateways that the host's interpreter calls; host/array.h has hxArray and its functions. Each takes the number of
// outputs, the output slots, the number of inputs and the inputs. They throw: compile what calls them by name with /EHs
// when the compiler is MSVC, which otherwise takes an extern "C" function to throw nothing.

// Provisions: importFromTarIfNecessary(inputs[0], "", false). A first input that is missing or no character array
// means the default archive; further inputs are ignored. Writes no output. Throws what importFromTarIfNecessary throws.
ZQORB_LVM_API void kelp_container_setup(int outputCount, hxArray* outputs[], int inputCount, hxArray* inputs[]);

// Removes: clearDistroImage(""). Inputs and outputs are ignored.
ZQORB_LVM_API void kelp_container_teardown(int outputCount, hxArray* outputs[], int inputCount, hxArray* inputs[]);

// Tests WSL, whichever backend is selected: stores a double scalar in outputs[0], 0 when distributions can be listed,
// -3 when not. There must be room for outputs[0] even when outputCount is 0; the array is the caller's to destroy.
ZQORB_LVM_API void kelp_container_wsl_check(int outputCount, hxArray* outputs[], int inputCount, hxArray* inputs[]);

// The library's version, four numbers separated by dots, and its date ("Nov 21 2026"): that of the commit it was built
// from, or of the build when the sources were no commit's.
extern ZQORB_LVM_API const char* const libzqorb_lvm_version;
extern ZQORB_LVM_API const char* const libzqorb_lvm_build_date;
}
