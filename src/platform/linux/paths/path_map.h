// SPDX-License-Identifier: GPL-3.0-or-later
// Translates between the logic's paths ("C:\Music\track1.wav") and the machine's ("/Music/..."),
// and finds names without regard to case. It opens and changes no file.
//
// The logic keeps its paths in lower case, so that a path may fit several names on the disk, and a
// folder that may be entered but not listed hides them all. So spellings that passed through here
// are remembered for the run. What a name means, best first:
//   - a name in lower case, which may have been lowered: the spelling that was chosen (a folder
//   made
//     or entered, a file picked in a dialog; of several the last one), the very name, the spelling
//     that a walk listed, whatever the folder lists in another case (of several the first in byte
//     order);
//   - a name with capitals, which nobody lowered, and any name that is given to make or to enter a
//     folder: the very name first, then the same.
// A remembered spelling that exists no more means nothing. A whole path is sought before its parts:
// a file picked from "my music" stays that file while the destination is "My Music".
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

/// Where a path of the logic leads on the machine.
struct Located {
    /// The whole machine path: as it stands on disk as far as it exists, then as it was given.
    std::string path;
    /// The folder part of `path`, and the last name in the case in which it was given. For the root
    /// of a drive the name is empty.
    std::string folder;
    std::string givenName;
    /// Something of that name exists.
    bool found = false;
};

/// The spellings of a run.
struct Spellings {
    SpellingMemory chosen;
    SpellingMemory walked;
};

/// Whether the logic may have put a path in lower case.
enum class PathCase {
    maybeLowered,
    asGiven ///< by the user or the store: the path of a folder to make or to enter
};

class PathMap {
  public:
    /// `drives` and `mounts` must outlive this. `spellings` may be shared with other maps.
    PathMap(DriveTable& drives, MountInfo& mounts,
            std::shared_ptr<Spellings> spellings = std::make_shared<Spellings>())
        : drives_(drives), mounts_(mounts), spellings_(std::move(spellings)) {}

    /// `logicPath` begins with a drive letter and a colon. Names are found as described above. "."
    /// and
    /// ".." are worked out by text; a slash parts names as a backslash does. Errors: badFileName
    /// (no drive, a colon, star, question mark or NUL in a name), pathNotFound (a letter without a
    /// disk).
    [[nodiscard]] Result<Located> locate(std::string_view logicPath,
                                         PathCase pathCase = PathCase::maybeLowered);
    /// The name of the logic, of any case, in a folder of the machine. Errors: badFileName.
    [[nodiscard]] Result<Located> locateIn(const std::string& folder, const std::string& name);

    /// The logic's form of an absolute machine path; "." and ".." are worked out by text. The root
    /// of a drive is "D:\".
    [[nodiscard]] std::string logicPathOf(std::string_view machinePath);
    /// The same for a path that was chosen: it and the folders above it are remembered; these only
    /// where no other spelling was chosen that still exists.
    [[nodiscard]] std::string toLogic(std::string_view machinePath);
    /// Remembers a plain machine path alone as chosen.
    void rememberChosen(const std::string& machinePath) {
        spellings_->chosen.remember(machinePath);
    }
    /// Remembers the spelling of a folder that was listed.
    void rememberWalked(const std::string& machinePath) {
        spellings_->walked.remember(machinePath);
    }
    /// The machine path that was chosen for the whole of the logic's path, if it still exists.
    [[nodiscard]] std::optional<std::string> chosenFor(std::string_view logicPath);

    /// Whether chosenFor() can find anything for a path that leads to this one in some case.
    [[nodiscard]] bool hasChosen(const std::string& machinePath) {
        return spellings_->chosen.find(machinePath).has_value();
    }

    /// The drives as they are mounted now.
    [[nodiscard]] const DriveTable& drives();

  private:
    /// A path of the logic as machine names below a drive's mount point.
    struct Asked {
        std::string mountPoint;
        std::vector<std::string> names; ///< of the logic
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
