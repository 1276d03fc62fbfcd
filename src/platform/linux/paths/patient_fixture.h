// SPDX-License-Identifier: GPL-3.0-or-later
// Accesses the machine's files as the program does: on another thread and with limited waits. For
// tests only.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/linux/paths/patient_directories.h"
#include "platform/linux/paths/patient_file_system.h"
#include "support/fake_notices.h"
#include "support/fake_settings_store.h"

namespace sonarith::test {

/// How a test accesses the machine's files. A test with this parameter runs once in each way.
enum class Reach { directly, patiently };

inline std::string nameOf(Reach reach) {
    return reach == Reach::directly ? "directly" : "patiently";
}

class PatientMachine {
  public:
    PatientMachine(SettingsStore& store, const std::string& mountList,
                   const std::string& programFolder, const std::string& home = "")
        : shared_{std::make_shared<LetterStore>(store), std::make_shared<Spellings>(), home,
                  programFolder, mountList},
          paths_({[shared = shared_] { return std::make_shared<LinuxMachineFiles>(shared); },
                  [this, &store] { shared_.letters->writeTo(store); }, placesOfThisMachine()},
                 {threads_, waiting_, notices}) {}

    FakeNotices notices;

  private:
    SharedPaths shared_;
    waiting::WorkerThreads threads_;
    PlainWaiting waiting_;
    PatientPaths paths_;

  public:
    PatientFileSystem files{paths_};
    PatientDirectories directories{paths_, files};
};

} // namespace sonarith::test
