// What holds for every operation: what came before, and the thread it is called on, change nothing; and whatever a host
// service throws passes to the caller, before anything else is done.
#include "fake_frame.h"
#include "generator.h"
#include "host_fixture.h"

#include "docker.h"
#include "frame.h"
#include "orb/lvm.h"
#include "wsl.h"

#include "host/exceptions.h"

#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace {

using namespace fake;
using namespace orb::lvm;

class Operations : public HostTest, public testing::WithParamInterface<const char*> {
protected:
    Operations()
    {
        setVariable("USE_WSL", GetParam());
        setVariable("USE_DOCKER_REPOSITORY", "1");
        setVariable("KELP_ADDITIONAL_LOGGING", "1");
        setVariable("AUX_DOCKER_ARGS", " -v  x ");
        host().anyRun = answer;
        host().fileTypes = {{u"D:\\docker.exe", std::filesystem::file_type::regular},
                            {u"archive", std::filesystem::file_type::regular}};
        host().nativeForm = folder.path().u16string();
        host().temporaryName = location.u16string();
        // What is kept for the process is kept from here on.
        getContainerTarsDirectory();
        addKVRelease("");
        detail::getExecutablePath();
    }

    ~Operations() override
    {
        host().anyRun = nullptr;
        host().afterEvent = nullptr;
    }

    static RunResult answer(const Arguments& arguments)
    {
        if (arguments.at(0) == "where") {
            return {0, arguments.at(1) == "wsl.exe" ? "W:\\wsl.exe\r\n" : "D:\\docker.exe\r\n", ""};
        }
        const bool isListing = arguments.at(1) == "--list" || arguments.at(1) == "images";
        if (isListing) {
            return {0, arguments.back() == "--running" ? "other\r\n" : "other\r\nmine\r\n", "a warning"};
        }
        if (arguments.at(1) == "container") {
            return {0, "one two", ""};
        }
        const bool succeeds = arguments.at(1) == "-v" || arguments.at(1) == "-l" || arguments.back() == "image";
        return succeeds ? RunResult{0, "output", ""} : RunResult{7, "output", "error"};
    }

    static std::string joined(const std::vector<std::string>& elements)
    {
        std::string text;
        for (const std::string& element : elements) {
            text += "<" + element + ">";
        }
        return text;
    }

    static std::string shared()
    {
        Arguments args = {"a", "b"};
        Environment env = {{"X/p", "1"}};
        applySharedEnvironment(args, env);
        std::string text = joined(args);
        for (const auto& [key, value] : env) {
            text += key + "=" + value + ";";
        }
        return text;
    }

    static std::string removed(const std::string& name)
    {
        clearDistroImage(name);
        return "removed";
    }

    std::string imported(const std::string& archive, const std::string& name, bool useRootFsArchive) const
    {
        std::filesystem::remove_all(location);
        try {
            importFromTarIfNecessary(archive, name, useRootFsArchive);
        } catch (const foundation::core::except::IMsgIDException& error) {
            std::string text = error.message().identifier;
            for (const auto& argument : error.message().arguments) {
                text += "<" + argument.text() + ">";
            }
            return text;
        }
        return "imported";
    }

    std::string setUp(const std::u16string& archive) const
    {
        std::filesystem::remove_all(location);
        hxArray text{"text", hxClass::character, archive, 0};
        hxArray* inputs[] = {&text};
        try {
            kelp_container_setup(0, nullptr, 1, inputs);
        } catch (const foundation::core::except::IMsgIDException& error) {
            return error.message().identifier;
        }
        return "set up";
    }

    static std::string checked()
    {
        hxArray* outputs[] = {nullptr};
        kelp_container_wsl_check(1, outputs, 0, nullptr);
        const std::string text = std::to_string(outputs[0]->scalar);
        hxDestroyArray(outputs[0]);
        return text;
    }

    // What an operation gives, and all that happens meanwhile.
    Events called(const std::string& name) const
    {
        host().forgetEvents();
        const std::string result = operations.at(name)();
        Events events = host().events();
        events.push_back("result " + result);
        return events;
    }

