// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/system_error.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace sonarith {
namespace {

TEST(FileErrorOfSystem, KnowsTheFailuresThatTheLogicTellsApart) {
    EXPECT_EQ(fileErrorOfSystem(ENOENT).number, ErrorNumber::fileNotFound);
    EXPECT_EQ(fileErrorOfSystem(ENOTDIR).number, ErrorNumber::pathNotFound);
    EXPECT_EQ(fileErrorOfSystem(EACCES).number, ErrorNumber::permissionDenied);
    EXPECT_EQ(fileErrorOfSystem(EEXIST).number, ErrorNumber::fileAlreadyExists);
    EXPECT_EQ(fileErrorOfSystem(ENOSPC).number, ErrorNumber::diskFull);
    EXPECT_EQ(fileErrorOfSystem(ENAMETOOLONG).number, ErrorNumber::badFileName);
}

TEST(FileErrorOfSystem, TakesEverythingElseForAnAccessError) {
    EXPECT_EQ(fileErrorOfSystem(EROFS).number, ErrorNumber::pathFileAccess);
    EXPECT_EQ(fileErrorOfSystem(EXDEV).number, ErrorNumber::pathFileAccess);
}

TEST(FileError, CarriesTheClassicText) {
    EXPECT_EQ(fileError(ErrorNumber::fileNotFound).text, "File not found");
    EXPECT_EQ(fileError(ErrorNumber::pathFileAccess).text, "Path/File access error");
}

} // namespace
} // namespace sonarith
