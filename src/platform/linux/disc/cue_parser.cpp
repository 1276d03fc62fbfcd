// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/cue_parser.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/linux/disc/cue_words.h"
#include "platform/linux/disc/sheet_text.h"

namespace sonarith::disc {

namespace {

/// Removes the file's name from the beginning of `rest` and returns the name. A name without
/// quotation marks may contain blanks: only the last word is the type. Errors state the cause
/// without sheet and line.
Result<std::string_view> takeFileName(std::string_view& rest) {
    if (rest.starts_with('"')) {
        const auto mark = rest.find('"', 1);
        if (mark == std::string_view::npos) {
            return {ErrorNumber::deviceInputOutput,
                    "the file's name has no closing quotation mark"};
        }
        const auto name = rest.substr(1, mark - 1);
        rest.remove_prefix(mark + 1);
        return name;
    }
    rest = rest.substr(0, rest.find_last_not_of(" \t") + 1);
    const auto gap = rest.find_last_of(" \t");
    if (gap == std::string_view::npos) {
        return {ErrorNumber::deviceInputOutput, "FILE needs a name and a type"};
    }
    const auto name = rest.substr(0, rest.find_last_not_of(" \t", gap) + 1);
    rest.remove_prefix(gap);
    return name;
}

class CueParser {
  public:
    explicit CueParser(std::string_view sheet) : sheet_(sheet) {}

    Result<ImageLayout> parse(std::string_view text);

  private:
    struct Track {
        int sectorBytes = bytesPerSector;
        int lastIndex = -1; ///< -1: no INDEX yet
        std::optional<std::int64_t> pregapSectors;
        std::optional<std::int64_t> postgapSectors;
        SheetTrack content;
    };
    /// The position of the last INDEX in a file, in sectors and in bytes. Both are stored, because
    /// tracks of one file can have sectors of different sizes.
    struct FilePosition {
        std::int64_t sector = 0;
        std::int64_t byte = 0;
        int sectorBytes = 0; ///< of the track of the last INDEX; 0: no INDEX yet
    };
    /// The last INDEX that begins a segment. The segment's end is not known yet.
    struct OpenPoint {
        std::size_t file;
        std::int64_t sector;
        std::int64_t byte;
        std::size_t track;
        int index;
    };

    Status readLine(std::string_view line);
    Status readRemark(std::string_view rest);
    Status readFile(std::string_view rest);
    Status readTrack(std::string_view rest);
    Status readIndex(std::string_view rest);
    Result<std::int64_t> readTime(std::string_view rest) const;
    Status readGap(std::string_view name, std::string_view rest);
    Status checkIndexNumber(int number) const;
    Status closeFile() const;
    Status closeTrack() const;
    void closePoint(std::size_t nextFile, std::int64_t nextSector);
    Result<ImageLayout> finish();

    [[nodiscard]] Error fail(std::string_view cause) const {
        return sheetError(sheet_, line_, cause);
    }
    [[nodiscard]] std::string trackName() const {
        const auto number = std::to_string(tracks_.size());
        return (number.size() < 2 ? "TRACK 0" : "TRACK ") + number;
    }

