#include "doctor/wsl_settings.h"

#include "asking/limited.h"
#include "terminal/json.h"
#include "terminal/registrations.h"
#include "terminal/text.h"

#include <algorithm>
#include <array>

namespace kelpctl {
namespace {

namespace json = boost::json;

constexpr char notKnown[] = "not known: the system did not tell in time";

void examinePolicies(const Context& /*context*/, Examination& found)
{
    found.wsl.policies = within(found.timeLimit, wslPolicies);
}

bool forbidsWsl(const Policy& policy)
{
    return lowered(policy.name) == "allowwsl" && policy.value == 0;
}

// wsl.exe may have said so by its code.
void judgePolicies(const Examination& found, Findings& findings)
{
    const bool told = std::any_of(findings.all.begin(), findings.all.end(),
                                  [](const Finding& each) { return each.key == AdviceKey("WSL_POLICY"); });
    const std::vector<Policy> policies = found.wsl.policies.value_or(std::vector<Policy>());
    if (!told && std::any_of(policies.begin(), policies.end(), forbidsWsl)) {
        findings.problem("WSL_POLICY");
    }
}

std::string policyText(const Policy& policy)
{
    return policy.name + " = " + std::to_string(policy.value);
}

void describePolicies(const Examination& found, CheckOutput& out)
{
    const auto& policies = found.wsl.policies;
    out.member("wsl", "policies") =
        listOf(policies.has_value(), policies.value_or(std::vector<Policy>()), [](const Policy& policy) {
            return json::object{{"name", policy.name}, {"value", policy.value}};
        });
    if (!policies || policies->empty()) {
        out.row("policies", policies ? "none" : notKnown);
        return;
    }
    std::string text;
    for (const Policy& policy : *policies) {
        text += (text.empty() ? "" : ", ") + policyText(policy);
    }
    out.judged("policies", text, false);
}

void examineConfig(const Context& /*context*/, Examination& found)
{
    found.wsl.config = within(found.timeLimit, wslConfigFile);
}

// The modes in which Windows has an adapter of WSL's.
bool hasAdapter(const std::string& networkingMode)
{
    return networkingMode.empty() || lowered(networkingMode) == "nat";
}

void judgeConfig(const Examination& found, Findings& findings)
{
    if (!found.wsl.config) {
        return;
    }
    const WslConfigFile& file = *found.wsl.config;
    if (file.kernelExists == false) {
        findings.problem("WSL_KERNEL_MISSING", file.config.kernel);
    }
    if (!hasAdapter(file.config.networkingMode)) {
        findings.note("NETWORKING_WITHOUT_ADAPTER", file.config.networkingMode);
    }
}

void describeConfig(const Examination& found, CheckOutput& out)
{
    json::value& member = out.member("wsl", "config");
    if (!found.wsl.config) {
        member = nullptr;
        out.row(".wslconfig", notKnown);
        return;
    }
    const WslConfigFile& file = *found.wsl.config;
    member = {{"path", file.path},
              {"exists", file.exists},
              {"networkingMode", textOrNull(file.config.networkingMode)},
              {"kernel", textOrNull(file.config.kernel)},
              {"kernelExists", orNull(file.kernelExists)}};
    out.judged(".wslconfig", file.exists ? file.path : "none", false);
    if (!file.config.networkingMode.empty()) {
        out.row("networking mode", file.config.networkingMode);
    }
    if (!file.config.kernel.empty()) {
        const char* state = file.kernelExists ? (*file.kernelExists ? "" : ": missing") : ": cannot be looked at";
        out.row("kernel", file.config.kernel + state);
    }
}

void examineOthers(const Context& /*context*/, Examination& found)
{
    found.wsl.otherAccounts = within(found.timeLimit, [name = lowered(found.image)] {
        std::vector<std::string> accounts;
        for (const OthersRegistration& each : registrationsOfOthers()) {
            if (lowered(each.name) == name) {
                accounts.push_back(each.account);
            }
        }
        return accounts;
    });
}

void judgeOthers(const Examination& found, Findings& findings)
{
    if (findings.presence == Presence::missing && found.wsl.otherAccounts && !found.wsl.otherAccounts->empty()) {
        findings.note("OTHER_ACCOUNT", found.wsl.otherAccounts->front());
    }
}

void describeOthers(const Examination& found, CheckOutput& out)
{
    const auto& accounts = found.wsl.otherAccounts;
    out.member("wsl", "otherAccounts") = accounts ? json::value(arrayOf(*accounts)) : nullptr;
    for (const std::string& account : accounts.value_or(std::vector<std::string>())) {
        out.row("registered for", account);
    }
}

constexpr std::array settingRows = {
    Check{"policies", examinePolicies, judgePolicies, describePolicies},
    Check{"config", examineConfig, judgeConfig, describeConfig},
    Check{"otherAccounts", examineOthers, judgeOthers, describeOthers},
};

} // namespace

std::span<const Check> wslSettingChecks()
{
    return settingRows;
}

} // namespace kelpctl
