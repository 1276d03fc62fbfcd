// SPDX-License-Identifier: GPL-3.0-or-later
// Lets only one decoding at a time write to the same WAV file. The next decoding to this file
// begins when the previous one has ended, however long the disk takes. This class knows only the
// decodings of this process, and opens no file.
#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <tuple>

#include <sys/types.h>

#include "platform/linux/files/save_place.h"

namespace sonarith::mp3 {

/// The right to write to one place, from `take` until the destructor. Thread-safe.
class TargetTurn {
  public:
    /// Waits until no other object has the turn for `place`. Returns nothing if `stop` is true. A
    /// thread that sets `stop` during the wait must call wakeWaiting() afterwards.
    [[nodiscard]] static std::optional<TargetTurn> take(const files::SavePlace& place,
                                                        const std::atomic<bool>& stop);
    /// Makes every waiting `take` check its `stop` again.
    static void wakeWaiting();

    ~TargetTurn();
    TargetTurn(TargetTurn&& other) noexcept;
    TargetTurn& operator=(TargetTurn&&) = delete;

  private:
    /// The folder's device and inode, which are the same for all paths to the folder, and the
    /// file's name.
    using Place = std::tuple<dev_t, ino_t, std::string>;
    struct Table;
    static Table& table();
    explicit TargetTurn(Place place) : place_(std::move(place)) {}

    std::optional<Place> place_; ///< empty after a move
};

} // namespace sonarith::mp3