    std::string sheet_;
    int line_ = 0;
    std::int64_t session_ = 1;
    bool sessionOpens_ = false;
    std::vector<LayoutFile> files_;
    std::vector<FilePosition> positions_; ///< one per entry of files_
    std::optional<std::size_t> file_;     ///< the file to which the next INDEX refers
    int fileLine_ = 0;                    ///< the line of the sheet that names file_
    bool fileUsed_ = false;
    std::vector<Track> tracks_;
    std::optional<OpenPoint> open_;
};

Result<ImageLayout> CueParser::parse(std::string_view text) {
    const auto lines = linesOf(sheet_, text);
    if (!lines.ok()) {
        return lines.error();
    }
    for (const std::string_view line : lines.value()) {
        ++line_;
        if (const Status status = readLine(line); !status.ok()) {
            return status.error();
        }
    }
    return finish();
}

Status CueParser::readLine(std::string_view line) {
    std::string_view rest = line;
    const std::string_view word = takeWord(rest);
    if (word.empty()) {
        return {};
    }
    if (sameWord(word, "REM")) {
        return readRemark(rest);
    }
    if (sameWord(word, "FILE")) {
        return readFile(rest);
    }
    if (sameWord(word, "TRACK")) {
        return readTrack(rest);
    }
    if (sameWord(word, "INDEX")) {
        return readIndex(rest);
    }
    if (sameWord(word, "PREGAP") || sameWord(word, "POSTGAP")) {
        return readGap(word, rest);
    }
    if (isCueDescription(word)) {
        return {};
    }
    return fail("the word " + shown(word) + " is not a keyword of CUE sheets");
}

// Of all comments, only "REM SESSION n" has a meaning. A comment never causes an error.
Status CueParser::readRemark(std::string_view rest) {
    if (sameWord(takeWord(rest), "SESSION")) {
        const auto number = parseNumber(takeWord(rest), maxTracks);
        if (number.ok()) {
            sessionOpens_ = !tracks_.empty() && number.value() != session_;
            session_ = number.value();
        }
    }
    return {};
}

Status CueParser::readFile(std::string_view rest) {
    if (const Status status = closeFile(); !status.ok()) {
        return status;
    }
    const auto name = takeFileName(rest);
    if (!name.ok()) {
        return fail(name.error().text);
    }
    const auto typeName = takeWord(rest);
    const auto format = cueFileFormat(typeName);
    if (!format) {
        return fail("the type of the file is " + shown(typeName) +
                    "; it must be BINARY, MOTOROLA or WAVE");
    }
    if (!rest.empty()) {
        return fail("unexpected text " + shown(rest) + " after the type of the file");
    }
    const auto index = fileIndex(files_, {std::string(name.value()), *format, line_});
    if (!index.ok()) {
        return fail(index.error().text);
    }
    positions_.resize(files_.size());
    file_ = index.value();
    fileLine_ = line_;
    fileUsed_ = false;
    return {};
}

Status CueParser::readTrack(std::string_view rest) {
    if (const Status status = closeTrack(); !status.ok()) {
        return status;
    }
    const auto number = parseNumber(takeWord(rest), maxTracks);
    if (!number.ok()) {
        return fail("a track number is between 01 and 99: " + number.error().text);
    }
    if (!file_) {
        return fail("TRACK precedes the first FILE");
    }
    const auto due = static_cast<std::int64_t>(tracks_.size()) + 1;
    if (number.value() != due) {
        return fail("track " + std::to_string(number.value()) + " is given where track " +
                    std::to_string(due) + " is expected");
    }
    const auto modeName = takeWord(rest);
    const auto mode = cueTrackMode(modeName);
    if (!mode) {
        return fail("the track's mode " + shown(modeName) + " is not supported");
    }
    if (!rest.empty()) {
        return fail("unexpected text " + shown(rest) + " after the track's mode");
    }
    Track track;
    track.sectorBytes = mode->sectorBytes;
    track.content.kind = mode->kind;
    track.content.line = line_;
    track.content.opensSession = std::exchange(sessionOpens_, false);
    tracks_.push_back(std::move(track));
    return {};
}

Status CueParser::checkIndexNumber(int number) const {
    const int last = tracks_.back().lastIndex;
    if (number <= last) {
        return fail("INDEX " + std::to_string(number) + " follows INDEX " + std::to_string(last) +
                    " of the same track");
    }
    if (number > 1 && last < 1) {
        return fail(trackName() + " has no INDEX 01 before INDEX " + std::to_string(number));
    }
    return {};
}

/// Returns the time that `rest` contains, converted to sectors. Other text after the time is an
/// error.
Result<std::int64_t> CueParser::readTime(std::string_view rest) const {
    const auto time = parseMsf(takeWord(rest));
    if (!time.ok()) {
        return fail(time.error().text);
    }
    if (!rest.empty()) {
        return fail("unexpected text " + shown(rest) + " after the time");
    }
    return time;
}

Status CueParser::readIndex(std::string_view rest) {
    if (tracks_.empty()) {
        return fail("INDEX precedes the first TRACK");
    }
    const auto number = parseNumber(takeWord(rest), 99); // IEC 60908: two digits
    if (!number.ok()) {
        return fail("an index number is between 00 and 99: " + number.error().text);
    }
    const int index = static_cast<int>(number.value());
    if (const Status status = checkIndexNumber(index); !status.ok()) {
        return status;
    }
    const auto time = readTime(rest);
    if (!time.ok()) {
        return time.error();
    }
    Track& track = tracks_.back();
    if (track.postgapSectors) {
        return fail("INDEX follows the POSTGAP of its track");
    }
    if (track.content.kind == TrackKind::data && files_[*file_].format == ImageFormat::wave) {
        return fail("a data track cannot be in a WAVE file");
    }
    FilePosition& position = positions_[*file_];
    const std::int64_t sector = time.value();
    if (sector < position.sector) {
        return fail("the times are out of order: " + msfText(sector) + " follows " +
                    msfText(position.sector) + " of the same file");
    }
    const int bytesBefore = position.sectorBytes > 0 ? position.sectorBytes : track.sectorBytes;
    const std::int64_t byte = position.byte + (sector - position.sector) * bytesBefore;
    position = {sector, byte, track.sectorBytes};
    fileUsed_ = true;
    track.lastIndex = index;
    // INDEX 02 and higher begin a new segment only if the track continues in another file.
    if (index <= 1 || open_->file != *file_) {
        closePoint(*file_, sector);
        open_ = OpenPoint{*file_, sector, byte, tracks_.size() - 1, index};
    }
    return {};
}

Status CueParser::readGap(std::string_view name, std::string_view rest) {
    const bool before = sameWord(name, "PREGAP");
    if (tracks_.empty()) {
        return fail(std::string(before ? "PREGAP" : "POSTGAP") + " precedes the first TRACK");
    }
    Track& track = tracks_.back();
    if (before && track.lastIndex >= 0) {
        return fail("PREGAP follows an INDEX of its track");
    }
    if (!before && track.lastIndex < 1) {
        return fail("POSTGAP precedes INDEX 01 of its track");
    }
    auto& gap = before ? track.pregapSectors : track.postgapSectors;
    if (gap) {
        return fail("the track already has this gap");
    }
    const auto time = readTime(rest);
    if (!time.ok()) {
        return time.error();
    }
    gap = time.value();
    return {};
}

Status CueParser::closeFile() const {
    if (file_ && !fileUsed_) {
        return sheetError(sheet_, fileLine_,
                          "no INDEX follows the file " + shown(files_[*file_].name));
    }
    return {};
}

Status CueParser::closeTrack() const {
    if (!tracks_.empty() && tracks_.back().lastIndex < 1) {
        return sheetError(sheet_, tracks_.back().content.line, trackName() + " has no INDEX 01");
    }
    return {};
}

/// Stores the segment that begins at open_. The segment ends at `nextSector` if `nextFile` is its
/// own file, otherwise at the end of its file.
void CueParser::closePoint(std::size_t nextFile, std::int64_t nextSector) {
    if (!open_) {
        return;
    }
    Track& track = tracks_[open_->track];
    Segment segment;
    segment.kind = track.content.kind == TrackKind::audio ? SegmentKind::sound : SegmentKind::data;
    segment.file = open_->file;
    segment.offset = open_->byte;
    segment.frames =
        nextFile == open_->file ? (nextSector - open_->sector) * framesPerSector : toFileEnd;
    segment.sectorBytes = track.sectorBytes;
    if (segment.frames != 0) {
        (open_->index == 0 ? track.content.pause : track.content.body).push_back(segment);
    }
}

Result<ImageLayout> CueParser::finish() {
    if (const Status status = closeTrack(); !status.ok()) {
        return status.error();
    }
    if (const Status status = closeFile(); !status.ok()) {
        return status.error();
    }
    if (tracks_.empty()) {
        return fail("the sheet has no TRACK");
    }
    // files_.size() is the index of no file, so the last segment extends to its file's end.
    closePoint(files_.size(), 0);
    std::vector<SheetTrack> contents;
    for (Track& track : tracks_) {
        const auto silence = [](std::int64_t sectors) {
            return Segment{.frames = sectors * framesPerSector};
        };
        if (track.pregapSectors.value_or(0) > 0) {
            track.content.pause.insert(track.content.pause.begin(), silence(*track.pregapSectors));
        }
        if (track.postgapSectors.value_or(0) > 0) {
            track.content.body.push_back(silence(*track.postgapSectors));
        }
        contents.push_back(std::move(track.content));
    }
    ImageLayout layout{std::move(files_), joinPauses(std::move(contents))};
    for (const LayoutTrack& track : layout.tracks) {
        if (statedFrames(track.segments) == 0) {
            return sheetError(sheet_, track.line,
                              "the track has no length: the next track begins "
                              "at the same time");
        }
    }
    return layout;
}

} // namespace

Result<ImageLayout> parseCue(std::string_view sheet, std::string_view text) {
    return CueParser(sheet).parse(text);
}

} // namespace sonarith::disc
