// What becomes of the system's answers when it has no adapters to tell of. The program's own GetAdaptersAddresses gives
// them, in the place of the system's.
#include "host/network.h"

#include <gtest/gtest.h>

#include <winsock2.h>

#include <iphlpapi.h>

#include <system_error>

namespace {

ULONG answer = ERROR_SUCCESS;

} // namespace

ULONG WINAPI GetAdaptersAddresses(ULONG, ULONG, PVOID, PIP_ADAPTER_ADDRESSES, PULONG)
{
    return answer;
}

namespace {

using foundation::core::net::NetworkInterface;

TEST(NetworkRefusals, WithoutAnAddressThereAreNoAdapters)
{
    for (const long code : {ERROR_NO_DATA, ERROR_ADDRESS_NOT_ASSOCIATED}) {
        answer = static_cast<ULONG>(code);
        EXPECT_TRUE(NetworkInterface::list().empty()) << code;
    }
}

TEST(NetworkRefusals, AnythingElseIsAnErrorWithTheSystemsCode)
{
    for (const long code : {ERROR_INVALID_PARAMETER, ERROR_NOT_ENOUGH_MEMORY}) {
        answer = static_cast<ULONG>(code);
        try {
            NetworkInterface::list();
            ADD_FAILURE() << "no error";
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), std::error_code(static_cast<int>(code), std::system_category()));
        }
    }
}

} // namespace
