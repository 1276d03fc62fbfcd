// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/image_disc.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/disc/cue_parser.h"
#include "platform/linux/disc/image_path.h"
#include "platform/linux/disc/sheet_text.h"
#include "platform/linux/disc/toc_parser.h"

namespace sonarith::disc {

namespace fs = std::filesystem;

namespace {

enum class SheetKind { cue, toc };

/// Detects the kind of a sheet by the first line that occurs in one kind only. In a TOC: a header,
/// a comment ("//"), or a TRACK with a mode. In a CUE: a REM, a TRACK with a number, or a FILE
/// before any TRACK.
std::optional<SheetKind> kindOfText(const std::vector<std::string_view>& lines) {
    for (const std::string_view line : lines) {
        std::string_view rest = line;
        const auto word = takeWord(rest);
        for (const std::string_view header : {"CD_DA", "CD_ROM", "CD_ROM_XA", "CD_I", "CD_TEXT"}) {
            if (sameWord(word, header)) {
                return SheetKind::toc;
            }
        }
        if (word.starts_with("//")) {
            return SheetKind::toc;
        }
        if (sameWord(word, "TRACK")) {
            return !rest.empty() && rest.front() >= '0' && rest.front() <= '9' ? SheetKind::cue
                                                                               : SheetKind::toc;
        }
        if (sameWord(word, "FILE") || sameWord(word, "REM")) {
            return SheetKind::cue;
        }
    }
    return std::nullopt;
}

Result<SheetKind> kindOf(const fs::path& path, std::string_view sheet, std::string_view text) {
    const std::string ending = path.extension().string();
    if (sameWord(ending, ".cue")) {
        return SheetKind::cue;
    }
    if (sameWord(ending, ".toc")) {
        return SheetKind::toc;
    }
    const auto lines = linesOf(sheet, text);
    if (!lines.ok()) {
        return lines.error();
    }
    const auto kind = kindOfText(lines.value());
    return kind ? Result<SheetKind>(*kind)
                : sheetError(sheet, 0,
                             "is neither a CUE sheet nor a TOC; choose the file that lists "
                             "the disc's tracks");
}

/// Reads the sheet, but at most one byte more than a sheet may have, so that linesOf() detects a
/// sheet that is too long. Returns nothing if the sheet cannot be read completely, because the
/// readable part may look like a complete sheet of a shorter disc.
std::optional<std::string> textOf(const FileHandle& file) {
    std::string text(
        std::min<std::size_t>(static_cast<std::size_t>(file.bytes()), maxSheetBytes + 1), '\0');
    const bool whole = file.readAt(0, std::as_writable_bytes(std::span(text))) == text.size();
    return whole ? std::optional(text) : std::nullopt;
}

/// Opens the layout's files. An error's message contains the number of the line in which the sheet
/// names the file.
Result<std::vector<std::unique_ptr<ImageFile>>>
openFiles(const fs::path& folder, std::string_view sheet, const ImageLayout& layout) {
    std::vector<std::unique_ptr<ImageFile>> files;
    for (const LayoutFile& entry : layout.files) {
        const auto cannot = [&](const Error& cause) {
            return sheetError(sheet, entry.line,
                              {cause.number, shown(entry.name) + " cannot be read: " + cause.text});
        };
        const auto path = findImageFile(folder, entry.name);
        if (!path) {
            return cannot(
                {ErrorNumber::fileNotFound, "the file was not found in the sheet's folder"});
        }
        auto file = openImageFile(*path, entry.format);
        if (!file.ok()) {
            return cannot(file.error());
        }
        files.push_back(std::move(file.value()));
    }
    return files;
}

} // namespace

ImageDisc::ImageDisc(FileHandle sheet, std::vector<std::unique_ptr<ImageFile>> files,
                     ImageTimeline line)
    : sheet_(std::move(sheet)), files_(std::move(files)), line_(std::move(line)) {}

Result<std::shared_ptr<ImageDisc>> ImageDisc::open(const fs::path& path) {
    const std::string quoted = shown(path.filename().string());
    const std::string sheet = quoted.substr(1, quoted.size() - 2); // the prefix of error messages
    auto handle = FileHandle::open(path);
    if (!handle.ok()) {
        return sheetError(sheet, 0,
                          {handle.error().number, "cannot be read: " + handle.error().text});
    }
    const std::optional<std::string> text = textOf(handle.value());
    if (!text) {
        return sheetError(sheet, 0, "cannot be read completely");
    }
    const auto kind = kindOf(path, sheet, *text);
    if (!kind.ok()) {
        return kind.error();
    }
    const auto layout =
        kind.value() == SheetKind::cue ? parseCue(sheet, *text) : parseToc(sheet, *text);
    if (!layout.ok()) {
        return layout.error();
    }
    // A plain file name has no folder part: the sheet is in the current folder.
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    auto files = openFiles(folder, sheet, layout.value());
    if (!files.ok()) {
        return files.error();
    }
    std::vector<std::int64_t> lengths;
    for (const auto& file : files.value()) {
        lengths.push_back(file->bytes());
    }
    auto line = layOnLine(sheet, layout.value(), lengths);
    if (!line.ok()) {
        return line.error();
    }
    return std::shared_ptr<ImageDisc>(new ImageDisc(
        std::move(handle.value()), std::move(files.value()), std::move(line.value())));
}

bool ImageDisc::unchanged() const {
    return sheet_.unchanged() &&
           std::ranges::all_of(files_, [](const auto& file) { return file->unchanged(); });
}

ReadOutcome ImageDisc::readSectors(std::int64_t first, std::span<sound::StereoFrame> out,
                                   const std::stop_token& stop) {
    if (ejected_ || !sheet_.stillThere()) {
        return ReadOutcome::gone;
    }
    const std::int64_t begin = first * framesPerSector;
    const std::int64_t end = begin + std::ssize(out);
    std::fill(out.begin(), out.end(), sound::StereoFrame{});
    const auto endOf = [](const SoundStretch& stretch) {
        return stretch.start + stretch.frames;
    };
    auto stretch = std::partition_point(
        line_.sound.begin(), line_.sound.end(),
        [&](const SoundStretch& candidate) { return endOf(candidate) <= begin; });
    for (; stretch != line_.sound.end() && stretch->start < end; ++stretch) {
        if (stop.stop_requested()) {
            return ReadOutcome::interrupted;
        }
        const std::int64_t from = std::max(begin, stretch->start);
        const std::int64_t to = std::min(end, endOf(*stretch));
        const auto part = out.subspan(static_cast<std::size_t>(from - begin),
                                      static_cast<std::size_t>(to - from));
        const std::int64_t skipped = (from - stretch->start) * (bytesPerSector / framesPerSector);
        if (!files_[stretch->file]->read(stretch->offset + skipped, part)) {
            return ReadOutcome::gone;
        }
    }
    return ReadOutcome::ok;
}

} // namespace sonarith::disc
