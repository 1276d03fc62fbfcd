// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/toc_parser.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/disc/sheet_text.h"
#include "platform/linux/disc/toc_mode.h"
#include "platform/linux/disc/toc_tokens.h"
#include "platform/linux/disc/toc_track.h"

namespace sonarith::disc {

namespace {

// 1 EiB: far above the size of any image file, and small enough that sums of offsets do not
// overflow.
constexpr std::int64_t maxFileOffset = std::int64_t{1} << 60;

/// A length in frames. A length that the sheet states in bytes is rounded up to whole sectors.
struct Length {
    std::int64_t frames = 0;
    int lastSectorLacks = 0; ///< the number of bytes that the rounding has added
};

bool startsNumber(const TocToken& token) {
    return token.kind == TocTokenKind::word && token.text.front() >= '0' &&
           token.text.front() <= '9';
}

bool isMsf(const TocToken& token) {
    return startsNumber(token) && token.text.find(':') != std::string_view::npos;
}

class TocParser {
  public:
    TocParser(std::string_view sheet, const std::vector<TocToken>& tokens)
        : sheet_(sheet), next_(tokens.data()) {}

    Result<ImageLayout> parse();

  private:
    Status readStatement(const TocToken& word);
    Status readTrack();
    Status readTrackStatement(const TocToken& word);
    Status readSoundFile();
    Status readDataFile();
    Status readSilence();
    Status readStart();
    Status readPregap();
    Status readIndex();
    Status readFlag(const TocToken& word);
    Status skipBlock();
    Status closeTrack();
    Result<Length> readLength();
    Result<Length> readLengthOrToFileEnd();
    Result<std::int64_t> readFileOffset();
    Status addFile(const TocToken& name, ImageFormat format, Segment segment);

    /// Returns the next token and advances, but never past the terminating token.
    const TocToken& take() {
        line_ = next_->line;
        return next_->kind == TocTokenKind::end ? *next_ : *next_++;
    }
    /// Consumes the next token if it is `word`, and returns whether it was.
    bool takeIf(std::string_view word) {
        const bool same = next_->kind == TocTokenKind::word && sameWord(next_->text, word);
        if (same) {
            take();
        }
        return same;
    }
    [[nodiscard]] Error fail(std::string_view cause) const {
        return sheetError(sheet_, line_, cause);
    }
    [[nodiscard]] Status outcome(const TocTrackCheck& check) const {
        return check ? sheetError(sheet_, check->line, check->cause) : Status();
    }

