// What an archive's facts mean: asks nobody.
#include "archive/judgement.h"

#include "archive/made_archives.h"
#include "archive/reading.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using kelpctl::ArchiveFacts;
using kelpctl::ArchiveKind;
using kelpctl::ArchiveTarget;
using kelpctl::Damage;
using kelpctl::Extent;
using kelpctl::Finding;
using kelpctl::judgeArchive;
using kelpctl::judgeRoom;
using kelpctl::Purpose;
using kelpctl::Severity;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uintmax_t mebibyte = 1024UL * 1024;

ArchiveFacts read(const TarArchive& archive)
{
    std::istringstream stream(archive.finished());
    return kelpctl::readArchive(stream, archive.finished().size());
}

// The keys, those of problems with "!" in front.
std::vector<std::string> keys(const std::vector<Finding>& findings)
{
    std::vector<std::string> result;
    for (const Finding& finding : findings) {
        result.push_back((finding.severity == Severity::problem ? "!" : "") + std::string(finding.key.text()));
    }
    return result;
}

std::vector<std::string> judged(const ArchiveFacts& facts, Purpose purpose, const std::string& processor = "amd64")
{
    return keys(judgeArchive(facts, "a.tar.gz", {purpose, "kelp_hub_R1", processor}));
}

TEST(ArchiveJudgement, HasNothingAgainstWhatIsMadeRight)
{
    EXPECT_THAT(judged(read(rootFileSystem()), Purpose::distribution), IsEmpty());
    EXPECT_THAT(judged(read(savedImage()), Purpose::loadedImage), IsEmpty());
}

TEST(ArchiveJudgement, TellsRootFileSystemAndImageApart)
{
    EXPECT_THAT(judged(read(savedImage()), Purpose::distribution), ElementsAre("!ARCHIVE_IS_IMAGE"));
    EXPECT_THAT(judged(read(rootFileSystem()), Purpose::loadedImage), ElementsAre("!ARCHIVE_IS_ROOT_FS"));
    EXPECT_THAT(judged(read(savedImage()), Purpose::importedImage), Contains("ARCHIVE_IS_IMAGE"))
        << "docker import takes anything";
    EXPECT_THAT(judged(read(TarArchive().file("letter")), Purpose::distribution),
                ElementsAre("!ARCHIVE_WITHOUT_SYSTEM"));
    EXPECT_THAT(judged(read(TarArchive().file("letter")), Purpose::loadedImage), ElementsAre("!ARCHIVE_WITHOUT_IMAGE"));
}

// docker load would take it, and WSL as well.
TEST(ArchiveJudgement, ArchiveThatIsBothIsRefusedByNeither)
{
    TarArchive both = savedImage();
    both.folder("etc").file("bin/sh", programFor(62));
    EXPECT_THAT(judged(read(both), Purpose::loadedImage), IsEmpty());
    EXPECT_THAT(judged(read(both), Purpose::distribution), testing::Not(Contains("!ARCHIVE_IS_IMAGE")));
}

TEST(ArchiveJudgement, WhatWasNotReadIsNotMissed)
{
    ArchiveFacts facts;
    facts.kind = ArchiveKind::gzip;
    facts.extent = Extent::beginning;
    for (const Purpose purpose : {Purpose::distribution, Purpose::loadedImage}) {
        EXPECT_THAT(judged(facts, purpose), IsEmpty());
    }
}

TEST(ArchiveJudgement, WslWantsOneOfTwoThings)
{
    EXPECT_THAT(judged(read(TarArchive().folder("etc")), Purpose::distribution),
                ElementsAre("ARCHIVE_WITHOUT_SHELL", "ARCHIVE_WITHOUT_WSL_CONF", "ARCHIVE_MAKES_SHORTCUTS"));
    EXPECT_THAT(judged(read(TarArchive().file("bin/sh", programFor(62))), Purpose::distribution),
                ElementsAre("ARCHIVE_WITHOUT_ETC", "ARCHIVE_WITHOUT_WSL_CONF", "ARCHIVE_MAKES_SHORTCUTS"));
}

