// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/form.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

#include "platform/controls/basic_controls.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/list_box.h"
#include "platform/controls/timer.h"
#include "support/virtual_event_loop.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct FormTest : testing::Test {
    Form form{"Form1", "Caption"};
    std::vector<std::string> events;

    FormTest() {
        form.onLoad = [this] {
            events.push_back("load");
        };
        form.onQueryUnload = [this] {
            events.push_back("query");
        };
        form.onUnload = [this] {
            events.push_back("unload");
        };
        form.onResize = [this] {
            events.push_back("resize");
        };
    }
};

TEST_F(FormTest, StartsUnloadedAndHidden) {
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(FormTest, TwoCallsOfLoadRunTheLoadStepOnceAndDoNotShowTheForm) {
    form.load();
    form.load();
    EXPECT_TRUE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, ElementsAre("load"));
}

TEST_F(FormTest, ShowingAnUnloadedFormLoadsItBeforeItBecomesVisible) {
    bool visibleDuringLoad = true;
    form.onLoad = [&] {
        visibleDuringLoad = form.visible();
    };
    form.show();
    EXPECT_FALSE(visibleDuringLoad);
    EXPECT_TRUE(form.loaded());
    EXPECT_TRUE(form.visible());
}

TEST_F(FormTest, MayBeShownByItsOwnLoadStep) {
    int loads = 0;
    form.onLoad = [&] {
        ++loads;
        form.show();
        EXPECT_TRUE(form.visible());
    };
    form.load();
    EXPECT_EQ(loads, 1);
    EXPECT_TRUE(form.visible());
}

TEST_F(FormTest, StaysHiddenIfItsLoadStepUnloadsIt) {
    form.onLoad = [&] {
        form.unload();
    };
    form.show();
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, ElementsAre("query", "unload"));
}

TEST_F(FormTest, StaysLoadedWhenHidden) {
    form.show();
    form.hide();
    EXPECT_TRUE(form.loaded());
    EXPECT_FALSE(form.visible());
    form.show();
    EXPECT_THAT(events, ElementsAre("load"));
}

TEST_F(FormTest, UnloadingRunsTheQueryStepThenTheUnloadStepThenHidesTheForm) {
    form.show();
    bool seenDuringUnload = false;
    form.onUnload = [&] {
        events.push_back("unload");
        seenDuringUnload = form.visible() && form.loaded();
    };
    form.unload();
    EXPECT_THAT(events, ElementsAre("load", "query", "unload"));
    EXPECT_TRUE(seenDuringUnload);
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.visible());
}

TEST_F(FormTest, UnloadingAnUnloadedFormDoesNothing) {
    form.unload();
    EXPECT_THAT(events, IsEmpty());
    EXPECT_FALSE(form.loaded());
}

TEST_F(FormTest, ANestedUnloadRepeatsNoStep) {
    form.onQueryUnload = [&] {
        events.push_back("query");
        form.unload();
    };
    form.onUnload = [&] {
        events.push_back("unload");
        form.unload();
    };
    form.load();
    form.unload();
    EXPECT_THAT(events, ElementsAre("load", "query", "unload"));
}

TEST_F(FormTest, ANestedUnloadRunsTheHandlerForNestedUnloads) {
    form.onQueryUnload = [&] {
        events.push_back("query");
        form.unload();
    };
    form.onUnloadAgain = [&] {
        events.push_back("again");
    };
    form.load();
    form.unload();
    EXPECT_THAT(events, ElementsAre("load", "query", "again", "unload"));
}

TEST_F(FormTest, ShowingTheFormDuringItsUnloadDoesNotCancelTheUnload) {
    form.onUnload = [&] {
        form.show();
    };
    form.show();
    form.unload();
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, ElementsAre("load", "query"));
}

TEST_F(FormTest, LoadsAgainAfterAnUnload) {
    form.load();
    form.unload();
    form.load();
    EXPECT_THAT(events, ElementsAre("load", "query", "unload", "load"));
}

TEST_F(FormTest, IsAlreadyUnloadedWhenAnUnloadNotifiesThatTheFormIsHidden) {
    form.show();
    bool loadedWhenNotified = true;
    const Connection connection =
        form.changed.connect([&](Property) { loadedWhenNotified = form.loaded(); });
    form.unload();
    EXPECT_FALSE(loadedWhenNotified);
}

TEST_F(FormTest, RunsItsResizeHandlerOnlyWhenTheSizeChanges) {
    form.setInnerSize(3990_twips, 5490_twips);
    form.setInnerSize(3990_twips, 5490_twips);
    EXPECT_THAT(events, ElementsAre("resize"));
    form.setInnerSize(3990_twips, 5491_twips);
    EXPECT_EQ(form.innerWidth(), 3990_twips);
    EXPECT_EQ(form.innerHeight(), 5491_twips);
    EXPECT_THAT(events, ElementsAre("resize", "resize"));
}

TEST_F(FormTest, APopupRequestPassesTheRequestedMenu) {
    MenuItem menu(form, "mnupopup", "popup");
    const MenuItem* requested = nullptr;
    const Connection connection =
        form.popupRequested.connect([&](MenuItem& item) { requested = &item; });
    form.popupRequested.emit(menu);
    EXPECT_EQ(requested, &menu);
}

