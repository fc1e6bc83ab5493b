// What archives hold: root file systems and saved images, honest and hostile ones.
#include "archive/contents.h"

#include "archive/made_archives.h"
#include "archive/paths.h"
#include "archive/reading.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>

namespace {

using kelpctl::ArchiveFacts;
using kelpctl::Damage;
using kelpctl::Extent;
using kelpctl::ShellState;
using testing::ElementsAre;

ArchiveFacts read(const std::string& bytes)
{
    std::istringstream stream(bytes);
    return kelpctl::readArchive(stream, bytes.size());
}

struct Written {
    const char* text;
    const char* path;
    bool upward;
    bool outside;
};

TEST(PathInside, IsWithoutDotsAndSlashes)
{
    for (const Written& each :
         {Written{"./etc/passwd", "etc/passwd", false, false}, Written{"/etc//", "etc", false, false},
          Written{"./", "", false, false}, Written{"a/../b", "b", true, false}, Written{"../etc", "etc", true, true},
          Written{"a/../../b", "b", true, true}, Written{"..a/b..", "..a/b..", false, false}}) {
        const kelpctl::PathInside inside = kelpctl::pathInside(each.text);
        EXPECT_EQ(inside.path, each.path) << each.text;
        EXPECT_EQ(inside.upward, each.upward) << each.text;
        EXPECT_EQ(inside.outside, each.outside) << each.text;
    }
}

TEST(Contents, ProcessorIsThatOfTheShell)
{
    constexpr struct {
        unsigned int number;
        bool bigEndian;
        const char* name;
    } known[] = {{62, false, "amd64"}, {183, false, "arm64"},   {3, false, "386"},
                 {40, false, "arm"},   {243, false, "riscv64"}, {21, false, "ppc64le"},
                 {21, true, "ppc64"},  {22, true, "s390x"},     {999, false, "machine 999"}};
    for (const auto& each : known) {
        const std::string archive = TarArchive().file("bin/sh", programFor(each.number, each.bigEndian)).finished();
        EXPECT_EQ(read(archive).root.processor, each.name);
    }
    EXPECT_EQ(read(TarArchive().file("bin/sh", "#!/bin/other\nand more of it\n").finished()).root.processor, "");
    EXPECT_EQ(read(TarArchive()
                       .file("bin/sh", "\x7f"
                                       "ELF")
                       .finished())
                  .root.processor,
              "");
}

struct Links {
    const char* name;
    TarArchive archive;
    ShellState state;
    const char* processor;
};

TEST(Contents, ShellIsFoundBehindItsLinks)
{
    const std::string program = programFor(183);
    const Links all[] = {
        {"merged", TarArchive().link("bin", "usr/bin").file("usr/bin/dash", program).link("usr/bin/sh", "dash"),
         ShellState::present, "arm64"},
        {"absolute", TarArchive().link("bin", "/usr/bin").file("usr/bin/sh", program), ShellState::present, "arm64"},
        {"upward", TarArchive().link("bin/sh", "../usr/./bin/../bin/ash").file("usr/bin/ash", program),
         ShellState::present, "arm64"},
        {"above the root", TarArchive().link("bin/sh", "../../../bin/ash").file("bin/ash", program),
         ShellState::present, "arm64"},
        {"hard", TarArchive().file("bin/busybox", program).hardLink("bin/sh", "./bin/busybox"), ShellState::present,
         "arm64"},
        {"none", TarArchive().folder("etc"), ShellState::missing, ""},
        {"dangling", TarArchive().link("bin/sh", "bash"), ShellState::missing, ""},
        {"a folder", TarArchive().folder("bin/sh"), ShellState::missing, ""},
        {"store", TarArchive().link("bin/sh", "/nix/store/bash/bin/sh"), ShellState::elsewhere, ""},
        {"itself", TarArchive().link("bin/sh", "sh"), ShellState::circle, ""},
        {"each other", TarArchive().link("bin/sh", "ash").link("bin/ash", "/bin/sh"), ShellState::circle, ""},
        {"folder in itself", TarArchive().link("bin", "bin/bin"), ShellState::circle, ""},
        {"replaced", TarArchive().file("bin/sh", programFor(62)).file("./bin/sh", program), ShellState::present,
         "arm64"},
    };
    for (const Links& each : all) {
        const ArchiveFacts facts = read(each.archive.finished());
        EXPECT_EQ(facts.root.shell, each.state) << each.name;
        EXPECT_EQ(facts.root.processor, each.processor) << each.name;
        EXPECT_EQ(facts.extent, Extent::whole) << each.name << facts.reason;
    }
}

TEST(Contents, SettingsOfWslAreRead)
{
    const auto made = [](const std::string& text) {
        return read(TarArchive().file("./etc/wsl-distribution.conf", text).finished()).root;
    };
    EXPECT_FALSE(made("[shortcut]\nenabled=false\n").makesShortcut);
    EXPECT_TRUE(made("[shortcut]\nenabled=false\n").makesTerminalProfile);
    EXPECT_FALSE(made("[windowsterminal]\r\nenabled = false\r\n").makesTerminalProfile);
    EXPECT_TRUE(made("[oobe]\nenabled=false\n").makesShortcut);
    EXPECT_TRUE(made("[shortcut]\n#enabled=false\n").makesShortcut);
    EXPECT_TRUE(made("[shortcut]\nenabled=true\n").makesShortcut);
    EXPECT_TRUE(made("").makesShortcut);
    EXPECT_FALSE(read(rootFileSystem().finished()).root.makesShortcut);
    EXPECT_TRUE(read(rootFileSystem().finished()).root.hasWslConf);
    EXPECT_FALSE(read(TarArchive().folder("etc").finished()).root.hasWslConf);
}

TEST(Contents, SavedImageIsReadByDockersList)
{
    const kelpctl::SavedImages images = read(savedImage("registry:5000/a/hub:1").finished()).images;
    EXPECT_TRUE(images.marked);
    EXPECT_TRUE(images.hasDockerList);
    EXPECT_FALSE(images.hasOciList);
    ASSERT_EQ(images.all.size(), 1U);
    EXPECT_THAT(images.all[0].names, ElementsAre("registry:5000/a/hub:1"));
    EXPECT_EQ(images.all[0].system, "linux");
    EXPECT_EQ(images.all[0].processor, "amd64");
    EXPECT_EQ(images.all[0].namesProgram, true);
    EXPECT_FALSE(read(savedImage().finished()).root.found()) << "what is in a layer is not in the archive";
}

TEST(Contents, ProgramIsThatOfTheImagesSettings)
{
    const auto names = [](const std::string& settings) {
        return read(savedImage("a", "amd64", settings).finished()).images.all.at(0).namesProgram;
    };
    EXPECT_EQ(names(R"({"Entrypoint":["/init"]})"), true);
    EXPECT_EQ(names(R"({"Cmd":null,"Entrypoint":[]})"), false);
    EXPECT_EQ(names("{}"), false);
    EXPECT_EQ(names("null"), false);
    const std::string listOnly =
        TarArchive().file("manifest.json", R"([{"Config":"x.json","RepoTags":null}])").finished();
    EXPECT_EQ(read(listOnly).images.all.at(0).namesProgram, std::nullopt);
    EXPECT_TRUE(read(listOnly).images.all.at(0).names.empty());
}

std::string blob(char digit)
{
    return "blobs/sha256/" + std::string(64, digit);
}

std::string reference(char digit)
{
    return R"({"digest":"sha256:)" + std::string(64, digit) + "\"";
}

