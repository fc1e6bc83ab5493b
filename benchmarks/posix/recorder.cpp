#include "recorder.h"

#include "bare_process.h"

#include <dlfcn.h>
#include <spawn.h>

namespace benchmarks {

namespace {

std::vector<std::string> copyOf(char* const texts[])
{
    std::vector<std::string> copies;
    for (; *texts != nullptr; ++texts) {
        copies.emplace_back(*texts);
    }
    return copies;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// The folder is not known here; the library starts its programs in the caller's.
class Recorded final : public RecordedProcess {
public:
    Recorded(const char* file, char* const arguments[], char* const environment[])
        : file_(file),
          arguments_(copyOf(arguments)),
          environment_(copyOf(environment)),
          argumentPointers_(pointersTo(arguments_)),
          environmentPointers_(pointersTo(environment_))
    {
    }
    Recorded(const Recorded&) = delete;
    Recorded& operator=(const Recorded&) = delete;

    Captured run() const override
    {
        return runBare({file_.c_str(), argumentPointers_.data(), environmentPointers_.data()});
    }

private:
    std::string file_;
    std::vector<std::string> arguments_;
    std::vector<std::string> environment_;
    std::vector<char*> argumentPointers_;
    std::vector<char*> environmentPointers_;
};

using Recording = std::vector<std::unique_ptr<RecordedProcess>>;
thread_local Recording* current = nullptr;

} // namespace

std::vector<std::unique_ptr<RecordedProcess>> processesStartedBy(const std::function<void()>& work)
{
    Recording recording;
    current = &recording;
    work();
    current = nullptr;
    return recording;
}

} // namespace benchmarks

// Takes the place of the C library's function in this process, for the host-services library too.
extern "C" [[gnu::visibility("default")]] int posix_spawn(pid_t* id, const char* file,
                                                          const posix_spawn_file_actions_t* actions,
                                                          const posix_spawnattr_t* attributes, char* const arguments[],
                                                          char* const environment[])
{
    static const auto original = reinterpret_cast<decltype(&posix_spawn)>(::dlsym(RTLD_NEXT, "posix_spawn"));
    const int error = original(id, file, actions, attributes, arguments, environment);
    if (error == 0 && benchmarks::current != nullptr) {
        benchmarks::current->push_back(std::make_unique<benchmarks::Recorded>(file, arguments, environment));
    }
    return error;
}
