// SPDX-License-Identifier: GPL-3.0-or-later
// The program's pictures, drawn on demand: sharp at every scale, and in the colours of the
// desktop's palette, light or dark. No picture files.
#pragma once

#include <QIcon>

namespace sonarith {

enum class Symbol {
    exit,
    help,
    playlist,
    preferences,
    search,
    play,
    stop,
    pause,
    nextTrack,
    previousTrack,
    eject,
    disc,
    folder,
    hand,
    collection,
    collectionOpen,
    group,
    groupOpen,
    item,
    itemOpen,
    program,
    more, ///< more entries to the right
};
/// For iterating over all of them.
inline constexpr Symbol lastSymbol = Symbol::more;

[[nodiscard]] QIcon makeIcon(Symbol symbol);

/// Pictures 1 to 12 of the work tree: 1 to 3 collection, group and item, 4 to 6 the same when
/// selected, 7 to 12 without a defined meaning. An empty icon for other numbers.
[[nodiscard]] QIcon treeImage(int number);

} // namespace sonarith
