// SPDX-License-Identifier: GPL-3.0-or-later
// Reads a disc that is stored in files: a sheet (a CUE or TOC file, which describes the tracks) and
// the files that the sheet names. ImageDisc never reloads changed files; ImageDrive does.
#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/linux/disc/disc.h"
#include "platform/linux/disc/file_handle.h"
#include "platform/linux/disc/image_file.h"
#include "platform/linux/disc/image_timeline.h"
#include "platform/result.h"

namespace sonarith::disc {

class ImageDisc final : public Disc {
  public:
    /// Reads the sheet at `path` and opens its files. The extension ".cue" or ".toc", in upper or
    /// lower case, determines the kind of sheet; with any other extension, the text of the sheet
    /// does. An error's message contains the file, the cause and, if there is one, the line of the
    /// sheet. The error number is fileNotFound if the sheet or a file that it names is missing, and
    /// permissionDenied if this user may not read one of them.
    [[nodiscard]] static Result<std::shared_ptr<ImageDisc>> open(const std::filesystem::path& path);

    [[nodiscard]] const Table& table() const override { return line_.table; }
    [[nodiscard]] std::string remark() const override { return line_.remark; }
    [[nodiscard]] Damage damageIn(std::int64_t first, std::int64_t end) const override {
        return {.silent = lostSectors(line_, first, end), .guessed = 0};
    }
    /// Whether the sheet and its files are unchanged since they were opened. May be called while
    /// another thread reads.
    [[nodiscard]] bool unchanged() const;
    /// Removes the disc: all later reads return `gone`. May be called while another thread reads.
    void eject() { ejected_ = true; }

  private:
    /// Returns `gone` if eject() was called, if the sheet is no longer at its path, or if
    /// ImageFile::read() fails.
    [[nodiscard]] ReadOutcome readSectors(std::int64_t first, std::span<sound::StereoFrame> out,
                                          const std::stop_token& stop) override;

    ImageDisc(FileHandle sheet, std::vector<std::unique_ptr<ImageFile>> files, ImageTimeline line);

    FileHandle sheet_;
    std::vector<std::unique_ptr<ImageFile>> files_;
    ImageTimeline line_;
    std::atomic<bool> ejected_ = false;
};

} // namespace sonarith::disc
