// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/form.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

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

TEST_F(FormTest, StartsNeitherLoadedNorSeen) {
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(FormTest, LoadsOnceAndUnseen) {
    form.load();
    form.load();
    EXPECT_TRUE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, ElementsAre("load"));
}

TEST_F(FormTest, ShowingLoadsFirst) {
    bool seenDuringLoad = true;
    form.onLoad = [&] {
        seenDuringLoad = form.visible();
    };
    form.show();
    EXPECT_FALSE(seenDuringLoad);
    EXPECT_TRUE(form.loaded());
    EXPECT_TRUE(form.visible());
}

TEST_F(FormTest, ItsOwnLoadStepMayShowIt) {
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

TEST_F(FormTest, StaysUnseenIfItsLoadStepUnloadsIt) {
    form.onLoad = [&] {
        form.unload();
    };
    form.show();
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.visible());
    EXPECT_THAT(events, ElementsAre("query", "unload"));
}

TEST_F(FormTest, HidingKeepsItLoaded) {
    form.show();
    form.hide();
    EXPECT_TRUE(form.loaded());
    EXPECT_FALSE(form.visible());
    form.show();
    EXPECT_THAT(events, ElementsAre("load"));
}

TEST_F(FormTest, UnloadingAsksThenUnloadsThenHides) {
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

TEST_F(FormTest, UnloadingWhatIsNotLoadedDoesNothing) {
    form.unload();
    EXPECT_THAT(events, IsEmpty());
    EXPECT_FALSE(form.loaded());
}

TEST_F(FormTest, AnUnloadWithinTheUnloadingDoesNothing) {
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

TEST_F(FormTest, TellsOfAnUnloadWithinTheUnloading) {
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

TEST_F(FormTest, ShowingWithinTheUnloadingDoesNotSaveIt) {
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

TEST_F(FormTest, IsNotLoadedAnyMoreWhenItTellsThatItIsHidden) {
    form.show();
    bool loadedWhenTold = true;
    const Connection connection = form.changed.connect([&] { loadedWhenTold = form.loaded(); });
    form.unload();
    EXPECT_FALSE(loadedWhenTold);
}

TEST_F(FormTest, RunsItsResizeForAnotherSizeOnly) {
    form.setInnerSize(3990, 5490);
    form.setInnerSize(3990, 5490);
    EXPECT_THAT(events, ElementsAre("resize"));
    form.setInnerSize(3990, 5491);
    EXPECT_EQ(form.innerWidth(), 3990);
    EXPECT_EQ(form.innerHeight(), 5491);
    EXPECT_THAT(events, ElementsAre("resize", "resize"));
}

TEST_F(FormTest, PassesTheMenuThatIsToOpen) {
    MenuItem menu("mnupopup", "popup");
    const MenuItem* asked = nullptr;
    const Connection connection =
        form.popupRequested.connect([&](MenuItem& item) { asked = &item; });
    form.popupRequested.emit(menu);
    EXPECT_EQ(asked, &menu);
}

} // namespace
} // namespace sonarith