TEST(ArchiveJudgement, ImageMustHaveTheNameThatTheLibraryLooksFor)
{
    EXPECT_THAT(judged(read(savedImage("registry/x/kelp_hub_R1:2")), Purpose::loadedImage), IsEmpty());
    EXPECT_THAT(judged(read(savedImage("kelp_hub_R2:latest")), Purpose::loadedImage),
                ElementsAre("!ARCHIVE_OTHER_IMAGE"));
    const std::vector<Finding> findings =
        judgeArchive(read(savedImage("other:1")), "a", {Purpose::loadedImage, "kelp_hub_R1", ""});
    EXPECT_EQ(findings.at(0).subject, "other:1");
}

TEST(ArchiveJudgement, ProcessorIsComparedWhereBothAreKnown)
{
    EXPECT_THAT(judged(read(rootFileSystem()), Purpose::distribution, "arm64"), ElementsAre("ARCHIVE_OTHER_PROCESSOR"));
    EXPECT_THAT(judged(read(savedImage("kelp_hub_R1", "arm64")), Purpose::loadedImage),
                ElementsAre("ARCHIVE_OTHER_PROCESSOR"));
    EXPECT_THAT(judged(read(savedImage("kelp_hub_R1", "386")), Purpose::loadedImage), IsEmpty());
    EXPECT_THAT(judged(read(rootFileSystem()), Purpose::distribution, ""), IsEmpty());
}

TEST(ArchiveJudgement, OneOfSeveralProcessorsThatFitsIsEnough)
{
    ArchiveFacts facts = read(savedImage("kelp_hub_R1", "arm64"));
    facts.images.all.push_back(facts.images.all.front());
    EXPECT_THAT(judged(facts, Purpose::loadedImage), ElementsAre("ARCHIVE_OTHER_PROCESSOR"));
    facts.images.all.back().processor = "amd64";
    EXPECT_THAT(judged(facts, Purpose::loadedImage), IsEmpty());
    facts.images.all.back().processor = "";
    EXPECT_THAT(judged(facts, Purpose::loadedImage), IsEmpty());
}

TEST(ArchiveJudgement, ImageWithoutAProgramIsNoted)
{
    EXPECT_THAT(judged(read(savedImage("kelp_hub_R1", "amd64", "{}")), Purpose::loadedImage),
                ElementsAre("IMAGE_WITHOUT_PROGRAM"));
    EXPECT_THAT(judged(read(rootFileSystem()), Purpose::importedImage), ElementsAre("IMAGE_WITHOUT_PROGRAM"));
}

TEST(ArchiveJudgement, DamageIsAProblem)
{
    ArchiveFacts facts;
    facts.kind = ArchiveKind::gzip;
    facts.extent = Extent::beginning;
    facts.reason = "why";
    for (const auto& [damage, key] : {std::pair{Damage::cutOff, "!ARCHIVE_CUT_OFF"},
                                      {Damage::broken, "!ARCHIVE_DAMAGED"},
                                      {Damage::noTar, "!ARCHIVE_NOT_USABLE"},
                                      {Damage::bomb, "!ARCHIVE_BOMB"}}) {
        facts.damage = damage;
        EXPECT_THAT(judged(facts, Purpose::distribution), ElementsAre(key));
    }
    facts.damage = Damage::cutOff;
    EXPECT_EQ(judgeArchive(facts, "a.tar.gz", {}).at(0).subject, "a.tar.gz (why)");
}

TEST(ArchiveJudgement, FileMustBeAnArchive)
{
    for (const ArchiveKind kind : {ArchiveKind::empty, ArchiveKind::zip, ArchiveKind::text, ArchiveKind::unknown,
                                   ArchiveKind::notAFile, ArchiveKind::notReadable}) {
        EXPECT_THAT(judged({kind}, Purpose::distribution), ElementsAre("!ARCHIVE_NOT_USABLE")) << kindName(kind);
    }
    EXPECT_THAT(judged({ArchiveKind::missing}, Purpose::distribution), ElementsAre("!ARCHIVE_MISSING"));
    ArchiveFacts zstd = read(rootFileSystem());
    zstd.kind = ArchiveKind::zstd;
    EXPECT_THAT(judged(zstd, Purpose::distribution), ElementsAre("ARCHIVE_PACKED_UNUSUALLY"));
}

