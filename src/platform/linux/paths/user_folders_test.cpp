// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/user_folders.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include <sys/stat.h>

#include "support/temp_folder.h"

namespace sonarith {
namespace {

/// Unsets the environment variables for a user's folders before each test, and restores them after
/// it.
class UserFoldersTest : public testing::Test {
  protected:
    static constexpr std::array names = {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"};

    UserFoldersTest() {
        for (const char* name : names) {
            if (const char* value = std::getenv(name)) {
                before_[name] = value;
            }
            ::unsetenv(name);
        }
    }
    ~UserFoldersTest() override {
        for (const char* name : names) {
            before_.contains(name) ? ::setenv(name, before_[name].c_str(), 1) : ::unsetenv(name);
        }
    }
    void writeUserDirs(const std::string& text, const std::string& folder = ".config") {
        std::filesystem::create_directories(home_ / folder);
        std::ofstream(home_ / folder / "user-dirs.dirs") << text;
    }

    fakes::TempFolder home_;
    std::string homePath_ = home_.path().string();

  private:
    std::map<std::string, std::string> before_;
};

TEST_F(UserFoldersTest, TheHomeFolderIsTakenFromTheEnvironmentOrElseFromTheAccount) {
    ::setenv("HOME", "/home/me", 1);
    EXPECT_EQ(homeFolder(), "/home/me");
    ::setenv("HOME", "/home//me/", 1);
    EXPECT_EQ(homeFolder(), "/home/me");
    ::setenv("HOME", "relative", 1);
    const std::string ofAccount = homeFolder();
    EXPECT_TRUE(ofAccount.starts_with('/'));
    ::unsetenv("HOME");
    EXPECT_EQ(homeFolder(), ofAccount);
}

TEST_F(UserFoldersTest, TheDataFolderIsInTheHomeFolderUnlessXdgDataHomeIsAnAbsolutePath) {
    ::setenv("XDG_DATA_HOME", "/data/of/me", 1);
    EXPECT_EQ(userDataFolder(), "/data/of/me");
    ::setenv("XDG_DATA_HOME", "relative", 1);
    ::setenv("HOME", "/home/me", 1);
    EXPECT_EQ(userDataFolder(), "/home/me/.local/share");
    ::unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(userDataFolder(), "/home/me/.local/share");
}

TEST_F(UserFoldersTest, TheMusicFolderIsInTheHomeFolderByDefault) {
    ::setenv("HOME", "/home/jane.doe", 1);
    EXPECT_EQ(musicFolder(), "/home/jane.doe/Music");
}

TEST_F(UserFoldersTest, TheMusicFolderIsTheOneThatTheDesktopDefines) {
    ::setenv("HOME", homePath_.c_str(), 1);
    writeUserDirs("XDG_MUSIC_DIR=\"$HOME/Musik\"\n");
    EXPECT_EQ(musicFolder(), homePath_ + "/Musik");
    writeUserDirs("XDG_MUSIC_DIR=\"/srv/music\"\n", "elsewhere");
    ::setenv("XDG_CONFIG_HOME", (home_ / "elsewhere").c_str(), 1);
    EXPECT_EQ(musicFolder(), "/srv/music");
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(musicFolder(), homePath_ + "/Musik");
}

// The search for audio files takes the text after the first dot of a path as the extension. So it
// would find no file in a music folder whose path contains a dot. The path of the home folder may
// contain a dot: in the paths of the search, H: replaces the home folder.
TEST_F(UserFoldersTest, AMusicFolderWithADotInItsPathIsIgnored) {
    const std::string home = homePath_ + "/jane.doe";
    ::setenv("HOME", home.c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (home_ / ".config").c_str(), 1);
    for (const char* ignored : {"$HOME/My.Music", "$HOME/.hidden/x", "/srv/my.music"}) {
        writeUserDirs(std::string("XDG_MUSIC_DIR=\"") + ignored + "\"\n");
        EXPECT_EQ(musicFolder(), home + "/Music") << ignored;
    }
    writeUserDirs("XDG_MUSIC_DIR=\"$HOME/Audio\"\n");
    EXPECT_EQ(musicFolder(), home + "/Audio"); // a dot in the path of the home folder is allowed
    writeUserDirs("XDG_MUSIC_DIR=\"$HOME/\"\n");
    EXPECT_EQ(musicFolder(), home);
}

TEST_F(UserFoldersTest, AUserDirsFileIsIgnoredIfItIsTooLargeOrNotARegularFile) {
    ::setenv("HOME", homePath_.c_str(), 1);
    writeUserDirs("XDG_MUSIC_DIR=\"/srv/music\"\n" + std::string(70'000, '#'));
    EXPECT_EQ(musicFolder(), homePath_ + "/Music");
    std::filesystem::remove(home_ / ".config/user-dirs.dirs");
    ASSERT_EQ(::mkfifo((home_ / ".config/user-dirs.dirs").c_str(), 0600), 0);
    EXPECT_EQ(musicFolder(), homePath_ + "/Music");
}

TEST(MusicFolderIn, ParsesTheFormatOfUserDirs) {
    const auto in = [](const char* text) {
        return musicFolderIn(text, "/home/me").value_or("none");
    };
    EXPECT_EQ(in("# comment\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\nXDG_MUSIC_DIR=\"$HOME/Music\"\n"),
              "/home/me/Music");
    EXPECT_EQ(in("  XDG_MUSIC_DIR=\"/a//b/\"  "), "/a/b");
    EXPECT_EQ(in("XDG_MUSIC_DIR=\"/a \\\"b\\\" \\$c\""), "/a \"b\" $c");
    EXPECT_EQ(in("XDG_MUSIC_DIR=\"$HOME\""), "/home/me");
    EXPECT_EQ(in("XDG_MUSIC_DIR=\"/one\"\nXDG_MUSIC_DIR=\"/two\"\nXDG_MUSIC_DIR=x\n"), "/two");
}

TEST(MusicFolderIn, RejectsLinesThatAreNotInTheFormatOfUserDirs) {
    for (const char* text : {"",
                             "XDG_MUSIC_DIR",
                             "XDG_MUSIC_DIR=",
                             "XDG_MUSIC_DIR=/a",
                             "XDG_MUSIC_DIR='/a'",
                             "XDG_MUSIC_DIR=\"",
                             "XDG_MUSIC_DIR=\"\"",
                             "XDG_MUSIC_DIR=\"relative\"",
                             "XDG_MUSIC_DIR=\"/open",
                             "XDG_MUSIC_DIR=\"/open\\\"",
                             "XDG_MUSIC_DIR=\"/open\\",
                             "XDG_MUSIC_DIR=\"/a\"b",
                             "XDG_MUSIC_DIR=\"/a\"; rm",
                             "XDG_MUSIC_DIR=\"$HOMES/a\"",
                             "XDG_MUSIC_DIR=\"/$HOME\"",
                             "XDG_MUSIC_DIR=\"/`id`\"",
                             "XDG_MUSIC_DIR = \"/a\"",
                             "MY_XDG_MUSIC_DIR=\"/a\"",
                             "#XDG_MUSIC_DIR=\"/a\"",
                             "XDG_MUSIC_DIR=\"~/a\""}) {
        EXPECT_EQ(musicFolderIn(text, "/home/me"), std::nullopt) << text;
    }
}

} // namespace
} // namespace sonarith
