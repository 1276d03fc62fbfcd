// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the patient classes (patient_paths.h), whose functions return even if a mount hangs. If a
// call to a mount does not return in time, this call is left behind: the function fails, and
// nothing waits for the call any longer. Calls to mounts that respond are covered by the tests of
// the machine's files, which run once without and once with the patient classes.
#include <gmock/gmock.h>

#include <array>
#include <filesystem>

#include "platform/linux/paths/hanging_fixture.h"
#include "support/waiting.h"

namespace sonarith {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

template <typename Outcome>
ErrorNumber numberOf(const Outcome& outcome) {
    return outcome.ok() ? ErrorNumber{} : outcome.error().number;
}

class HangingFilesTest : public testing::Test, public test::HangingWorld {
  protected:
    HangingFilesTest() {
        mounts->write("d/music/a.wav");
        mounts->write("e/b.wav");
        fs::create_symlink(d, e + "/link");
    }
    [[nodiscard]] std::string reportOf(const std::string& mount) const {
        return "The disk or server at " + mount + " does not respond.";
    }
    [[nodiscard]] std::string recoveryOf(const std::string& mount) const {
        return "settled [mount " + mount + "]: The disk or server at " + mount + " responds again.";
    }

    std::vector<std::string> namesIn(DirectoryWalk& walk, const std::string& folder) {
        std::vector<std::string> names;
        FindRecord entry;
        const FindHandle handle = walk.FindFirst(folder + "*.*", entry);
        for (bool found = handle != invalidFindHandle; found;
             found = walk.FindNext(handle, entry)) {
            names.push_back(entry.name);
        }
        walk.FindClose(handle);
        return names;
    }
};

TEST_F(HangingFilesTest, ACallThatTimesOutFailsAndTheUserIsNotified) {
    mounts->hang(d);
    EXPECT_EQ(numberOf(files.fileLength("d:\\music\\a.wav")), ErrorNumber::deviceUnavailable);
    EXPECT_THAT(notices.texts(), ElementsAre(reportOf(d)));
    EXPECT_EQ(files.fileLength("e:\\b.wav").value(), 5);
}

TEST_F(HangingFilesTest, AHangingMountIsNotCalledAgainAndBlocksNoFurtherThread) {
    mounts->hang(d);
    ASSERT_FALSE(files.fileLength("d:\\music\\a.wav").ok());
    const int hanging = mounts->blocked();
    EXPECT_LE(hanging, 2);
    const int asked = mounts->calls(d);
    for (int i = 0; i < 40; ++i) {
        const std::string path = "D:\\music\\" + std::to_string(i);
        EXPECT_EQ(numberOf(files.fileLength(path)), ErrorNumber::deviceUnavailable);
        EXPECT_FALSE(files.fileExists(path));
        EXPECT_FALSE(files.openBinary(path, FileAccess::write).ok());
        EXPECT_FALSE(files.rename(path, "e:\\c.wav").ok());
        EXPECT_FALSE(files.rename("e:\\b.wav", path).ok());
        EXPECT_FALSE(directories.folder(path).ok());
        EXPECT_EQ(files.machinePath(path), "");
        EXPECT_EQ(files.toLogic(d + "/music/" + std::to_string(i)), "");
    }
    EXPECT_EQ(mounts->calls(d), asked);
    EXPECT_EQ(mounts->blocked(), hanging);
    EXPECT_THAT(notices.texts(), SizeIs(1));
    EXPECT_EQ(files.fileLength("e:\\b.wav").value(), 5);
}

TEST_F(HangingFilesTest, AMountThatRespondsAgainIsCalledAgain) {
    mounts->hang(d);
    ASSERT_FALSE(files.fileLength("d:\\music\\a.wav").ok());
    mounts->answer(d);
    EXPECT_TRUE(fakes::eventually([&] { return files.fileLength("d:\\music\\a.wav").ok(); }));
    EXPECT_THAT(notices.texts(), ElementsAre(reportOf(d), recoveryOf(d)));
    mounts->hang(d);
    EXPECT_FALSE(files.fileLength("d:\\music\\a.wav").ok());
    EXPECT_THAT(notices.texts(), ElementsAre(reportOf(d), recoveryOf(d), reportOf(d)));
}

TEST_F(HangingFilesTest, ACallThroughALinkReportsTheHangingMountBehindTheLink) {
    mounts->hang(d);
    ASSERT_FALSE(files.fileLength("e:\\link\\music\\a.wav").ok());
    EXPECT_THAT(notices.texts(), ElementsAre(reportOf(d)));
    const int asked = mounts->calls(d);
    EXPECT_FALSE(files.fileLength("d:\\music\\a.wav").ok());
    EXPECT_FALSE(files.fileLength("e:\\link\\music\\other").ok());
    EXPECT_EQ(mounts->calls(d), asked);
    EXPECT_EQ(files.fileLength("e:\\b.wav").value(), 5);
}

TEST_F(HangingFilesTest, TwoMountsHangIndependently) {
    mounts->hang(d);
    mounts->hang(e);
    ASSERT_FALSE(files.fileLength("d:\\music\\a.wav").ok());
    ASSERT_FALSE(files.fileLength("e:\\b.wav").ok());
    EXPECT_THAT(notices.texts(), ElementsAre(reportOf(d), reportOf(e)));
    EXPECT_LE(mounts->blocked(), 4);
    mounts->answer(e);
    EXPECT_TRUE(fakes::eventually([&] { return files.fileLength("e:\\b.wav").ok(); }));
    EXPECT_FALSE(files.fileLength("d:\\music\\a.wav").ok());
    EXPECT_THAT(notices.texts(), ElementsAre(reportOf(d), reportOf(e), recoveryOf(e)));
}

TEST_F(HangingFilesTest, AHangingCallBlocksOnlyItsOwnPathIfNoHangingMountIsFound) {
    mounts->hang(d);
    int asked = 0;
    const auto ask = [&](const std::string& path) {
        return paths.ask({path}, [mounts = mounts, d = d, &asked](MachineFiles&) {
            ++asked;
            mounts->touch(d); // simulates a call to a folder that contains a link to the mount
            return true;
        });
    };
    EXPECT_EQ(ask("E:\\"), std::nullopt);
    EXPECT_EQ(ask("E:\\"), std::nullopt);
    EXPECT_EQ(mounts->blocked(), 1);
    EXPECT_EQ(asked, 1);
    EXPECT_THAT(notices.texts(), IsEmpty());
    EXPECT_EQ(files.fileLength("e:\\b.wav").value(), 5);
    mounts->answer(d);
    EXPECT_TRUE(fakes::eventually([&] { return ask("E:\\") == true; }));
}

TEST_F(HangingFilesTest, TheNumberOfThreadsThatHangIsBounded) {
    mounts->hang(d);
    const auto ask = [&](int number) {
        return paths.ask({"E:\\" + std::to_string(number)},
                         [mounts = mounts, d = d](MachineFiles&) {
                             mounts->touch(d);
                             return true;
                         });
    };
    const int most = static_cast<int>(PatientPaths::mostLeftBehind);
    for (int i = 0; i < most + 10; ++i) {
        EXPECT_EQ(ask(i), std::nullopt);
    }
    EXPECT_EQ(mounts->blocked(), most);
    EXPECT_FALSE(files.fileLength("e:\\b.wav").ok());
    mounts->answer(d);
    EXPECT_TRUE(fakes::eventually([&] { return files.fileLength("e:\\b.wav").ok(); }));
}

// --- the current folder -----------------------------------------------------------------------

TEST_F(HangingFilesTest, TheCurrentFolderIsKeptWhenACallIsLeftBehind) {
    fs::create_directory(e + "/sub");
    mounts->write("e/sub/c.wav");
    ASSERT_TRUE(files.changeFolder("e:\\sub").ok());
    mounts->hang(d);
    EXPECT_EQ(numberOf(files.changeFolder("d:\\music")), ErrorNumber::deviceUnavailable);
    EXPECT_EQ(files.currentFolder(), "E:\\sub");
    EXPECT_EQ(files.fileLength("c.wav").value(), 5);
    EXPECT_EQ(numberOf(files.changeDrive("d:")), ErrorNumber::deviceUnavailable);
    EXPECT_EQ(files.currentFolder(), "E:\\sub");
}

TEST_F(HangingFilesTest, ADriveKeepsItsCurrentFolderAfterACallWasLeftBehind) {
    fs::create_directory(e + "/sub");
    ASSERT_TRUE(files.changeFolder("e:\\sub").ok());
    ASSERT_TRUE(files.changeFolder("c:\\").ok());
    mounts->hang(d);
    ASSERT_FALSE(files.fileExists("d:\\music\\a.wav"));
    ASSERT_TRUE(files.changeDrive("e:").ok());
    EXPECT_EQ(files.currentFolder(), "E:\\sub");
}

// --- opened files -----------------------------------------------------------------------------

TEST_F(HangingFilesTest, CallsOfAnOpenFileFailWhileItsDiskHangsAndWorkAfterwards) {
    auto opened = files.openBinary("d:\\music\\a.wav", FileAccess::readWrite);
    ASSERT_TRUE(opened.ok());
    BinaryFile& file = *opened.value();
    std::array<std::byte, 5> bytes{};
    mounts->hang(d);
    EXPECT_EQ(numberOf(file.read(0, bytes)), ErrorNumber::deviceUnavailable);
    EXPECT_EQ(numberOf(file.length()), ErrorNumber::deviceUnavailable);
    EXPECT_EQ(numberOf(file.write(0, bytes)), ErrorNumber::deviceUnavailable);
    EXPECT_EQ(mounts->blocked(), 1);
    EXPECT_EQ(bytes, (std::array<std::byte, 5>{}));
    mounts->answer(d);
    EXPECT_TRUE(fakes::eventually([&] { return file.length().ok(); }));
    EXPECT_EQ(file.read(0, bytes).value(), 5U);
    EXPECT_EQ(bytes[0], std::byte{'s'});
}

TEST_F(HangingFilesTest, AnOpenFileCanBeClosedWhileItsDiskHangs) {
    auto opened = files.openBinary("d:\\music\\a.wav", FileAccess::read);
    ASSERT_TRUE(opened.ok());
    mounts->hang(d);
    EXPECT_FALSE(opened.value()->length().ok());
    opened.value().reset();
    EXPECT_EQ(mounts->blocked(), 1);
}

// --- walks ------------------------------------------------------------------------------------

TEST_F(HangingFilesTest, AWalkSkipsAHangingFolderAndContinues) {
    const auto walk = directories.startWalk();
    EXPECT_THAT(namesIn(*walk, "d:\\"), ElementsAre(".", "..", "music"));
    mounts->hang(d);
    EXPECT_THAT(namesIn(*walk, "d:\\music\\"), IsEmpty());
    EXPECT_THAT(notices.texts(), ElementsAre(reportOf(d)));
    EXPECT_THAT(namesIn(*walk, "e:\\"), IsSupersetOf({"b.wav", "link"}));
}

TEST_F(HangingFilesTest, AWalkListsNoFolderTwiceAfterACallWasLeftBehind) {
    const auto walk = directories.startWalk();
    ASSERT_THAT(namesIn(*walk, "e:\\"), IsSupersetOf({"b.wav"}));
    mounts->hang(d);
    ASSERT_THAT(namesIn(*walk, "d:\\"), IsEmpty());
    EXPECT_THAT(namesIn(*walk, "e:\\"), IsEmpty());
}

TEST_F(HangingFilesTest, AListingThatHangsInTheMiddleEndsEarly) {
    constexpr int many = 1500; // more than FolderPart::mostRecords
    for (int i = 0; i < many; ++i) {
        mounts->write("e/many/" + std::to_string(i));
    }
    const auto walk = directories.startWalk();
    FindRecord entry;
    const FindHandle handle = walk->FindFirst("e:\\many\\*.*", entry);
    ASSERT_NE(handle, invalidFindHandle);
    mounts->hang(e);
    int found = 1;
    while (walk->FindNext(handle, entry)) {
        ++found;
    }
    EXPECT_LT(found, many);
    EXPECT_GT(found, 2);
    walk->FindClose(handle);
    EXPECT_THAT(namesIn(*walk, "d:\\"), ElementsAre(".", "..", "music"));
}

TEST_F(HangingFilesTest, AWalkCanBeDestroyedWhileItsFolderHangs) {
    auto walk = directories.startWalk();
    mounts->hang(e);
    EXPECT_THAT(namesIn(*walk, "e:\\"), IsEmpty());
    walk.reset();
    EXPECT_EQ(files.fileLength("d:\\music\\a.wav").value(), 5);
}

TEST_F(HangingFilesTest, TheDrivesAreKnownWhileADiskHangs) {
    mounts->hang(d);
    ASSERT_FALSE(files.fileExists("d:\\music\\a.wav"));
    EXPECT_THAT(directories.drives(), ElementsAre("c:", "d:", "e:"));
}

TEST_F(HangingFilesTest, DriveLettersAssignedOnAWorkerThreadReachTheStore) {
    EXPECT_EQ(store.GetSetting(applicationName, drivesSection, "D", ""), d);
    EXPECT_EQ(store.GetSetting(applicationName, drivesSection, "E", ""), e);
}

} // namespace
} // namespace sonarith