TEST(ArchiveJudgement, SumIsComparedWhereThereIsOne)
{
    ArchiveFacts facts = read(rootFileSystem());
    facts.checksum = {"a.tar.gz.sha256", "12", "12"};
    EXPECT_THAT(judged(facts, Purpose::distribution), IsEmpty());
    facts.checksum->found = "34";
    EXPECT_THAT(judged(facts, Purpose::distribution), ElementsAre("!ARCHIVE_SUM_DIFFERS"));
    facts.checksum->found = "";
    EXPECT_THAT(judged(facts, Purpose::distribution), IsEmpty()) << "it was not read to the end";
    facts.checksum->expected = "";
    EXPECT_THAT(judged(facts, Purpose::distribution), ElementsAre("ARCHIVE_SUM_MISSING"));
}

TEST(ArchiveJudgement, MissingEndIsNoted)
{
    ArchiveFacts facts = read(rootFileSystem());
    facts.endMarked = false;
    EXPECT_THAT(judged(facts, Purpose::distribution), ElementsAre("ARCHIVE_END_MISSING"));
}

TEST(ArchiveJudgement, PathsUpwardAreWhatTheUnpackerRefuses)
{
    ArchiveFacts facts = read(rootFileSystem());
    facts.upwardPath = "a/../b";
    EXPECT_THAT(judged(facts, Purpose::distribution), ElementsAre("!ARCHIVE_LEADS_OUTSIDE"));
    EXPECT_THAT(judged(facts, Purpose::importedImage), ElementsAre("IMAGE_WITHOUT_PROGRAM"));
    facts.leadsOutside = true;
    EXPECT_THAT(judged(facts, Purpose::importedImage), Contains("!ARCHIVE_LEADS_OUTSIDE"));
}

TEST(ArchiveJudgement, OciLayoutAloneIsForNewerDocker)
{
    ArchiveFacts facts = read(savedImage());
    facts.images.hasDockerList = false;
    facts.images.hasOciList = true;
    EXPECT_THAT(judged(facts, Purpose::loadedImage), ElementsAre("ARCHIVE_FOR_NEWER_DOCKER"));
}

ArchiveFacts unpackingTo(std::optional<std::uintmax_t> bytes)
{
    ArchiveFacts facts;
    facts.kind = ArchiveKind::gzip;
    facts.unpackedBytes = bytes;
    return facts;
}

TEST(Room, IsMoreThanTheFilesTake)
{
    EXPECT_EQ(neededBytes(unpackingTo(1000 * mebibyte), Purpose::distribution), 1300 * mebibyte);
    EXPECT_EQ(neededBytes(unpackingTo(1000 * mebibyte), Purpose::loadedImage), 2000 * mebibyte);
    EXPECT_EQ(neededBytes(unpackingTo(~0ULL), Purpose::loadedImage), ~0ULL);
    EXPECT_EQ(neededBytes(unpackingTo({}), Purpose::distribution), std::nullopt);
}

TEST(Room, FindingNamesTheVolumeAndTheNumbers)
{
    const ArchiveFacts facts = unpackingTo(1000 * mebibyte);
    const std::vector<Finding> findings = judgeRoom(facts, Purpose::distribution, {"C:\\Temp", 1200 * mebibyte});
    EXPECT_THAT(keys(findings), ElementsAre("TEMPORARY_FOLDER_SMALL")) << "it may do";
    EXPECT_EQ(findings.at(0).subject, "1.3 GiB / 1.2 GiB (C:\\Temp)");
    EXPECT_THAT(keys(judgeRoom(facts, Purpose::distribution, {"x", 999 * mebibyte})),
                ElementsAre("!TEMPORARY_FOLDER_SMALL"));
    EXPECT_THAT(keys(judgeRoom(facts, Purpose::loadedImage, {"x", 1})), ElementsAre("DOCKER_FOLDER_SMALL"));
}

TEST(Room, IsNotMissedWhereItIsNotKnown)
{
    EXPECT_THAT(judgeRoom(unpackingTo(1000), Purpose::distribution, {"x", {}}), IsEmpty());
    EXPECT_THAT(judgeRoom(unpackingTo({}), Purpose::distribution, {"x", 1}), IsEmpty());
    EXPECT_THAT(judgeRoom(unpackingTo(1000), Purpose::distribution, {"x", 300 * mebibyte}), IsEmpty());
}

} // namespace
