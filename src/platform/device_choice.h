// SPDX-License-Identifier: GPL-3.0-or-later
// Which drive, sound output and recording source the machine offers and uses, for the window in
// which the user chooses them. Interface only. Used by the logic's thread alone.
#pragma once

#include <string>
#include <vector>

namespace sonarith {

/// A device that can be chosen: `name` is stored, `description` is shown (the name, if empty).
struct DeviceEntry {
    std::string name;
    std::string description;
    bool operator==(const DeviceEntry&) const = default;
};

class DeviceChoice {
  public:
    virtual ~DeviceChoice() = default;
    /// The device nodes of the optical drives found.
    [[nodiscard]] virtual std::vector<std::string> opticalDrives() const = 0;
    [[nodiscard]] virtual std::vector<DeviceEntry> outputs() const = 0;
    [[nodiscard]] virtual std::vector<DeviceEntry> sources() const = 0;

    /// What is stored. Of the drive: empty for the first one found, else a device node or the path
    /// of a disc image, in the machine's form.
    [[nodiscard]] virtual std::string drive() const = 0;
    [[nodiscard]] virtual std::string output() const = 0;
    [[nodiscard]] virtual std::string source() const = 0;
    /// Each stores the choice, and it holds from then on.
    virtual void setDrive(const std::string& drive) = 0;
    virtual void setOutput(const std::string& name) = 0;
    virtual void setSource(const std::string& name) = 0;

    /// What is wrong with the disc, in words; empty if nothing is.
    [[nodiscard]] virtual std::string report() const = 0;
};

} // namespace sonarith
