// SPDX-License-Identifier: GPL-3.0-or-later
// Defines CdSession, an MciSession in which the disc device is already open, and tables of contents
// for the disc of such a session.
#pragma once

#include <gtest/gtest.h>

#include "support/mci_session.h"

namespace sonarith::fakes {

/// Three tracks. Their lengths in minutes and seconds: 3:05, 1:00 plus 10 sectors, and 0:10.
inline disc::Table threeTracks() {
    return audioTable({185 * 75, 60 * 75 + 10, 10 * 75});
}

/// An enhanced disc: two audio tracks of 10 s, then data of 5 s.
inline disc::Table enhancedDisc() {
    disc::Table table = audioTable({750, 750});
    table.tracks.push_back({disc::TrackKind::data, 375});
    return table;
}

/// A session in which the disc device is open under the alias "cd".
class CdSession : public MciSession {
  public:
    explicit CdSession(const disc::Table& table = {}) : MciSession(table) {
        EXPECT_EQ(send("open cdaudio alias cd"), fine());
    }
    [[nodiscard]] disc::PlayerMode playerMode() const { return machine.transport->mode(); }
};

} // namespace sonarith::fakes
