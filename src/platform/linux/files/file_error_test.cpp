// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/files/file_error.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace sonarith::files {
namespace {

using testing::HasSubstr;

TEST(SystemError, DescribesTheCause) {
    EXPECT_EQ(systemError(ENOSPC, "/a/b").text, "\"/a/b\" is on a full disk");
    EXPECT_EQ(systemError(EEXIST, "/a/b").text, "\"/a/b\" already exists");
    EXPECT_EQ(systemError(EROFS, "/a").number, ErrorNumber::permissionDenied);
    EXPECT_EQ(systemError(EIO, "/a").number, ErrorNumber::deviceInputOutput);
    EXPECT_THAT(systemError(EIO, "/a").text, HasSubstr("failed: "));
}

TEST(SystemError, ReportsAMissingFileAsAMissingPath) {
    EXPECT_EQ(systemError(ENOENT, "/a").number, ErrorNumber::pathNotFound);
    EXPECT_EQ(systemError(ENOENT, "/a").text, "\"/a\" does not exist");
}

TEST(FileErrorOfSystem, MapsTheFailuresThatTheLogicDistinguishes) {
    EXPECT_EQ(fileErrorOfSystem(ENOENT).number, ErrorNumber::fileNotFound);
    EXPECT_EQ(fileErrorOfSystem(ENOTDIR).number, ErrorNumber::pathNotFound);
    EXPECT_EQ(fileErrorOfSystem(ELOOP).number, ErrorNumber::pathNotFound);
    EXPECT_EQ(fileErrorOfSystem(EISDIR).number, ErrorNumber::pathFileAccess);
    EXPECT_EQ(fileErrorOfSystem(EACCES).number, ErrorNumber::permissionDenied);
    EXPECT_EQ(fileErrorOfSystem(ETXTBSY).number, ErrorNumber::permissionDenied);
    EXPECT_EQ(fileErrorOfSystem(EEXIST).number, ErrorNumber::fileAlreadyExists);
    EXPECT_EQ(fileErrorOfSystem(ENOSPC).number, ErrorNumber::diskFull);
    EXPECT_EQ(fileErrorOfSystem(EFBIG).number, ErrorNumber::diskFull);
    EXPECT_EQ(fileErrorOfSystem(ENAMETOOLONG).number, ErrorNumber::badFileName);
    EXPECT_EQ(fileErrorOfSystem(EIO).number, ErrorNumber::deviceInputOutput);
    EXPECT_EQ(fileErrorOfSystem(ENXIO).number, ErrorNumber::deviceUnavailable);
}

// By its standard meaning, ErrorNumber::permissionDenied (70) includes a write-protected disk.
TEST(FileErrorOfSystem, TreatsAReadOnlyDiskAsAMissingPermission) {
    EXPECT_EQ(fileErrorOfSystem(EROFS).number, ErrorNumber::permissionDenied);
}

TEST(FileErrorOfSystem, TreatsAnUnlistedErrnoValueAsAnAccessError) {
    EXPECT_EQ(fileErrorOfSystem(EXDEV).number, ErrorNumber::pathFileAccess);
    EXPECT_EQ(systemError(EXDEV, "/a").number, ErrorNumber::pathFileAccess);
}

TEST(FileError, HasTheStandardText) {
    EXPECT_EQ(fileError(ErrorNumber::fileNotFound).text, "File not found");
    EXPECT_EQ(fileError(ErrorNumber::pathFileAccess).text, "Path/File access error");
    EXPECT_EQ(fileErrorOfSystem(EACCES).text, "Permission denied");
}

TEST(ReasonOf, NamesTheCauseWithoutTheFile) {
    EXPECT_EQ(reasonOf(ENOSPC), "no space is left");
    EXPECT_EQ(reasonOf(EDQUOT), "the quota of the disk is used up");
    EXPECT_EQ(reasonOf(EFBIG), "the file would be too large");
    EXPECT_EQ(reasonOf(EIO), "Input/output error");
}

} // namespace
} // namespace sonarith::files
