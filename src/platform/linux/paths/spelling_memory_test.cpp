// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/spelling_memory.h"

#include <gtest/gtest.h>

namespace sonarith {
namespace {

std::string found(SpellingMemory& memory, const std::string& path) {
    const auto spelled = memory.find(path);
    return spelled.value_or("nothing");
}

TEST(SpellingMemory, FindsAPathInAnyCase) {
    SpellingMemory memory;
    memory.remember("/Home/My \xc3\x84"
                    "rger");
    EXPECT_EQ(found(memory, "/home/my \xc3\xa4rger"), "/Home/My \xc3\x84rger");
    EXPECT_EQ(found(memory, "/HOME/MY \xc3\x84RGER"), "/Home/My \xc3\x84rger");
    EXPECT_EQ(found(memory, "/home"), "nothing");
}

TEST(SpellingMemory, FindsTheLastRememberedSpelling) {
    SpellingMemory memory;
    memory.remember("/Music");
    memory.remember("/MUSIC");
    EXPECT_EQ(found(memory, "/music"), "/MUSIC");
    memory.remember("/MUSIC");
    EXPECT_EQ(found(memory, "/music"), "/MUSIC");
}

// In this test and the next, each path occupies 8 bytes: 4 bytes as given and 4 bytes in lower
// case.
TEST(SpellingMemory, ForgetsTheLeastRecentlyUsedPathFirst) {
    SpellingMemory memory(3 * 8);
    memory.remember("/One");
    memory.remember("/Two");
    memory.remember("/Six");
    EXPECT_EQ(found(memory, "/one"), "/One"); // this counts as a use
    memory.remember("/Ten");
    EXPECT_EQ(found(memory, "/two"), "nothing");
    EXPECT_EQ(found(memory, "/one"), "/One");
    EXPECT_EQ(found(memory, "/six"), "/Six");
    EXPECT_EQ(found(memory, "/ten"), "/Ten");
}

TEST(SpellingMemory, DoesNotCountTheBytesOfReplacedSpellings) {
    SpellingMemory memory(3 * 8);
    for (int i = 0; i < 100; ++i) {
        memory.remember("/One");
        memory.remember("/Two");
        memory.remember("/TWO");
    }
    EXPECT_EQ(found(memory, "/one"), "/One");
    EXPECT_EQ(found(memory, "/two"), "/TWO");
}

TEST(SpellingMemory, KeepsNoPathLargerThanItsLimit) {
    SpellingMemory memory(100);
    memory.remember("/a");
    memory.remember("/" + std::string(100, 'x'));
    EXPECT_EQ(found(memory, "/" + std::string(100, 'x')), "nothing");
    memory.remember("/b");
    EXPECT_EQ(found(memory, "/b"), "/b");
}

} // namespace
} // namespace sonarith
