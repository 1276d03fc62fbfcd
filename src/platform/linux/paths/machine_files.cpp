// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/paths/machine_files.h"

#include <utility>

namespace sonarith {

LinuxMachineFiles::LinuxMachineFiles(SharedPaths shared)
    : shared_(std::move(shared)),
      mounts_(shared_.mountList),
      drives_(*shared_.letters, shared_.home),
      paths_(drives_, mounts_, shared_.spellings),
      files_(paths_, shared_.programFolder),
      directories_(paths_, files_) {}

} // namespace sonarith
