// SPDX-License-Identifier: GPL-3.0-or-later
// Collects the content and the start of one track of a cdrdao TOC while the track's statements are
// read, and checks the times in these statements. It parses no text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/linux/disc/image_layout.h"

namespace sonarith::disc {

/// An error in a track, with the line of the statement that caused it.
struct TocTrackProblem {
    int line = 0;
    std::string cause;
};
using TocTrackCheck = std::optional<TocTrackProblem>;

class TocTrack {
  public:
    TocTrack(TrackKind kind, int sectorBytes, int line);

    [[nodiscard]] TrackKind kind() const { return content_.kind; }
    [[nodiscard]] int sectorBytes() const { return sectorBytes_; }

    /// A segment of length 0 is ignored.
    void add(Segment segment);
    /// START without a time: all content added so far precedes INDEX 01.
    [[nodiscard]] TocTrackCheck startHere(int line);
    /// START with a time: the first `sectors` sectors of the content precede INDEX 01. A part of
    /// these sectors may be added after this call.
    [[nodiscard]] TocTrackCheck startAt(std::int64_t sectors, int line);
    /// PREGAP: `sectors` sectors of silence precede INDEX 01, and all content follows INDEX 01.
    [[nodiscard]] TocTrackCheck pregap(std::int64_t sectors, int line);
    /// INDEX: does not split the content. Its time is checked, because a wrong time reveals a
    /// truncated TOC.
    [[nodiscard]] TocTrackCheck index(std::int64_t sectors, int line);

    /// Called after the last statement: if START had a time, splits the content at this time.
    /// Checks that content follows INDEX 01. If the statements give the track's length, also checks
    /// that no time is beyond the track's end.
    [[nodiscard]] TocTrackCheck close();
    /// Valid only after close().
    [[nodiscard]] const SheetTrack& content() const { return content_; }

  private:
    [[nodiscard]] TocTrackCheck beginStart(int line);
    [[nodiscard]] bool splitBody(std::int64_t frames);

    int sectorBytes_;
    SheetTrack content_;
    bool started_ = false; ///< START or PREGAP has been read
    int startLine_ = 0;
    std::optional<std::int64_t> startSectors_;
    std::int64_t lastIndexSectors_ = 0;
    int lastIndexLine_ = 0;
};

} // namespace sonarith::disc
