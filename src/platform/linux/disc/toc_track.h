// SPDX-License-Identifier: GPL-3.0-or-later
// One track of a cdrdao TOC while its statements come in: its content, where it starts in it, and
// whether its times make sense. It reads no text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/linux/disc/image_layout.h"

namespace sonarith::disc {

/// What goes wrong in a track, with the line of the statement to blame.
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

    /// A segment without length is none.
    void add(Segment segment);
    /// All content so far stands before INDEX 01.
    [[nodiscard]] TocTrackCheck startHere(int line);
    /// That much of the content, some of it still to come, stands before INDEX 01.
    [[nodiscard]] TocTrackCheck startAt(std::int64_t sectors, int line);
    /// Silence stands before INDEX 01, which is the first of the content.
    [[nodiscard]] TocTrackCheck pregap(std::int64_t sectors, int line);
    /// An index parts nothing here, but a wrong one betrays a torn sheet.
    [[nodiscard]] TocTrackCheck index(std::int64_t sectors, int line);

    /// After the last statement: parts the content at its start.
    [[nodiscard]] TocTrackCheck close();
    /// Only after close.
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
