// SPDX-License-Identifier: GPL-3.0-or-later
// Returns the program's pictures as icons. The pictures are drawn on demand and not read from
// files, so they are sharp at every scale. They have the text colour of the desktop's palette and
// some fixed colours. The fixed colours are visible on light and on dark backgrounds.
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
    more, ///< an arrow: the menu bar has more menus than fit into the window
};
/// The last enumerator, for iterating over all symbols.
inline constexpr Symbol lastSymbol = Symbol::more;

[[nodiscard]] QIcon makeIcon(Symbol symbol);

/// Returns picture `number` (1 to 12) of the work tree. Pictures 1 to 3 show a collection, a group
/// and an item; pictures 4 to 6 show them when selected. Pictures 7 to 12 have no defined meaning.
/// Returns an empty icon for any other number.
[[nodiscard]] QIcon treeImage(int number);

} // namespace sonarith
