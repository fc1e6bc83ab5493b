// Paths.
#include "host_fixture.h"

#include "files.h"

namespace {

using namespace fake;
using namespace orb::lvm::detail;

class Files : public HostTest {};

TEST_F(Files, PathsComeFromTheNativeNarrowEncoding)
{
    EXPECT_EQ(toPath("na\xC3\xAFve").u16string(), u"na\u00EFve");
    EXPECT_TRUE(toPath("").empty());
    expectEvents({"cvt_string_ustring na\xC3\xAFve", "cvt_string_ustring "});
}

TEST_F(Files, AnIllFormedPathIsASystemError)
{
    EXPECT_THROW(toPath("bad \xFF\xFE"), std::system_error);
}

} // namespace
