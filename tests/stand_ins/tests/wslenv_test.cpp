#include "wsl_test.h"

using testing::HasSubstr;
using testing::Not;

class Wslenv : public WslTest {
protected:
    Wslenv() { importAs("Hub"); }

    // The variable inside, or "(unset)".
    std::string inside(const std::string& wslenv, const std::string& name)
    {
        environment["WSLENV"] = wslenv;
        const std::string all = "\n" + inHub({"env"}).output;
        const std::size_t found = all.find("\n" + name + "=");
        if (found == std::string::npos) {
            return "(unset)";
        }
        const std::size_t begin = found + name.size() + 2;
        return all.substr(begin, all.find('\n', begin) - begin);
    }
};

TEST_F(Wslenv, NothingElseIsInherited)
{
    environment["SECRET"] = "x";
    EXPECT_EQ(inside("OTHER", "SECRET"), "(unset)");
    EXPECT_THAT(inHub({"env"}).output, Not(HasSubstr("WSL_STAND_IN")));
}

TEST_F(Wslenv, ListedNamePassesItsValueUnchanged)
{
    environment["GREETING"] = "hello: \"w\\orld\" ü;$x";
    EXPECT_EQ(inside("GREETING", "GREETING"), "hello: \"w\\orld\" ü;$x");
    EXPECT_EQ(inside("A:GREETING:B", "GREETING"), "hello: \"w\\orld\" ü;$x");
}

TEST_F(Wslenv, FlagUPassesToLinux)
{
    environment["GREETING"] = "hello";
    EXPECT_EQ(inside("GREETING/u", "GREETING"), "hello");
}

TEST_F(Wslenv, FlagWDoesNotPassToLinux)
{
    environment["GREETING"] = "hello";
    EXPECT_EQ(inside("GREETING/w", "GREETING"), "(unset)");
    EXPECT_EQ(inside("GREETING/wp", "GREETING"), "(unset)");
}

TEST_F(Wslenv, FlagPTranslatesAnAbsoluteWindowsPath)
{
    environment["PLACE"] = "C:\\Program Files\\x";
    EXPECT_EQ(inside("PLACE/p", "PLACE"), "/mnt/c/Program Files/x");
    EXPECT_EQ(inside("PLACE/pu", "PLACE"), "/mnt/c/Program Files/x");
}

TEST_F(Wslenv, FlagLTranslatesAListAndDropsWhatIsNoAbsoluteWindowsPath)
{
    environment["PLACES"] = "C:\\a;relative;D:/b;/usr/lib";
    EXPECT_EQ(inside("PLACES/l", "PLACES"), "/mnt/c/a:/mnt/d/b");
}

TEST_F(Wslenv, FlagPWithNothingToTranslateSkipsTheEntry)
{
    environment["LD_LIBRARY_PATH"] = "/opt/lib:/usr/lib";
    EXPECT_EQ(inside("LD_LIBRARY_PATH/p", "LD_LIBRARY_PATH"), "(unset)");
    EXPECT_EQ(inside("LD_LIBRARY_PATH/l", "LD_LIBRARY_PATH"), "(unset)");
}

TEST_F(Wslenv, LibraryPathGoesThroughLiterally)
{
    environment["LD_LIBRARY_PATH"] = "/opt/lib:/usr/lib";
    EXPECT_EQ(inside("LD_LIBRARY_PATH/u", "LD_LIBRARY_PATH"), "/opt/lib:/usr/lib");
    EXPECT_EQ(inside("LD_LIBRARY_PATH", "LD_LIBRARY_PATH"), "/opt/lib:/usr/lib");
}

TEST_F(Wslenv, ListedButUnsetNameIsSetToEmpty)
{
    EXPECT_EQ(inside("NOT_THERE", "NOT_THERE"), "");
    EXPECT_EQ(inside("NOT_THERE/p", "NOT_THERE"), "");
    EXPECT_EQ(inside("NOT_THERE", "OTHER"), "(unset)");
}

TEST_F(Wslenv, UnknownFlagIgnoresTheEntry)
{
    environment["GREETING"] = "hello";
    EXPECT_EQ(inside("GREETING/x", "GREETING"), "(unset)");
    EXPECT_EQ(inside("GREETING/ux", "GREETING"), "(unset)");
}

TEST_F(Wslenv, TrailingBlanksAreTrimmedAndLeadingOnesAreNot)
{
    environment["GREETING"] = "hello";
    EXPECT_EQ(inside("GREETING  ", "GREETING"), "hello");
    EXPECT_EQ(inside("GREETING/u  :X", "GREETING"), "hello");
    EXPECT_EQ(inside(" GREETING", "GREETING"), "(unset)");
    EXPECT_EQ(inside(" GREETING", " GREETING"), "");
}

TEST_F(Wslenv, NamesAreCaseSensitive)
{
    environment["GREETING"] = "hello";
    EXPECT_EQ(inside("greeting", "GREETING"), "(unset)");
}

TEST_F(Wslenv, EntryWithAValueNamesAVariableThatNobodyHas)
{
    environment["GREETING"] = "hello";
    EXPECT_EQ(inside("GREETING=other", "GREETING"), "(unset)");
}

TEST_F(Wslenv, DuplicatesAndEmptyEntriesAreHarmless)
{
    environment["GREETING"] = "hello";
    EXPECT_EQ(inside(":GREETING/u::GREETING/u:", "GREETING"), "hello");
}

TEST_F(Wslenv, ItselfIsAlwaysSetInside)
{
    EXPECT_EQ(inside("A/u:B", "WSLENV"), "A/u:B");
    environment.erase("WSLENV");
    EXPECT_THAT(inHub({"env"}).output, HasSubstr("WSLENV=\n"));
}

TEST_F(Wslenv, HomeAndItsLikeOverrideIt)
{
    environment["HOME"] = "/elsewhere";
    environment["USER"] = "somebody";
    environment["NAME"] = "thing";
    environment["LOGNAME"] = "somebody";
    environment["SHELL"] = "/bin/other";
    environment["WSL_DISTRO_NAME"] = "Other";
    const std::string wslenv = "HOME:USER:LOGNAME:SHELL:NAME:WSL_DISTRO_NAME";
    EXPECT_EQ(inside(wslenv, "HOME"), "/root");
    EXPECT_EQ(inside(wslenv, "USER"), "root");
    EXPECT_EQ(inside(wslenv, "LOGNAME"), "root");
    EXPECT_EQ(inside(wslenv, "SHELL"), "/bin/sh");
    EXPECT_NE(inside(wslenv, "NAME"), "thing");
    EXPECT_EQ(inside(wslenv, "WSL_DISTRO_NAME"), "Hub");
}
