// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/mnemonics.h"

#include <gmock/gmock.h>

namespace sonarith {
namespace {

TEST(Mnemonics, MarkTheFirstLetterOfEachCaptionOrElseAnUnusedInnerLetter) {
    EXPECT_EQ(withMnemonics({"File", "Action", "Preferences", "Help"}),
              QStringList({"&File", "&Action", "&Preferences", "&Help"}));
    EXPECT_EQ(withMnemonics({"Start ", "Stop", "Refresh List"}),
              QStringList({"&Start ", "S&top", "&Refresh List"}));
}

TEST(Mnemonics, TheFirstLetterOfALaterWordIsPreferredToInnerLetters) {
    EXPECT_EQ(withMnemonics({"Remove", "Remove and Delete File"}),
              QStringList({"&Remove", "Remove &and Delete File"}));
}

TEST(Mnemonics, SkipLettersThatAreAlreadyTaken) {
    EXPECT_EQ(withMnemonics({"Cancel", "Start "}, "fcs"), QStringList({"C&ancel", "S&tart "}));
}

TEST(Mnemonics, ACaptionWithoutAnUnusedLetterGetsNoMnemonic) {
    EXPECT_EQ(withMnemonics({"A", "a", "", "..."}), QStringList({"&A", "a", "", "..."}));
}

TEST(Mnemonics, AnAmpersandInACaptionIsDoubled) {
    EXPECT_EQ(withMnemonics({"Rock & Roll"}), QStringList({"&Rock && Roll"}));
}

TEST(Mnemonics, TheMnemonicOfACaptionIsTheMarkedLetter) {
    EXPECT_EQ(mnemonicOf("S&tart"), "t");
    EXPECT_EQ(mnemonicOf("&Start"), "s");
    EXPECT_EQ(mnemonicOf("A && &B"), "b");
    EXPECT_EQ(mnemonicOf("A && B"), "");
    EXPECT_EQ(mnemonicOf("Start&"), "");
    EXPECT_EQ(mnemonicOf(""), "");
}

} // namespace
} // namespace sonarith