/// A form with controls of several kinds. Its constructor sets their designed state: the state that
/// keepDesign() stores and that each load restores.
struct DesignedForm : Form {
    explicit DesignedForm(EventLoop& loop) : Form("FrmPrefs", "Preferences"), tick(*this, loop) {
        hidden.setVisible(false);
        tabs.setToolTip("a tip");
        setDesignedSize(100_twips, 200_twips);
        keepDesign();
    }
    struct Ticks {
        Ticks(Form& form, EventLoop& loop)
            : on(form, loop, "on", std::chrono::milliseconds(10), TimerAtLoad::on),
              off(form, loop, "off", std::chrono::milliseconds(10)) {}
        Timer on;
        Timer off;
    };
    CheckBox box{*this, "Check1", "Mute"};
    TextBox text{*this, "Text7", "100"};
    Label hidden{*this, "Label4", "Label4"};
    ListBox list{*this, "List1"};
    ComboBox combo{*this, "Combo1"};
    TabControl tabs{*this, "SSTab2", {"a", "b"}};
    Ticks tick;
};

struct DesignTest : testing::Test {
    test::VirtualEventLoop loop;
    DesignedForm form{loop};

    void changeTheState() {
        form.setCaption("other");
        form.setWidth(1_twips);
        form.setLeft(5_twips);
        form.box.setValue(1).passOver();
        form.box.setCaption("Play");
        form.box.setEnabled(false);
        form.text.setText("7");
        form.hidden.setVisible(true);
        form.list.addItem("line");
        form.combo.addItem("entry");
        form.tabs.setTab(1).passOver();
        form.tabs.setToolTip("");
    }
    void expectAsDesigned() const {
        EXPECT_EQ(form.caption(), "Preferences");
        EXPECT_EQ(form.width(), 100_twips);
        EXPECT_EQ(form.left(), 0_twips);
        EXPECT_EQ(form.box.value(), 0);
        EXPECT_EQ(form.box.caption(), "Mute");
        EXPECT_TRUE(form.box.enabled());
        EXPECT_EQ(form.text.text(), "100");
        EXPECT_FALSE(form.hidden.visible());
        EXPECT_EQ(form.list.listCount(), 0);
        EXPECT_EQ(form.combo.listCount(), 0);
        EXPECT_EQ(form.tabs.tab(), 0);
        EXPECT_EQ(form.tabs.toolTip(), "a tip");
    }
};

TEST_F(DesignTest, EachLoadStartsWithTheDesignedState) {
    form.load();
    changeTheState();
    form.unload();
    form.onLoad = [this] {
        expectAsDesigned();
    };
    form.load();
    expectAsDesigned();
}

TEST_F(DesignTest, ResettingTheControlsAtALoadRunsNoHandler) {
    form.load();
    changeTheState();
    form.unload();
    int ran = 0;
    const auto count = [&ran] {
        ++ran;
    };
    form.box.onClick = count;
    form.text.onChange = count;
    form.list.onClick = count;
    form.combo.onClick = count;
    form.load();
    EXPECT_EQ(ran, 0);
}

TEST_F(DesignTest, ResettingACheckBoxAtALoadNotifiesItsViewOnce) {
    form.load();
    changeTheState();
    form.unload();
    std::vector<Property> changes;
    const Connection connection =
        form.box.changed.connect([&](Property which) { changes.push_back(which); });
    form.load();
    EXPECT_THAT(changes, ElementsAre(Property::all));
}

TEST_F(DesignTest, ALoadStartsTheTimersThatAreOnByDesignAndAnUnloadStopsAllTimers) {
    EXPECT_EQ(loop.wakeupCount(), 0U);
    form.load();
    EXPECT_TRUE(form.tick.on.enabled());
    EXPECT_FALSE(form.tick.off.enabled());
    form.tick.off.setEnabled(true);
    form.unload();
    EXPECT_EQ(loop.wakeupCount(), 0U);
    form.load();
    EXPECT_TRUE(form.tick.on.enabled());
    EXPECT_FALSE(form.tick.off.enabled());
}

TEST_F(DesignTest, TimersAreStillEnabledDuringTheUnloadStep) {
    form.load();
    bool enabled = false;
    form.onUnload = [&] {
        enabled = form.tick.on.enabled();
    };
    form.unload();
    EXPECT_TRUE(enabled);
}

TEST_F(DesignTest, TouchedLoadsTheFormOnceAndDoesNotShowIt) {
    EXPECT_EQ(touched(form).text.text(), "100");
    EXPECT_TRUE(form.loaded());
    EXPECT_FALSE(form.visible());
    touched(form).text.setText("5");
    EXPECT_EQ(touched(form).text.text(), "5");
    EXPECT_EQ(form.timesLoaded(), 1);
}

TEST_F(DesignTest, ADesignedSizeAppliesAtOnceAndAtEachLaterLoad) {
    form.load();
    form.setDesignedSize(300_twips, 400_twips);
    EXPECT_EQ(form.height(), 400_twips);
    form.setHeight(1_twips);
    form.unload();
    form.load();
    EXPECT_EQ(form.width(), 300_twips);
    EXPECT_EQ(form.height(), 400_twips);
}

TEST_F(DesignTest, AFormCountsItsLoads) {
    form.load();
    form.load();
    EXPECT_EQ(form.timesLoaded(), 1);
    form.unload();
    form.load();
    EXPECT_EQ(form.timesLoaded(), 2);
}

TEST_F(DesignTest, AWindowRegionLastsUntilTheNextLoad) {
    form.load();
    std::vector<Property> changes;
    const Connection connection =
        form.changed.connect([&](Property which) { changes.push_back(which); });
    form.setWindowRegion(WindowRegion{{{0, 0, 10, 10}}});
    EXPECT_THAT(changes, ElementsAre(Property::region));
    form.unload();
    form.load();
    EXPECT_FALSE(form.windowRegion().has_value());
}

} // namespace
} // namespace sonarith
