// SPDX-License-Identifier: GPL-3.0-or-later
#include "worktree/open_file.h"

#include "support/work_tree_world.h"

namespace sonarith {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct OpenFileTest : test::WorkTreeWorld {
    OpenFileTest() {
        tree.showfiles();
        for (const char* path : {"d:\\New.wav", "d:\\b.mp3", "d:\\c.ogg"}) {
            disk.addFile(path, std::string(200, 'x'));
        }
    }
};

TEST_F(OpenFileTest, OffersWavAndMp3FilesInTheDialog) {
    form.mnuOpenfile.click();
    ASSERT_EQ(dialog.opened.size(), 1U);
    EXPECT_EQ(dialog.opened[0].title, "Select WAV or MP3 file");
    EXPECT_EQ(dialog.opened[0].filter, "WAV, MP3|*.wav;*.mp3");
    EXPECT_EQ(dialog.opened[0].defaultExtension, "wav");
    EXPECT_EQ(dialog.opened[0].initialFolder, process.settings.decodePath);
    EXPECT_EQ(dialog.opened[0].fileName, "");
}

TEST_F(OpenFileTest, AddsTheChosenFile) {
    dialog.choices = {"d:\\New.wav", "d:\\b.mp3"};
    form.mnuOpenfile.click();
    form.mnuOpenfile.click();
    EXPECT_THAT(lines(form.List1), ElementsAre("d:\\new.wav"));
    EXPECT_THAT(lines(form.List2), ElementsAre("d:\\b.mp3"));
}

TEST_F(OpenFileTest, TheDialogKeepsItsFileNameBetweenUses) {
    dialog.choices = {"d:\\New.wav", std::nullopt, std::nullopt};
    form.mnuOpenfile.click();
    form.mnuOpenfile.click();
    form.mnuOpenfile.click();
    EXPECT_EQ(dialog.opened[1].fileName, "d:\\New.wav");
    EXPECT_EQ(dialog.opened[2].fileName, "d:\\New.wav");
}

TEST_F(OpenFileTest, CancellingTheFirstDialogReturnsAtOnceAndDoesNothing) {
    const auto before = outline();
    const auto start = loop.now();
    form.mnuOpenfile.click();
    EXPECT_EQ(outline(), before);
    EXPECT_EQ(loop.now(), start);
}

TEST_F(OpenFileTest, ALaterCancelPassesThePreviousFileToTheAdderAgain) {
    dialog.choices = {"d:\\New.wav", std::nullopt};
    form.mnuOpenfile.click();
    const auto before = outline();
    const auto start = loop.now();
    form.mnuOpenfile.click();
    EXPECT_EQ(loop.now() - start, 300ms) << "the adder must be called; it waits for 300 ms";
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(lines(form.List1), ElementsAre("d:\\new.wav"));
}

TEST_F(OpenFileTest, AFileOfAnotherTypeIsPassedToTheAdderButNotAdded) {
    dialog.choices = {"d:\\c.ogg"};
    const auto before = outline();
    const auto start = loop.now();
    form.mnuOpenfile.click();
    EXPECT_EQ(loop.now() - start, 300ms) << "the adder must be called; it waits for 300 ms";
    EXPECT_EQ(outline(), before);
    EXPECT_THAT(lines(form.List1), IsEmpty());
    EXPECT_THAT(lines(form.List2), IsEmpty());
}

} // namespace
} // namespace sonarith
