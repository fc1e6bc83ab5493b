// The functions that the host's interpreter calls. They catch nothing: the interpreter reports errors to the user.
#include "orb/lvm.h"

#include "commands.h"
#include "runner.h"
#include "wsl.h"

#include "host/array.h"
#include "host/text.h"

void kelp_container_setup(int /*outputCount*/, hxArray* /*outputs*/[], int inputCount, hxArray* inputs[])
{
    std::string tarPath;
    if (inputCount > 0 && inputs[0] != nullptr && hxIsChar(inputs[0])) {
        const std::u16string text = get_ustring(inputs[0]);
        tarPath = foundation::core::text::cvt_ustring_utf8(text.data(), text.size());
    }
    orb::lvm::importFromTarIfNecessary(tarPath, {}, false);
}

void kelp_container_teardown(int /*outputCount*/, hxArray* /*outputs*/[], int /*inputCount*/, hxArray* /*inputs*/[])
{
    orb::lvm::clearDistroImage({});
}

void kelp_container_wsl_check(int /*outputCount*/, hxArray* outputs[], int /*inputCount*/, hxArray* /*inputs*/[])
{
    using namespace orb::lvm::detail;
    const RunResult listing = runCommand(commands::wslCheck(getExecutablePath()));
    outputs[0] = hxCreateDoubleScalar(listing.status == 0 ? 0.0 : -3.0);
}
