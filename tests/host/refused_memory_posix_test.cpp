// What a run does when the system has no memory for what a program prints.
#include "process_system.h"
#include "refused_system_call.h"

#include "host/process.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <new>

#include <sys/syscall.h>
#include <sys/wait.h>

TEST(RefusedMemory, IsBadAllocAndEndsTheProgram)
{
    constexpr std::uint32_t piece = 1024 * 1024;
    const std::size_t handles = openHandles();
    const std::string failure = failureWithout({SYS_mmap, ENOMEM, {{1, piece}}}, [] {
        orb::process::detail::run(child({"flood", "200000", "0"}));
    });
    EXPECT_EQ(failure, std::bad_alloc().what());
    EXPECT_EQ(openHandles(), handles);
    EXPECT_TRUE(::waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD) << "a program was left";
}
