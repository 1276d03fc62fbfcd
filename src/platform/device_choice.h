// SPDX-License-Identifier: GPL-3.0-or-later
// Lists the drives, sound outputs and recording sources of the machine, and reads and sets the
// user's choice. The window for this choice uses this interface, on the logic thread only.
#pragma once

#include <string>
#include <vector>

namespace sonarith {

/// A device that can be chosen. `name` is stored. `description` is shown; if it is empty, `name` is
/// shown.
struct DeviceEntry {
    std::string name;
    std::string description;
    bool operator==(const DeviceEntry&) const = default;
};

class DeviceChoice {
  public:
    virtual ~DeviceChoice() = default;
    /// Device nodes of the optical drives found.
    [[nodiscard]] virtual std::vector<std::string> opticalDrives() const = 0;
    [[nodiscard]] virtual std::vector<DeviceEntry> outputs() const = 0;
    [[nodiscard]] virtual std::vector<DeviceEntry> sources() const = 0;

    /// The stored choices. An empty drive means the first optical drive found; otherwise it is a
    /// device node or the machine path of a disc image.
    [[nodiscard]] virtual std::string drive() const = 0;
    [[nodiscard]] virtual std::string output() const = 0;
    [[nodiscard]] virtual std::string source() const = 0;
    /// Each setter stores the choice. A new output or source is used at once. A new drive is used
    /// when the CD device is next opened or polled.
    virtual void setDrive(const std::string& drive) = 0;
    virtual void setOutput(const std::string& name) = 0;
    virtual void setSource(const std::string& name) = 0;

    /// Description of the problem with the drive or its disc; empty if there is no problem.
    [[nodiscard]] virtual std::string report() const = 0;
};

} // namespace sonarith
