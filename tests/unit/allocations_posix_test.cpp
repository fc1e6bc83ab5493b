// What operations allocate, and what becomes of an allocation that fails. Not on Windows: there the standard library's
// own code lies in a DLL and keeps the allocator that it was built with.
#include "host_fixture.h"

#include "wsl.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

// Only the fakes' texts are smaller.
constexpr std::size_t largeBlock = 1'000'000;

std::atomic<int> largeBlocks{0};
std::atomic<bool> refusesNext{false};

void* allocate(std::size_t size)
{
    if (refusesNext.exchange(false)) {
        throw std::bad_alloc();
    }
    if (size >= largeBlock) {
        ++largeBlocks;
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

// These take the place of the standard library's, in the libraries too. The others call them.
void* operator new(std::size_t size)
{
    return allocate(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

using namespace fake;
using namespace orb::lvm::detail;

class Allocations : public HostTest {};

// The path and the name are so long that each text made of them is counted.
TEST_F(Allocations, ListsAreNotFormattedWhileTheChannelIsOff)
{
    const std::string path(largeBlock, 'p');
    const std::string name(largeBlock, 'n');
    host().expectRun({"where", "wsl.exe"}, {0, path, ""});
    host().expectRun({path, "-v"});
    getExecutablePath();
    host().mask("orb:lvm:wsl") = errorBit;

    int blocks[2] = {};
    for (const int additional : {0, 1}) {
        setVariable("KELP_ADDITIONAL_LOGGING", additional == 0 ? "0" : "1");
        host().expectRun({path, "--list", "-q"}, {0, name, ""});
        const int before = largeBlocks;
        EXPECT_EQ(getDistros(false), std::vector<std::string>{name});
        blocks[additional] = largeBlocks - before;
    }
    EXPECT_GT(blocks[0], 0);
    EXPECT_EQ(blocks[1], blocks[0]);
}

// Whatever it is that keeps the folder from being made.
TEST_F(Allocations, AnAllocationThatFailsWhileTheFolderIsMadeLeavesItToTheImport)
{
    const TestFolder folder;
    const std::string location = folder.entry("new");
    const std::string start = "importFromTarIfNecessary: localDistroLocationPath ";
    host().temporaryName = wide(location);
    expectWslLookup();
    expectListing(false, {});
    host().expectRun({wslPath, "--import", "mine", location, "archive", "--version", "2"});
    host().afterEvent = [&](const std::string& event) {
        refusesNext = event == wslDetail(start + "= " + location + " doesn't exist, will attempt to create");
    };
    wslImportFromTarIfNecessary("archive", "mine");
    host().afterEvent = nullptr;
    EXPECT_FALSE(std::filesystem::exists(location));
    EXPECT_EQ(host().eventsLike("log orb:lvm:wsl 512"),
              Events{wslError(start + "folder wasn't created: " + std::bad_alloc().what())});
}

} // namespace
