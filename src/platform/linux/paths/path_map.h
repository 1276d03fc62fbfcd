// SPDX-License-Identifier: GPL-3.0-or-later
// Translates between the logic's paths ("C:\Music\track1.wav") and the machine's ("/Music/..."),
// and finds names case-insensitively. It opens and changes no file.
//
// The logic converts its paths to lower case, so a path may match several names on the disk. In
// addition, a folder that may be entered but not listed cannot be searched for a match. So PathMap
// remembers the spellings of chosen paths and of listed folders while the program runs. A name in
// lower case, which the logic may have converted, is matched by the first of these spellings that
// exists:
//   1. the chosen spelling: that of a folder created or entered, of a file picked in a dialog, or
//      of the new name in a rename (the most recent of several);
//   2. the exact name;
//   3. the spelling of a folder that a walk has listed;
//   4. any case variant in the folder, the first in byte order.
// A name with capitals, which was not converted, and the name of a folder to create or enter are
// matched by the exact name first, then by 1, 3 and 4.
//
// The chosen spelling of a whole path has priority over the chosen spellings of its parts. Example:
// "my music" and "My Music" are two folders. A file that was picked from "my music" is still found
// after "My Music" was chosen as the destination.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/paths/drive_table.h"
#include "platform/linux/paths/mount_info.h"
#include "platform/linux/paths/spelling_memory.h"
#include "platform/result.h"

namespace sonarith {

/// The machine's location of a path of the logic.
struct Located {
    /// The whole machine path: the existing part in the disk's spelling, the rest as given.
    std::string path;
    /// The folder part of `path`. For the root of a drive it is `path` itself.
    std::string folder;
    /// The last name in the machine's notation, with its case as given. Empty for the root of a
    /// drive.
    std::string givenName;
    /// Whether `path` exists.
    bool found = false;
};

/// The spellings remembered while the program runs.
struct Spellings {
    SpellingMemory chosen;
    SpellingMemory walked;
};

/// Whether the logic may have converted a path to lower case.
enum class PathCase {
    maybeLowered,
    asGiven ///< not converted: a folder to create or enter, from the user or the settings store
};

class PathMap {
  public:
    /// `drives` and `mounts` must outlive this object. `spellings` may be shared with other maps.
    PathMap(DriveTable& drives, MountInfo& mounts,
            std::shared_ptr<Spellings> spellings = std::make_shared<Spellings>())
        : drives_(drives), mounts_(mounts), spellings_(std::move(spellings)) {}

    /// `logicPath` begins with a drive letter and a colon. Names are matched as described above.
    /// "." and ".." are resolved textually; slash and backslash are separators. Errors: badFileName
    /// (no drive, or a colon, star, question mark or NUL in a name), pathNotFound (a letter without
    /// a disk).
    [[nodiscard]] Result<Located> locate(std::string_view logicPath,
                                         PathCase pathCase = PathCase::maybeLowered);
    /// Like locate(), but for one name of the logic in a folder whose machine path is known.
    /// Errors: badFileName.
    [[nodiscard]] Result<Located> locateIn(const std::string& folder, const std::string& name);

    /// Translates an absolute machine path to a path of the logic; "." and ".." are resolved
    /// textually. The root of the drive D becomes "D:\".
    [[nodiscard]] std::string logicPathOf(std::string_view machinePath);
    /// Like logicPathOf(), for a chosen path: also remembers its spelling. The spelling of a parent
    /// folder is remembered only if no spelling of that folder was chosen before, or if the folder
    /// with the chosen spelling no longer exists.
    [[nodiscard]] std::string toLogic(std::string_view machinePath);
    /// Remembers the spelling of a machine path as chosen, but not those of its parent folders. The
    /// path must be plain (see plainMachinePath()).
    void rememberChosen(const std::string& machinePath) {
        spellings_->chosen.remember(machinePath);
    }
    /// Remembers the spelling of a folder that was listed.
    void rememberWalked(const std::string& machinePath) {
        spellings_->walked.remember(machinePath);
    }
    /// The chosen machine path that matches the logic's whole path; empty if there is none, or if
    /// its file or folder no longer exists.
    [[nodiscard]] std::optional<std::string> chosenFor(std::string_view logicPath);

    /// Whether any chosen path equals `machinePath` if case is ignored. If not, chosenFor() is
    /// empty for each path of the logic that means `machinePath`.
    [[nodiscard]] bool hasChosen(const std::string& machinePath) {
        return spellings_->chosen.find(machinePath).has_value();
    }

    /// The drives, updated to the current mounts.
    [[nodiscard]] const DriveTable& drives();

  private:
    /// A path of the logic, split into the drive's mount point and the names below it.
    struct Asked {
        std::string mountPoint;
        std::vector<std::string> names; ///< as in the path of the logic
        /// The path's first `count` names as a machine path.
        [[nodiscard]] std::string machinePath(std::size_t count) const;
    };

    [[nodiscard]] Result<Asked> asked(std::string_view logicPath);
    [[nodiscard]] std::optional<std::string> chosenFor(const Asked& path, std::size_t count);
    [[nodiscard]] std::optional<std::string> spelling(const std::string& folder,
                                                      const std::string& name, PathCase pathCase);
    void descend(Located& located, const std::string& name, PathCase pathCase);

    DriveTable& drives_;
    MountInfo& mounts_;
    const std::shared_ptr<Spellings> spellings_;
};

} // namespace sonarith
