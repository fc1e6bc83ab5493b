#include "refused_system_call.h"

#include <array>
#include <cstddef>
#include <exception>
#include <thread>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

namespace {

bool refuse(const RefusedSystemCall& call)
{
    const bool any = !call.argument;
    const std::size_t argument = any ? 0 : call.argument->index;
    const auto offset = static_cast<std::uint32_t>(offsetof(seccomp_data, args) + argument * sizeof(std::uint64_t));
    // Arguments are compared in their lower halves.
    std::array<sock_filter, 6> rules{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call.number),
                 static_cast<unsigned char>(any ? 2 : 0), 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, any ? 0 : call.argument->value, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(call.error)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog program{static_cast<unsigned short>(rules.size()), rules.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

} // namespace

std::string failureWithout(const RefusedSystemCall& call, const std::function<void()>& work)
{
    std::string failure = "none";
    std::thread([&] {
        if (!refuse(call)) {
            failure = "the test cannot refuse system calls";
            return;
        }
        try {
            work();
        } catch (const std::exception& error) {
            failure = error.what();
        }
    }).join();
    return failure;
}