    std::string sheet_;
    const TocToken* next_;
    int line_ = 1;
    std::vector<LayoutFile> files_;
    std::vector<SheetTrack> closed_;
    std::optional<TocTrack> track_; ///< the track to which the next statements apply
};

Result<ImageLayout> TocParser::parse() {
    while (next_->kind != TocTokenKind::end) {
        const TocToken& token = take();
        if (token.kind != TocTokenKind::word) {
            return fail(shown(token.text) + " is given where a keyword is expected");
        }
        if (const Status status = readStatement(token); !status.ok()) {
            return status.error();
        }
    }
    if (!track_) {
        return fail("the TOC has no TRACK");
    }
    if (const Status status = closeTrack(); !status.ok()) {
        return status.error();
    }
    ImageLayout layout{std::move(files_), joinPauses(std::move(closed_))};
    for (const LayoutTrack& entry : layout.tracks) {
        if (statedFrames(entry.segments) == 0) {
            return sheetError(sheet_, entry.line, "the track has no length");
        }
    }
    return layout;
}

Status TocParser::readStatement(const TocToken& word) {
    if (sameWord(word.text, "TRACK")) {
        return readTrack();
    }
    if (sameWord(word.text, "CD_TEXT")) {
        return skipBlock();
    }
    if (track_) {
        return readTrackStatement(word);
    }
    for (const std::string_view type : {"CD_DA", "CD_ROM", "CD_ROM_XA", "CD_I"}) {
        if (sameWord(word.text, type)) {
            return {};
        }
    }
    if (sameWord(word.text, "CATALOG")) {
        return readFlag(word);
    }
    return fail("the word " + shown(word.text) +
                " is not a keyword that may precede the first TRACK of a TOC");
}

Status TocParser::readTrack() {
    if (const Status status = closeTrack(); !status.ok()) {
        return status;
    }
    if (closed_.size() == static_cast<std::size_t>(maxTracks)) {
        return fail("this is track 100; a disc has at most 99");
    }
    const int line = line_;
    const TocToken& name = take();
    const TocMode* mode = name.kind == TocTokenKind::word ? tocModeNamed(name.text) : nullptr;
    if (mode == nullptr) {
        return fail("the track's mode " + shown(name.text) + " is not supported");
    }
    if (takeIf("RW") || takeIf("RW_RAW")) {
        return fail("files with subchannel data cannot be read");
    }
    track_.emplace(mode->kind, mode->sectorBytes, line);
    return {};
}

Status TocParser::readTrackStatement(const TocToken& word) {
    using Reader = Status (TocParser::*)();
    static constexpr std::pair<std::string_view, Reader> readers[] = {
        {"FILE", &TocParser::readSoundFile},    {"AUDIOFILE", &TocParser::readSoundFile},
        {"DATAFILE", &TocParser::readDataFile}, {"SILENCE", &TocParser::readSilence},
        {"ZERO", &TocParser::readSilence},      {"START", &TocParser::readStart},
        {"PREGAP", &TocParser::readPregap},     {"INDEX", &TocParser::readIndex}};
    for (const auto& [name, reader] : readers) {
        if (sameWord(word.text, name)) {
            return (this->*reader)();
        }
    }
    return readFlag(word);
}

/// Skips a statement that describes the disc or a track and does not change the samples. Other
/// words are errors.
Status TocParser::readFlag(const TocToken& word) {
    for (const std::string_view code : {"ISRC", "CATALOG"}) {
        if (sameWord(word.text, code)) {
            return take().kind == TocTokenKind::string
                       ? Status()
                       : Status(fail(std::string(code) + " needs a text in quotation marks"));
        }
    }
    const bool negated = sameWord(word.text, "NO");
    const TocToken& flag = negated ? take() : word;
    for (const std::string_view known : {"COPY", "PRE_EMPHASIS"}) {
        if (sameWord(flag.text, known)) {
            return {};
        }
    }
    for (const std::string_view known : {"TWO_CHANNEL_AUDIO", "FOUR_CHANNEL_AUDIO"}) {
        if (!negated && sameWord(flag.text, known)) {
            return {};
        }
    }
    return fail(negated ? "the word " + shown(flag.text) + " must not follow NO"
                        : "the word " + shown(flag.text) + " is not a keyword of TOC files");
}

Status TocParser::skipBlock() {
    const int line = line_;
    if (take().kind != TocTokenKind::openBrace) {
        return fail("a block in braces is expected here");
    }
    for (int depth = 1; depth > 0;) {
        const TocToken& token = take();
        if (token.kind == TocTokenKind::end) {
            return sheetError(sheet_, line, "the block that begins here has no closing brace");
        }
        depth += token.kind == TocTokenKind::openBrace    ? 1
                 : token.kind == TocTokenKind::closeBrace ? -1
                                                          : 0;
    }
    return {};
}

/// Reads a length, which is either mm:ss:ff or a plain number. A plain number counts stereo frames
/// in an audio track, and bytes in a data track.
Result<Length> TocParser::readLength() {
    const TocToken& token = take();
    if (!startsNumber(token)) {
        return fail(shown(token.text) + " is given where a length is expected");
    }
    if (isMsf(token)) {
        const auto sectors = parseMsf(token.text);
        return sectors.ok() ? Result<Length>(Length{sectors.value() * framesPerSector})
                            : fail(sectors.error().text);
    }
    const bool sound = track_->kind() == TrackKind::audio;
    const int sectorBytes = track_->sectorBytes();
    const auto count =
        parseNumber(token.text, sound ? maxDiscFrames : maxDiscSectors * sectorBytes);
    if (!count.ok()) {
        return fail(count.error().text);
    }
    if (sound) {
        return Length{count.value()};
    }
    const std::int64_t sectors = (count.value() + sectorBytes - 1) / sectorBytes;
    return Length{sectors * framesPerSector,
                  static_cast<int>(sectors * sectorBytes - count.value())};
}

/// Reads the length of a part of a file. A missing length and a length of 0 both mean the rest of
/// the file.
Result<Length> TocParser::readLengthOrToFileEnd() {
    const auto length = startsNumber(*next_) ? readLength() : Length{toFileEnd};
    return length.ok() && length.value().frames == 0 ? Length{toFileEnd} : length;
}

/// Reads the optional "#" with the number of bytes to skip at the beginning of a file; returns 0 if
/// there is none.
Result<std::int64_t> TocParser::readFileOffset() {
    if (next_->kind != TocTokenKind::word || !next_->text.starts_with('#')) {
        return 0;
    }
    const auto bytes = parseNumber(take().text.substr(1), maxFileOffset);
    return bytes.ok() ? bytes : fail(bytes.error().text);
}

Status TocParser::addFile(const TocToken& name, ImageFormat format, Segment segment) {
    const auto index = fileIndex(files_, {unescaped(name.text), format, name.line});
    if (!index.ok()) {
        return sheetError(sheet_, name.line, index.error().text);
    }
    segment.file = index.value();
    track_->add(segment);
    return {};
}

Status TocParser::readSoundFile() {
    if (track_->kind() != TrackKind::audio) {
        return fail("an audio file cannot be in a data track");
    }
    const TocToken& name = take();
    if (name.kind != TocTokenKind::string) {
        return fail("the file needs a name in quotation marks");
    }
    const bool swapped = takeIf("SWAP");
    const auto offset = readFileOffset();
    if (!offset.ok()) {
        return offset.error();
    }
    const auto start = readLength();
    if (!start.ok()) {
        return start.error();
    }
    const auto length = readLengthOrToFileEnd();
    if (!length.ok()) {
        return length.error();
    }
    // The last four bytes of the name determine the format; the name may be shorter than that.
    const auto ending =
        name.text.substr(name.text.size() - std::min<std::size_t>(name.text.size(), 4));
    const bool wave = sameWord(ending, ".wav");
    if (wave && (swapped || offset.value() > 0)) {
        return fail(
            "SWAP and #OFFSET are not allowed for a WAVE file, which defines its own byte order "
            "and the beginning of its sound");
    }
    const ImageFormat format = wave      ? ImageFormat::wave
                               : swapped ? ImageFormat::littleEndian
                                         : ImageFormat::bigEndian;
    return addFile(name, format,
                   {.kind = SegmentKind::sound,
                    .offset = offset.value() + start.value().frames * bytesPerFrame,
                    .frames = length.value().frames,
                    .roundedTo = 1});
}

Status TocParser::readDataFile() {
    if (track_->kind() != TrackKind::data) {
        return fail("a data file cannot be in an audio track");
    }
    const TocToken& name = take();
    if (name.kind != TocTokenKind::string) {
        return fail("the file needs a name in quotation marks");
    }
    const auto offset = readFileOffset();
    if (!offset.ok()) {
        return offset.error();
    }
    const auto length = readLengthOrToFileEnd();
    if (!length.ok()) {
        return length.error();
    }
    // The byte order is irrelevant for data, which is not played.
    return addFile(name, ImageFormat::bigEndian,
                   {.kind = SegmentKind::data,
                    .offset = offset.value(),
                    .frames = length.value().frames,
                    .lastSectorLacks = length.value().lastSectorLacks});
}

Status TocParser::readSilence() {
    // A ZERO statement may name the mode of its sectors. The mode has no effect: the sectors are
    // silent in every mode.
    if (next_->kind == TocTokenKind::word && tocModeNamed(next_->text) != nullptr) {
        take();
        if (!takeIf("RW")) {
            takeIf("RW_RAW");
        }
    }
    const auto length = readLength();
    if (!length.ok()) {
        return length.error();
    }
    track_->add({.frames = length.value().frames});
    return {};
}

Status TocParser::readStart() {
    const int line = line_;
    if (!isMsf(*next_)) {
        return outcome(track_->startHere(line));
    }
    const auto sectors = parseMsf(take().text);
    return sectors.ok() ? outcome(track_->startAt(sectors.value(), line))
                        : fail(sectors.error().text);
}

Status TocParser::readPregap() {
    const auto sectors = parseMsf(take().text);
    return sectors.ok() ? outcome(track_->pregap(sectors.value(), line_))
                        : fail(sectors.error().text);
}

Status TocParser::readIndex() {
    const auto sectors = parseMsf(take().text);
    return sectors.ok() ? outcome(track_->index(sectors.value(), line_))
                        : fail(sectors.error().text);
}

Status TocParser::closeTrack() {
    if (!track_) {
        return {};
    }
    if (const Status status = outcome(track_->close()); !status.ok()) {
        return status;
    }
    closed_.push_back(track_->content());
    return {};
}

} // namespace

Result<ImageLayout> parseToc(std::string_view sheet, std::string_view text) {
    const auto tokens = tocTokens(sheet, text);
    if (!tokens.ok()) {
        return tokens.error();
    }
    return TocParser(sheet, tokens.value()).parse();
}

} // namespace sonarith::disc
