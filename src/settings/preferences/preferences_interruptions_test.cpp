// SPDX-License-Identifier: GPL-3.0-or-later
// Tests what happens if the user closes, or closes and reopens, the preferences' window while one
// of its procedures runs: in each yield and while each message is shown.
#include <functional>
#include <string>

#include "support/preferences_world.h"

namespace sonarith {
namespace {

using testing::ElementsAre;

/// What the user does during the procedure.
enum class Meanwhile { close, reopen };

struct PreferencesInterrupted : test::PreferencesWorld {
    PreferencesInterrupted() {
        for (const char* folder : {"c:\\", "c:\\sonarith", "d:\\", "d:\\music"}) {
            directories.addFolder(folder);
        }
        files.addDrive('d');
    }
    void TestBody() override {}

    void interrupt(Meanwhile what) {
        form.unload();
        if (what == Meanwhile::reopen) {
            form.show();
        }
    }
    void create(const std::string& name) {
        form.Check2.setValue(1).passOver();
        form.Text10.setText(name);
        form.Co111.click();
    }
    /// Checks that the interrupted procedure has left no transaction open: one change of a switch
    /// causes one write of the store at once.
    void expectOneWriteForAChange() {
        const int before = store.fileWrites;
        form.Check5.setValue(1 - form.Check5.value()).passOver();
        EXPECT_EQ(store.fileWrites, before + 1);
    }
};

void forBoth(const std::function<void(Meanwhile)>& test) {
    for (const Meanwhile what : {Meanwhile::close, Meanwhile::reopen}) {
        SCOPED_TRACE(what == Meanwhile::close ? "closed" : "reopened");
        test(what);
    }
}

TEST_F(PreferencesInterrupted,
       TheWindowStaysAsTheUserLeftItAfterAnInterruptionInTheYieldOfTheLoadStep) {
    forBoth([](Meanwhile what) {
        const bool reopened = what == Meanwhile::reopen;
        PreferencesInterrupted run;
        run.loop.atYield(1, [&] {
            run.interrupt(what);
            if (reopened) {
                run.form.Check2.setValue(1).passOver();
            }
        });
        run.start();
        EXPECT_EQ(run.form.loaded(), reopened);
        EXPECT_EQ(run.form.visible(), reopened);
        EXPECT_EQ(run.form.Check2.value(), reopened ? 1 : 0); // the state that the user has set
        EXPECT_EQ(run.form.Picture6.visible(), reopened);
        run.form.Check6.setValue(0).passOver();
        EXPECT_EQ(run.held("HDWarning"), "0");
        run.expectOneWriteForAChange();
    });
}

TEST_F(PreferencesInterrupted,
       TheLoadStepFinishesEvenIfItIsInterruptedWhileItLoadsThePlayersWindow) {
    forBoth([](Meanwhile what) {
        PreferencesInterrupted run;
        run.Form4.unload();
        run.Form4.onLoad = [&] {
            run.loop.yield();
        };
        run.loop.atYield(1, [&] { run.interrupt(what); });
        run.start();
        EXPECT_TRUE(run.Form4.loaded());
        // The rest of the load step calls RefreshDriveSpace(). If the preferences' window was
        // closed, this call loads the window again without showing it.
        EXPECT_TRUE(run.form.loaded());
        EXPECT_EQ(run.form.visible(), what == Meanwhile::reopen);
        EXPECT_EQ(run.form.Label4.caption(), "200000");
        EXPECT_EQ(run.form.Combo1.listCount(), 9);
        EXPECT_EQ(run.form.Combo1.listIndex(), 5);
        EXPECT_EQ(run.form.cbxFormat.listCount(), 2);
        EXPECT_EQ(run.held("DecodePath"), "c:\\sonarith\\WAVFiles");
        run.expectOneWriteForAChange();
    });
}

TEST_F(PreferencesInterrupted, AnInterruptionDuringAMessageOfTheLoadStepKeepsTheStoredDestination) {
    for (const int box : {1, 2}) {
        forBoth([box](Meanwhile what) {
            SCOPED_TRACE("message " + std::to_string(box));
            PreferencesInterrupted run;
            run.store.put("Settings", "DecodePath", "x:\\gone");
            int boxesUp = 0;
            run.boxes.whileUp = [&](const test::ShownBox&) {
                if (++boxesUp == box) {
                    run.interrupt(what);
                    run.boxes.whileUp = nullptr;
                }
            };
            run.start();
            // A reopened window shows its own two messages.
            EXPECT_EQ(run.boxes.shown.size(), what == Meanwhile::reopen ? 4U : 2U);
            EXPECT_EQ(run.form.loaded(), what == Meanwhile::reopen);
            EXPECT_EQ(run.form.visible(), what == Meanwhile::reopen);
            EXPECT_EQ(run.held("DecodePath"), "x:\\gone");
            EXPECT_EQ(run.settings.decodePath, "x:\\gone");
            run.expectOneWriteForAChange();
        });
    }
}

TEST_F(PreferencesInterrupted, ANewDestinationIsSavedBeforeTheYieldThatFollowsItsCreation) {
    forBoth([](Meanwhile what) {
        PreferencesInterrupted run;
        run.start();
        run.form.Text9.setText("d:\\");
        run.loop.atYield(1, [&] { run.interrupt(what); });
        run.create("new");
        EXPECT_EQ(run.form.loaded(), what == Meanwhile::reopen);
        EXPECT_EQ(run.held("DecodePath"), "d:\\new");
        EXPECT_EQ(run.settings.decodePath, "d:\\new");
        run.expectOneWriteForAChange();
    });
}

TEST_F(PreferencesInterrupted,
       AnInterruptionDuringTheMessageAboutAMissingNameKeepsTheStoredDestination) {
    forBoth([](Meanwhile what) {
        PreferencesInterrupted run;
        run.start();
        run.boxes.whileUp = [&](const test::ShownBox&) {
            run.interrupt(what);
        };
        run.create("");
        EXPECT_EQ(run.boxes.shown.size(), 1U);
        EXPECT_EQ(run.form.loaded(), what == Meanwhile::reopen);
        EXPECT_EQ(run.form.Check2.value(), what == Meanwhile::reopen ? 0 : 1);
        EXPECT_EQ(run.held("DecodePath"), "c:\\sonarith\\WAVFiles");
        run.expectOneWriteForAChange();
    });
}

TEST_F(PreferencesInterrupted,
       AnInterruptionDuringAMessageOfAFailedCreationKeepsTheStoredDestination) {
    for (const int box : {1, 2}) {
        forBoth([box](Meanwhile what) {
            SCOPED_TRACE("message " + std::to_string(box));
            PreferencesInterrupted run;
            run.start();
            run.files.failWith(test::FakeFileSystem::Operation::makeFolder, "d:\\new",
                               ErrorNumber::permissionDenied);
            run.form.Text9.setText("d:\\");
            int boxesUp = 0;
            run.boxes.whileUp = [&](const test::ShownBox&) {
                if (++boxesUp == box) {
                    run.interrupt(what);
                }
            };
            run.create("new");
            EXPECT_EQ(boxesUp, 2);
            EXPECT_EQ(run.form.loaded(), what == Meanwhile::reopen);
            EXPECT_EQ(run.held("DecodePath"), "c:\\sonarith\\WAVFiles");
            // The settings in memory keep the folder that could not be created, unless a reopened
            // window has read the stored folder again.
            EXPECT_EQ(run.settings.decodePath,
                      what == Meanwhile::reopen ? "c:\\sonarith\\wavfiles" : "d:\\new");
            run.expectOneWriteForAChange();
        });
    }
}

TEST_F(PreferencesInterrupted, TheMuteHandlerReadsTheCheckBoxAfterItHasLoadedThePlayersWindow) {
    forBoth([](Meanwhile what) {
        PreferencesInterrupted run;
        run.startWithAllOff();
        run.Form4.unload();
        run.Form4.onLoad = [&] {
            run.loop.yield();
        };
        run.loop.atYield(1, [&] { run.interrupt(what); });
        run.form.Check1.setValue(1).passOver();
        // Reopening the preferences' window resets the check box to the value of its setting. The
        // handler reads the check box only after that.
        const bool reopened = what == Meanwhile::reopen;
        EXPECT_THAT(run.muted, ElementsAre(reopened ? "Option14" : "Option13"));
        EXPECT_EQ(run.form.loaded(), reopened);
        EXPECT_EQ(run.settings.muteButton, reopened ? 0 : 1);
        EXPECT_EQ(run.held("mute button"), reopened ? "0" : "1");
        run.expectOneWriteForAChange();
    });
}

} // namespace
} // namespace sonarith
