// What stands for what in the kit's reports: nobody's name may be in them.
#include "names.h"

#include <gtest/gtest.h>

using verify::Names;

TEST(VerifyNames, StandForTheirValues)
{
    Names names;
    names.set("<work>", R"(C:\Temp\kelp)");
    names.set("<name>", "kelp_hub_verify_1");
    EXPECT_EQ(names.filled(R"(<work>\<name>.tar)"), R"(C:\Temp\kelp\kelp_hub_verify_1.tar)");
    EXPECT_EQ(names.filled("<WORK> <3>WSL"), "<WORK> <3>WSL");
    EXPECT_EQ(names.filledExpression(R"(<work>\\.*)"), R"(C:\\Temp\\kelp\\.*)");
}

TEST(VerifyNames, TakeThePlaceOfTheirValuesInAnyCase)
{
    Names names;
    names.set("<kit>", R"(C:\Kit)");
    names.set("<probe>", R"(C:\Kit\probe.exe)");
    EXPECT_EQ(names.hidden(R"(c:\KIT\probe.exe in C:\Kit)"), "<probe> in <kit>");
}

TEST(VerifyNames, HideWholeWordsOnly)
{
    Names names;
    names.hideWord("<user>", "anna");
    EXPECT_EQ(names.hidden(R"(C:\Users\Anna\AppData, anna@host, "ANNA")"),
              R"(C:\Users\<user>\AppData, <user>@host, "<user>")");
    EXPECT_EQ(names.hidden("savannah annals"), "savannah annals");
}

TEST(VerifyNames, LeaveWhatIsNobodysNameAndWhatIsTooShort)
{
    Names names;
    names.hideWord("<user>", "Root");
    names.hideWord("<user>", "a");
    names.hideWord("<machine>", "");
    EXPECT_EQ(names.hidden("/root of a man"), "/root of a man");
    names.hideWord("<user>", "al");
    EXPECT_EQ(names.hidden("/root of al"), "/root of <user>");
}

TEST(VerifyNames, AreHiddenInBytesOfBothEncodings)
{
    Names names;
    names.hideWord("<user>", "Jürgen");
    const std::string utf16("J\0\xFC\0r\0g\0e\0n\0!\0", 14);
    EXPECT_EQ(names.hiddenInBytes("Jürgen!"), "<user>!");
    EXPECT_EQ(names.hiddenInBytes(utf16), std::string("<\0u\0s\0e\0r\0>\0!\0", 14));
}
