// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/cd_commands.h"

#include "support/player_world.h"

namespace sonarith {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct CdCommandsTest : test::PlayerWorld {
    CdCommands& commands = player.commands;
};

TEST_F(CdCommandsTest, AnUncheckedCommandStoresItsStatusInFileIndex) {
    media.answer("stop voice1", {.status = 263});
    media.answer("stop cd", {.status = 0});
    process.fileIndex = 77;
    EXPECT_FALSE(commands.SendMCI("stop voice1", CommandCheck::unchecked));
    EXPECT_EQ(process.fileIndex, 263);
    EXPECT_TRUE(commands.SendMCI("stop cd", CommandCheck::unchecked));
    EXPECT_EQ(process.fileIndex, 0);
    EXPECT_TRUE(form.loaded());
    EXPECT_THAT(media.replySizes, testing::Each(0U));
    EXPECT_THAT(media.errorsAsked, IsEmpty());
}

TEST_F(CdCommandsTest, ACheckedCommandThatSucceedsLeavesFileIndexAndThePanelUnchanged) {
    process.fileIndex = 77;
    media.answer("play cd", {});
    EXPECT_THAT(
        operationsOf([&] { EXPECT_TRUE(commands.SendMCI("play cd", CommandCheck::checked)); }),
        ElementsAre("play cd"));
    EXPECT_EQ(process.fileIndex, 77);
    EXPECT_TRUE(form.loaded());
}

TEST_F(CdCommandsTest, AFailedCheckedCommandClosesAllDevicesAndUnloadsThePanelWithoutAMessage) {
    media.answer("play cd", {.status = 275});
    EXPECT_FALSE(commands.SendMCI("play cd", CommandCheck::checked));
    const std::vector<std::string> start(media.log.begin(), media.log.begin() + 3);
    EXPECT_THAT(start, ElementsAre("play cd", "close all", "close all"));
    // "close all" is sent again at the end of the unload.
    EXPECT_EQ(media.log.back(), "close all");
    EXPECT_EQ(std::count(media.log.begin(), media.log.end(), "close all"), 3);
    // The text of the error is read and discarded.
    EXPECT_THAT(media.errorsAsked, ElementsAre(275));
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(process.PlayerOpen);
    EXPECT_THAT(boxes.shown, IsEmpty());
}

TEST_F(CdCommandsTest, AFailedCloseAllAfterAFailedCommandCausesNoFurtherCommand) {
    media.answer("play cd", {.status = 275});
    media.answer("close all", {.status = 299});
    EXPECT_FALSE(commands.SendMCI("play cd", CommandCheck::checked));
    EXPECT_EQ(std::count(media.log.begin(), media.log.end(), "close all"), 3);
    EXPECT_EQ(process.fileIndex, 299);
    EXPECT_FALSE(form.loaded());
}

TEST_F(CdCommandsTest, AQueryReturnsItsReplyAndAFailedQueryAnEmptyText) {
    media.answer("status cd mode", {.reply = "playing"});
    process.fileIndex = 77;
    EXPECT_EQ(commands.ask("status cd mode"), "playing");
    EXPECT_THAT(media.replySizes, ElementsAre(30U));
    // The second reply does not contain the rest of the first, longer one.
    media.answer("status cd mode", {.reply = "off"});
    EXPECT_EQ(commands.ask("status cd mode"), "off");
    media.answer("status cd mode", {.status = 263, .reply = "x"});
    EXPECT_EQ(commands.ask("status cd mode"), "");
    EXPECT_EQ(process.fileIndex, 77);
    EXPECT_TRUE(form.loaded());
}

TEST_F(CdCommandsTest, AReplyLongerThanTheBufferIsShortened) {
    media.answer("status cd mode", {.reply = "0123456789012345678901234567890123456789"});
    EXPECT_EQ(commands.ask("status cd mode"), "01234567890123456789012345678");
}

/// Marks a capture as running. In the program, a click on Command8 ("Stop Everything") stops and
/// saves the capture; here, the click is logged and the capture is marked as stopped.
struct CaptureDuringPlayerTest : CdCommandsTest {
    CaptureDuringPlayerTest() {
        main.load();
        main.Command8.onClick = [this] {
            operations.emplace_back("stop everything");
            main.tmrRecord.setEnabled(false);
        };
        main.tmrRecord.setEnabled(true);
        operations.clear();
    }
};

TEST_F(CaptureDuringPlayerTest, IsSavedBeforeAllDevicesAreClosed) {
    commands.closeAll(CommandCheck::unchecked);
    EXPECT_THAT(operations, ElementsAre("stop everything", "close all"));
    operations.clear();
    commands.closeAll(CommandCheck::unchecked);
    EXPECT_THAT(operations, ElementsAre("close all"));
}

TEST_F(CaptureDuringPlayerTest, IsSavedWhenACheckedCommandFails) {
    media.answer("play cd", {.status = 275});
    commands.SendMCI("play cd", CommandCheck::checked);
    ASSERT_GE(operations.size(), 4U);
    EXPECT_THAT(std::vector(operations.begin(), operations.begin() + 4),
                ElementsAre("play cd", "stop everything", "close all", "close all"));
    EXPECT_EQ(std::count(operations.begin(), operations.end(), "stop everything"), 1);
}

TEST_F(CaptureDuringPlayerTest, IsSavedBeforeThePanelsUnloadClosesTheDisc) {
    form.unload();
    ASSERT_FALSE(operations.empty());
    EXPECT_EQ(operations.front(), "stop everything");
    EXPECT_EQ(operations.back(), "close all");
}

TEST_F(CaptureDuringPlayerTest, IsSavedByTheExitButtonOfThePanel) {
    form.Command1.click();
    ASSERT_FALSE(operations.empty());
    EXPECT_EQ(operations.front(), "stop everything");
}

TEST_F(CaptureDuringPlayerTest, IsSavedWhenThePlayerIsSwitchedOn) {
    form.OptCD.choose();
    ASSERT_FALSE(operations.empty());
    EXPECT_EQ(operations.front(), "stop everything");
    EXPECT_EQ(operations[1], "wave open");
}

TEST_F(CaptureDuringPlayerTest, IsSavedEvenIfItBeginsWhileThePanelCloses) {
    main.tmrRecord.setEnabled(false);
    loop.atYield(6, [&] { main.tmrRecord.setEnabled(true); });
    form.unload();
    EXPECT_THAT(operations, Contains("stop everything"));
    EXPECT_EQ(operations.back(), "close all");
    EXPECT_EQ(operations[operations.size() - 2], "stop everything");
}

TEST_F(CaptureDuringPlayerTest, IsNotStoppedWhenThePlayerIsSwitchedOff) {
    // While the panel is open, a click on "Start " in the main window first clicks Command6, which
    // switches the player off. So a second click on "Start " closes the CD device of a running
    // capture.
    form.Command6.click();
    EXPECT_THAT(operations, testing::Not(Contains("stop everything")));
    EXPECT_THAT(operations, Contains("close cd"));
}

} // namespace
} // namespace sonarith
