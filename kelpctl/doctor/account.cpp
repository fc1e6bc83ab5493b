#include "doctor/account.h"

#include "asking/limited.h"
#include "terminal/json.h"

#include <array>

namespace kelpctl {
namespace {

namespace json = boost::json;

void examineAccount(const Context& /*context*/, Examination& found)
{
    found.account = within(found.timeLimit, currentAccount);
}

// Docker's engine does not mind.
void judgeAccount(const Examination& found, Findings& findings)
{
    if (!found.account || found.backend != Backend::wsl) {
        return;
    }
    constexpr std::uint32_t sessionOfServices = 0;
    if (found.account->isSystem) {
        findings.problem("WSL_SYSTEM_ACCOUNT");
    } else if (found.account->session == sessionOfServices) {
        findings.note("SESSION_OF_SERVICES");
    }
}

std::string accountText(const Account& account)
{
    std::string text = account.name.empty() ? "not known" : account.name;
    text += account.isSystem ? ", the system's own" : "";
    text += account.elevated ? ", as administrator" : "";
    return text + (account.session ? ", session " + std::to_string(*account.session) : "");
}

void describeAccount(const Examination& found, CheckOutput& out)
{
    const std::optional<Account>& account = found.account;
    json::value& member = out.member("account");
    if (!account) {
        member = nullptr;
        out.row("account", "not known");
        return;
    }
    member = {{"name", textOrNull(account->name)},
              {"elevated", account->elevated},
              {"system", account->isSystem},
              {"session", orNull(account->session)}};
    out.judged("account", accountText(*account), false);
}

constexpr std::array accountRows = {Check{"account", examineAccount, judgeAccount, describeAccount}};

} // namespace

std::span<const Check> accountChecks()
{
    return accountRows;
}

} // namespace kelpctl
