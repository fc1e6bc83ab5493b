// What becomes of the adapters that the system tells of, and of its refusals. The program's own GetAdaptersAddresses
// gives them, in the place of the system's.
#include "host/network.h"

#include <gtest/gtest.h>

#include <winsock2.h>
#include <ws2tcpip.h>

#include <iphlpapi.h>

#include <deque>
#include <string>
#include <system_error>

namespace {

// The list that the system gives.
class Answer {
public:
    void add(const wchar_t* name, const wchar_t* description, const std::deque<std::string>& addresses)
    {
        Adapter& adapter = adapters_.emplace_back();
        adapter.name = name;
        adapter.description = description;
        adapter.item.FriendlyName = adapter.name.data();
        adapter.item.Description = adapter.description.data();
        for (const std::string& text : addresses) {
            adapter.add(text);
        }
        if (adapters_.size() > 1) {
            adapters_[adapters_.size() - 2].item.Next = &adapter.item;
        }
    }

    const IP_ADAPTER_ADDRESSES& first() const { return adapters_.front().item; }

private:
    struct Address {
        IP_ADAPTER_UNICAST_ADDRESS item{};
        sockaddr_storage address{};
    };
    struct Adapter {
        IP_ADAPTER_ADDRESSES item{};
        std::wstring name;
        std::wstring description;
        std::deque<Address> addresses;

        void add(const std::string& text)
        {
            Address& address = addresses.emplace_back();
            auto& v4 = reinterpret_cast<sockaddr_in&>(address.address);
            auto& v6 = reinterpret_cast<sockaddr_in6&>(address.address);
            const bool isV6 = text.find(':') != std::string::npos;
            EXPECT_EQ(inet_pton(isV6 ? AF_INET6 : AF_INET, text.c_str(),
                                isV6 ? static_cast<void*>(&v6.sin6_addr) : static_cast<void*>(&v4.sin_addr)),
                      1);
            address.address.ss_family = isV6 ? AF_INET6 : AF_INET;
            address.item.Address.lpSockaddr = reinterpret_cast<sockaddr*>(&address.address);
            address.item.Address.iSockaddrLength = sizeof address.address;
            if (addresses.size() == 1) {
                item.FirstUnicastAddress = &address.item;
            } else {
                addresses[addresses.size() - 2].item.Next = &address.item;
            }
        }
    };

    std::deque<Adapter> adapters_;
};

ULONG code = ERROR_SUCCESS;
Answer answer;
// How often the buffer is said to be too small first.
int overflows = 0;

} // namespace

ULONG WINAPI GetAdaptersAddresses(ULONG family, ULONG, PVOID, PIP_ADAPTER_ADDRESSES adapters, PULONG size)
{
    EXPECT_EQ(family, static_cast<ULONG>(AF_UNSPEC));
    if (code != ERROR_SUCCESS) {
        return code;
    }
    if (overflows > 0) {
        --overflows;
        *size *= 2;
        return ERROR_BUFFER_OVERFLOW;
    }
    *adapters = answer.first();
    return ERROR_SUCCESS;
}

namespace {

using namespace foundation::core::net;

std::string narrow(const std::u16string& text)
{
    return {text.begin(), text.end()};
}

// An adapter as text: name, description, addresses with their version, loopback addresses with a star.
std::string described(const NetworkInterface& adapter)
{
    std::string text = narrow(adapter.getFriendlyName()) + "|" + narrow(adapter.getDescription());
    for (const InetAddress& address : adapter.getInetAddresses()) {
        text += " " + address.getHostAddress() + "/" + std::to_string(address.getVersion());
        text += address.isLoopback() ? "*" : "";
    }
    return text;
}

TEST(NetworkAnswers, EachAdapterHasItsTextsAndAllItsAddressesInTheirOrder)
{
    answer = {};
    answer.add(L"Loopback", L"Software Loopback", {"::1", "127.0.0.1"});
    answer.add(L"vEthernet (WSL)", L"Hyper-V Virtual Ethernet Adapter", {"fe80::1", "172.20.0.1", "172.20.0.2"});
    answer.add(L"Wi-Fi", L"", {});
    code = ERROR_SUCCESS;
    for (const int before : {0, 1, 3}) {
        overflows = before;
        std::deque<std::string> found;
        for (const NetworkInterface& adapter : NetworkInterface::list()) {
            found.push_back(described(adapter));
        }
        EXPECT_EQ(found, (std::deque<std::string>{
                             "Loopback|Software Loopback ::1/6* 127.0.0.1/4*",
                             "vEthernet (WSL)|Hyper-V Virtual Ethernet Adapter fe80::1/6 172.20.0.1/4 172.20.0.2/4",
                             "Wi-Fi|"}));
    }
}

TEST(NetworkAnswers, TheWholeOf127AndOneAddressOfVersionSixAreLoopback)
{
    answer = {};
    answer.add(L"x", L"x",
               {"127.0.0.0", "127.255.255.254", "126.255.255.255", "128.0.0.1", "0.0.0.127", "::1", "::", "::2", "1::1",
                "fe80::1"});
    code = ERROR_SUCCESS;
    std::string loopbacks;
    for (const InetAddress& address : NetworkInterface::list().at(0).getInetAddresses()) {
        loopbacks += address.isLoopback() ? address.getHostAddress() + " " : "";
    }
    EXPECT_EQ(loopbacks, "127.0.0.0 127.255.255.254 ::1 ");
}

TEST(NetworkRefusals, WithoutAnAddressThereAreNoAdapters)
{
    for (const long refusal : {ERROR_NO_DATA, ERROR_ADDRESS_NOT_ASSOCIATED}) {
        code = static_cast<ULONG>(refusal);
        EXPECT_TRUE(NetworkInterface::list().empty()) << code;
    }
}

TEST(NetworkRefusals, AnythingElseIsAnErrorWithTheSystemsCode)
{
    for (const long refusal : {ERROR_INVALID_PARAMETER, ERROR_NOT_ENOUGH_MEMORY}) {
        code = static_cast<ULONG>(refusal);
        try {
            NetworkInterface::list();
            ADD_FAILURE() << "no error";
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), std::error_code(static_cast<int>(refusal), std::system_category()));
        }
    }
}

} // namespace
