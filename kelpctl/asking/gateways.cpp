#include "asking/gateways.h"

#include "host/array.h"
#include "host/text.h"
#include "orb/lvm.h"

#include <utility>
#include <vector>

namespace kelpctl {
namespace {

std::vector<hxArrayPtr> call(const char* name, hxGateway gateway, int outputCount,
                             const std::vector<hxArrayPtr>& inputs)
{
    hxRegisterGateway(name, gateway);
    return hxCallGateway(name, outputCount, inputs);
}

} // namespace

void callSetup(const std::string& archive)
{
    std::vector<hxArrayPtr> inputs;
    if (!archive.empty()) {
        inputs.emplace_back(hxCreateString(foundation::core::text::cvt_utf8_ustring(archive)));
    }
    call("kelp_container_setup", kelp_container_setup, 0, inputs);
}

void callTeardown()
{
    call("kelp_container_teardown", kelp_container_teardown, 0, {});
}

int callCheck()
{
    const std::vector<hxArrayPtr> outputs = call("kelp_container_wsl_check", kelp_container_wsl_check, 1, {});
    return static_cast<int>(hxGetScalar(outputs.at(0).get()));
}

} // namespace kelpctl