TEST(Contents, SavedImageIsReadByTheOciLayout)
{
    TarArchive archive;
    archive.file(blob('c'), R"({"architecture":"arm64","os":"linux","config":{"Cmd":["sh"]}})");
    archive.file(blob('d'), R"({"config":)" + reference('c') + "}}");
    archive.file(blob('e'), R"({"manifests":[)" + reference('d') + "}]}");
    archive.file("index.json", R"({"manifests":[)" + reference('e') +
                                   R"(,"annotations":{"io.containerd.image.name":"docker.io/library/hub:1"}}]})");
    archive.file("oci-layout", "{}");
    const kelpctl::SavedImages images = read(archive.finished()).images;
    EXPECT_TRUE(images.marked);
    EXPECT_FALSE(images.hasDockerList);
    EXPECT_TRUE(images.hasOciList);
    ASSERT_EQ(images.all.size(), 1U);
    EXPECT_THAT(images.all[0].names, ElementsAre("docker.io/library/hub:1"));
    EXPECT_EQ(images.all[0].processor, "arm64");
}

// As a builder writes it that also says how the image was built.
TEST(Contents, AttestationIsNoImage)
{
    TarArchive archive;
    archive.file(blob('c'), R"({"architecture":"amd64","os":"linux","config":{"Cmd":["sh"]}})");
    archive.file(blob('d'), R"({"config":)" + reference('c') + "}}");
    archive.file(blob('a'), R"({"architecture":"unknown","os":"unknown","config":{}})");
    archive.file(blob('b'), R"({"config":)" + reference('a') + "}}");
    archive.file("index.json", R"({"manifests":[)" + reference('d') + "}," + reference('b') +
                                   R"(,"annotations":{"vnd.docker.reference.type":"attestation-manifest"}}]})");
    const kelpctl::SavedImages images = read(archive.finished()).images;
    ASSERT_EQ(images.all.size(), 1U);
    EXPECT_EQ(images.all[0].processor, "amd64");
}

