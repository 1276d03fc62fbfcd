// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/text/store_file_check.h"

#include <gtest/gtest.h>

#include <string>

namespace sonarith {
namespace {

TEST(CheckStoreFile, ReturnsWholeForFilesThatTheProgramWrites) {
    EXPECT_EQ(checkStoreFile(""), StoreFileState::whole);
    EXPECT_EQ(checkStoreFile("[Settings]\nAudio%20format=1\nDecodePath=C:\\\\Music\n\n[music]\n"
                             "1=\"a, b; \\\"c\\\"\"\n2=@ByteArray(\\xff)\nempty=\n"),
              StoreFileState::whole);
}

TEST(CheckStoreFile, AcceptsAFileThatWasEditedInATextEditor) {
    EXPECT_EQ(checkStoreFile("\xef\xbb\xbf; mine\r\n[Settings]\r\n  HDWarning = 0\r\n"),
              StoreFileState::whole);
}

TEST(CheckStoreFile, DetectsAFileThatEndsWithinALine) {
    const std::string whole = "[Settings]\nDecodePath=C:\\\\Mus\n1=\"a b\"\n";
    for (std::size_t cut = 1; cut < whole.size(); ++cut) {
        const std::string part = whole.substr(0, cut);
        EXPECT_EQ(checkStoreFile(part) == StoreFileState::whole, part.back() == '\n') << part;
    }
}

TEST(CheckStoreFile, DetectsAValueWithAnUnclosedQuoteOrWithABackslashAtItsEnd) {
    EXPECT_EQ(checkStoreFile("[Settings]\nkey=\"open\nnext=1\n"), StoreFileState::torn);
    EXPECT_EQ(checkStoreFile("[Settings]\nkey=C:\\\n"), StoreFileState::torn);
}

TEST(CheckStoreFile, TreatsFilesOfOtherFormatsAsForeign) {
    for (const std::string& bytes :
         {std::string("just some text\n"), std::string("[Settings\n"), std::string("=value\n"),
          std::string("# not a comment in this format\n[Settings]\n"),
          std::string("[Settings]\nkey=caf\xe9\n"), std::string("a=\0b\n", 5),
          std::string("\x7f"
                      "ELF\x02\n")}) {
        EXPECT_EQ(checkStoreFile(bytes), StoreFileState::foreign) << bytes;
    }
}

TEST(CheckStoreFile, TreatsAFileBeyondTheSizeLimitAsForeign) {
    const std::string bytes(longestStoreFileBytes + 1, '\n');
    EXPECT_EQ(checkStoreFile(bytes), StoreFileState::foreign);
}

} // namespace
} // namespace sonarith
