// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/picture_box.h"

#include <gmock/gmock.h>

#include "platform/controls/form.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const PictureLine a{{-20, 950}, {0, 950}};
const PictureLine b{{0, 950}, {20, -1050}};

TEST(PictureBox, KeepsItsLinesUntilItIsCleared) {
    Form form("Form4");
    PictureBox picture(form, "picPeakVol");
    std::vector<PictureLine> drawn;
    int clearings = 0;
    const Connection lines =
        picture.lineDrawn.connect([&](const PictureLine& line) { drawn.push_back(line); });
    const Connection clears = picture.cleared.connect([&] { ++clearings; });
    picture.line(a.from, a.to);
    picture.line(b.from, b.to);
    EXPECT_THAT(picture.lines(), ElementsAre(a, b));
    EXPECT_EQ(drawn, picture.lines());
    picture.clear();
    EXPECT_THAT(picture.lines(), IsEmpty());
    EXPECT_EQ(clearings, 1);
}

TEST(PictureBox, IsClearedWhenItsFormLoads) {
    Form form("Form4");
    PictureBox picture(form, "picPeakVol");
    picture.line(a.from, a.to);
    form.load();
    EXPECT_THAT(picture.lines(), IsEmpty());
}

TEST(PictureBox, DoesNotAllocateWithinTheReservedCapacity) {
    Form form("Form4");
    PictureBox picture(form, "picPeakVol");
    picture.reserveLines(3);
    const PictureLine* place = picture.lines().data();
    for (int sweep = 0; sweep < 3; ++sweep) {
        for (int i = 0; i < 3; ++i) {
            picture.line(a.from, a.to);
        }
        EXPECT_EQ(picture.lines().data(), place);
        picture.clear();
    }
}

} // namespace
} // namespace sonarith