TEST(Contents, ListThatLeadsToItselfEnds)
{
    TarArchive archive;
    std::string rows = reference('e') + "}";
    for (int count = 1; count < 2000; ++count) {
        rows += "," + reference('e') + "}";
    }
    archive.file(blob('e'), R"({"manifests":[)" + rows + "]}");
    archive.file("index.json", R"({"manifests":[)" + reference('e') + "}]}");
    EXPECT_TRUE(read(archive.finished()).images.all.empty());
}

TEST(Contents, BrokenListsAreNone)
{
    for (const char* text : {"[", "{}", "[1,null,\"x\"]", "[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[["}) {
        const ArchiveFacts facts = read(TarArchive().file("manifest.json", text).file("index.json", text).finished());
        EXPECT_EQ(facts.extent, Extent::whole) << text;
        EXPECT_FALSE(facts.images.hasOciList) << text;
    }
}

TEST(RepositoryOf, IsTheLastPartWithoutTheTag)
{
    EXPECT_EQ(kelpctl::repositoryOf("hub"), "hub");
    EXPECT_EQ(kelpctl::repositoryOf("hub:1"), "hub");
    EXPECT_EQ(kelpctl::repositoryOf("registry:5000/a/hub:1"), "hub");
    EXPECT_EQ(kelpctl::repositoryOf("a/hub@sha256:12"), "hub");
    EXPECT_EQ(kelpctl::repositoryOf(""), "");
}

TEST(Hostile, PathsUpwardAreTold)
{
    const ArchiveFacts inside = read(TarArchive().file("a/../b").finished());
    EXPECT_EQ(inside.upwardPath, "a/../b");
    EXPECT_FALSE(inside.leadsOutside);
    const ArchiveFacts outside = read(TarArchive().file("a/../b").file("../../etc/cron.d/x").finished());
    EXPECT_EQ(outside.upwardPath, "../../etc/cron.d/x");
    EXPECT_TRUE(outside.leadsOutside);
}

TEST(Hostile, SizesBeyondTheFileAreCutOff)
{
    for (const std::uintmax_t size : {5000ULL, 1ULL << 40U, (1ULL << 63U) - 1, ~0ULL}) {
        const ArchiveFacts facts = read(rootFileSystem().header('0', "large", "", size).finished());
        EXPECT_NE(facts.extent, Extent::whole) << size;
        EXPECT_NE(facts.damage, Damage::none) << size;
    }
}

TEST(Hostile, HeaderThatIsNoneIsDamage)
{
    std::string bytes = rootFileSystem().finished();
    bytes[512 + 3] = static_cast<char>(bytes[512 + 3] ^ 1);
    EXPECT_EQ(read(bytes).damage, Damage::broken);
}

// A name of 100 MiB is not held in memory.
TEST(Hostile, LongNameIsDamage)
{
    constexpr std::size_t length = 100U << 20U;
    TarArchive archive;
    archive.file("first").header('L', "././@LongLink", "", length);
    const ArchiveFacts facts = read(packed("gzip", archive.unfinished() + std::string(length, 'n')));
    EXPECT_NE(facts.damage, Damage::none);
    EXPECT_EQ(facts.entries, 1U);
}

TEST(Hostile, BombIsLeftBeforeItsEnd)
{
    constexpr std::size_t step = 16U << 20U;
    const std::string member = packed("gzip", std::string(step, '\0'));
    std::string bytes = packed("gzip", TarArchive().header('0', "zeros", "", 1ULL << 35U).unfinished());
    for (std::size_t count = 0; count < 128; ++count) {
        bytes += member;
    }
    const ArchiveFacts facts = read(bytes);
    EXPECT_EQ(facts.damage, Damage::bomb) << facts.reason;
    EXPECT_EQ(facts.unpackedBytes, std::nullopt);
}

// So many names are not all kept; the archive is read all the same.
TEST(Hostile, ManyEntriesAreCounted)
{
    TarArchive archive;
    for (int number = 0; number < 40000; ++number) {
        archive.header('2', "bin/" + std::to_string(number), "x", 0);
    }
    archive.link("bin/sh", "dash");
    const ArchiveFacts facts = read(packed("gzip", archive.finished()));
    EXPECT_EQ(facts.extent, Extent::whole);
    EXPECT_EQ(facts.entries, 40001U);
    EXPECT_EQ(facts.root.shell, ShellState::elsewhere) << "it is not known that there is none";
}

} // namespace