    TestFolder folder;
    const std::filesystem::path location = folder.path() / "new";
    const std::map<std::string, std::function<std::string()>> operations = {
        {"import the default", [this] { return imported("", "", false); }},
        {"import the default root", [this] { return imported("", "", true); }},
        {"import an archive", [this] { return imported("archive", "absent", false); }},
        {"import a root", [this] { return imported("archive", "absent", true); }},
        {"import what is there", [this] { return imported("archive", "mine", false); }},
        {"import what runs", [this] { return imported("", "other", false); }},
        {"set up", [this] { return setUp(u""); }},
        {"set up an archive", [this] { return setUp(u"archive"); }},
        {"check", checked},
        {"remove the default", [] { return removed(""); }},
        {"remove one", [] { return removed("image"); }},
        {"start the default", [] { return std::to_string(int{startContainerIfNecessary("", "")}); }},
        {"start one", [] { return std::to_string(int{startContainerIfNecessary("c", "image")}); }},
        {"stop the default", [] { return std::to_string(int{stopContainerIfNecessary("")}); }},
        {"stop one", [] { return std::to_string(int{stopContainerIfNecessary("c")}); }},
        {"text prefix", [] { return getContainerCommandPrefix(""); }},
        {"text prefix of one", [] { return getContainerCommandPrefix("c"); }},
        {"prefix", [] { return joined(getContainerArgumentsPrefix("")); }},
        {"prefix of one", [] { return joined(getContainerArgumentsPrefix("c")); }},
        {"path", getContainerExecutablePath},
        {"share", shared},
        {"name", [] { return addKVRelease("name"); }},
        {"tag", detail::hubTag},
        {"list", [] { return joined(detail::getDistros(false)); }},
        {"list running", [] { return joined(detail::getDistros(true)); }},
        {"address", detail::getWslIpAddress},
        {"images", [] { return joined(detail::getImageRepositories()); }},
        {"containers", [] { return joined(detail::getContainersByAncestor("")); }},
        {"containers of one", [] { return joined(detail::getContainersByAncestor("i")); }},
        {"pull", [] { return std::to_string(int{detail::pullImageFromRegistry("r", "n", "t")}); }},
    };

private:
    std::ostringstream output_;
    // What the registry's failures are printed on.
    struct Redirected {
        explicit Redirected(std::ostream& to) : before(std::cout.rdbuf(to.rdbuf())) {}
        ~Redirected() { std::cout.rdbuf(before); }
        Redirected(const Redirected&) = delete;
        Redirected& operator=(const Redirected&) = delete;
        std::streambuf* before;
    } redirected_{output_};
};

TEST_P(Operations, DoTheSameWheneverAndOnWhateverThreadTheyAreCalled)
{
    std::map<std::string, Events> first;
    std::vector<std::string> names;
    for (const auto& [name, operation] : operations) {
        first[name] = called(name);
        names.push_back(name);
    }
    Generator any(1);
    for (int call = 0; call < 300 && !HasFailure(); ++call) {
        const std::string name = any.oneOf(names);
        Events events;
        if (any.oneIn(3)) {
            std::thread([&] { events = called(name); }).join();
        } else {
            events = called(name);
        }
        EXPECT_EQ(events, first.at(name)) << name << " as call " << call;
    }
}

struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};
// What is no std::exception, as a host may throw to unwind.
struct Interruption {};

TEST_P(Operations, LetWhateverAServiceThrowsPass)
{
    for (const auto& [name, operation] : operations) {
        called(name);
        const Events all = host().events();
        for (std::size_t i = 0; i < all.size() && !HasFailure(); ++i) {
            host().forgetEvents();
            const bool interrupts = i % 2 == 0;
            host().afterEvent = [i, interrupts](const std::string&) {
                if (host().events().size() == i + 1) {
                    if (interrupts) {
                        throw Interruption();
                    }
                    throw Failure("as the test wants");
                }
            };
            if (interrupts) {
                EXPECT_THROW(operation(), Interruption) << name << " at " << all[i];
            } else {
                EXPECT_THROW(operation(), Failure) << name << " at " << all[i];
            }
            host().afterEvent = nullptr;
            EXPECT_EQ(host().events(), Events(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(i) + 1));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Backend, Operations, testing::Values("1", "0"));

} // namespace
