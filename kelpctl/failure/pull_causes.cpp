#include "failure/pull_causes.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelpctl {
namespace {

struct Words {
    std::string_view said;
    AdviceKey cause;
};

// The first row whose words were said decides: "denied" is also what a registry says whose image does not exist.
constexpr std::array table = {
    Words{"docker-credential-", "PULL_CREDENTIALS"},
    Words{"toomanyrequests", "PULL_LIMIT"},
    Words{"x509: ", "PULL_CERTIFICATE"},
    Words{"no matching manifest", "PULL_PROCESSOR"},
    Words{"manifest unknown", "PULL_MISSING"},
    Words{"unauthorized", "PULL_DENIED"},
    Words{"denied", "PULL_DENIED"},
    Words{"proxyconnect", "PULL_NETWORK"},
    Words{"no such host", "PULL_NETWORK"},
    Words{"connection refused", "PULL_NETWORK"},
    Words{"i/o timeout", "PULL_NETWORK"},
    Words{"TLS handshake timeout", "PULL_NETWORK"},
    Words{"Client.Timeout exceeded", "PULL_NETWORK"},
    Words{"network is unreachable", "PULL_NETWORK"},
};

} // namespace

AdviceKey causeOfPull(const Run& pull)
{
    const auto row = std::find_if(table.begin(), table.end(), [&pull](const Words& each) {
        return pull.error.find(each.said) != std::string::npos;
    });
    return row == table.end() ? AdviceKey() : row->cause;
}

} // namespace kelpctl
