// SPDX-License-Identifier: GPL-3.0-or-later
// The interface through which the logic uses the sound card's mixer: the logic finds a line by its
// component type and a control of that line by its control type, then reads or writes the control's
// value. Samples do not pass through this interface.
//
// Life cycle: open() stores a handle in its parameter. A handle is never closed, and any number of
// handles may be open. All other members take such a handle. Mixer is used on the logic thread
// only; no member waits for the card.
#pragma once

#include <cstdint>

namespace sonarith {

/// Result of an operation; 0 is success. The numbers, sizes and field names in this file are those
/// of the mixer interface that the class Mixer reproduces.
enum class MixerResult : int {
    noError = 0,
    badDevice = 2,         ///< there is no mixer
    invalidHandle = 5,     ///< the handle was never opened
    notSupported = 8,      ///< unknown kind of query; no member of Mixer returns it
    invalidParameter = 11, ///< the passed struct contains a wrong size or count, or a null pointer
    invalidLine = 1024,    ///< the card has no such line
    invalidControl = 1025, ///< the line has no such control
    invalidValue = 1026,   ///< the value is out of range, or the control is read only
};

/// 0 means none.
using MixerHandle = std::uint32_t;

/// Component types of lines.
namespace mixer_line {
inline constexpr std::uint32_t speakers = 4;         ///< destination: all that is played
inline constexpr std::uint32_t waveIn = 7;           ///< destination: what is recorded
inline constexpr std::uint32_t microphone = 0x1003;  ///< source: the external input
inline constexpr std::uint32_t compactDisc = 0x1005; ///< source: the disc in the drive
inline constexpr std::uint32_t waveOut = 0x1008;     ///< source: files that are played
} // namespace mixer_line

/// Control types.
namespace mixer_control {
inline constexpr std::uint32_t peakMeter = 0x10020001; ///< read only, -32768 to 32768
inline constexpr std::uint32_t mute = 0x20010002;      ///< 0 or 1
inline constexpr std::uint32_t volume = 0x50030001;    ///< 0 to 65535
inline constexpr std::uint32_t bass = 0x50030002;      ///< 0 to 65535, 32768 is neutral
inline constexpr std::uint32_t treble = 0x50030003;    ///< 0 to 65535, 32768 is neutral
} // namespace mixer_control

/// A line. The caller sets the size and the component type.
struct MixerLine {
    std::uint32_t cbStruct = 0; ///< must be mixerLineSize
    std::uint32_t dwLineID = 0;
    std::uint32_t dwComponentType = 0;
};
inline constexpr std::uint32_t mixerLineSize = 168;

/// A control of a line.
struct MixerControl {
    std::uint32_t cbStruct = 0;    ///< mixerControlSize
    std::uint32_t dwControlID = 0; ///< 0: not looked up; no control has this number
    std::uint32_t dwControlType = 0;
    std::uint32_t cMultipleItems = 0;
};
inline constexpr std::uint32_t mixerControlSize = 152;

/// Query for one control of a line, by the control's type.
struct MixerLineControls {
    std::uint32_t cbStruct = 0; ///< must be mixerLineControlsSize
    std::uint32_t dwLineID = 0;
    std::uint32_t dwControlType = 0;
    std::uint32_t cControls = 0; ///< must be 1
    std::uint32_t cbmxctrl = 0;  ///< must be mixerControlSize
    MixerControl* pamxctrl = nullptr;
};
inline constexpr std::uint32_t mixerLineControlsSize = 24;

/// Request to read or write the value of a control.
struct MixerControlDetails {
    std::uint32_t cbStruct = 0; ///< must be mixerControlDetailsSize
    std::uint32_t dwControlID = 0;
    std::uint32_t cChannels = 0; ///< must be 1: one value for all channels
    std::uint32_t cMultipleItems = 0;
    std::uint32_t cbDetails = 0; ///< must be 4: the size of the value in bytes
    std::int32_t* paDetails = nullptr;
};
inline constexpr std::uint32_t mixerControlDetailsSize = 24;

class Mixer {
  public:
    virtual ~Mixer() = default;
    /// Opens the first mixer. Error: badDevice, which leaves `mixer` unchanged.
    virtual MixerResult open(MixerHandle& mixer) = 0;
    /// Finds the line of the type `line.dwComponentType` and sets `line.dwLineID`. Errors:
    /// invalidHandle, invalidParameter, invalidLine; they leave `line` unchanged.
    virtual MixerResult getLineInfo(MixerHandle mixer, MixerLine& line) = 0;
    /// Finds the line's control of the type `controls.dwControlType` and fills
    /// `*controls.pamxctrl`. Errors: invalidHandle, invalidParameter, invalidLine, invalidControl;
    /// they leave `*controls.pamxctrl` unchanged.
    virtual MixerResult getLineControls(MixerHandle mixer, MixerLineControls& controls) = 0;
    /// Writes the control's value to `*details.paDetails`. Does not allocate. Errors:
    /// invalidHandle, invalidParameter, invalidControl; they leave `*details.paDetails` unchanged.
    virtual MixerResult getControlDetails(MixerHandle mixer, MixerControlDetails& details) = 0;
    /// Sets the control to `*details.paDetails`. Errors: as getControlDetails(), and invalidValue.
    virtual MixerResult setControlDetails(MixerHandle mixer,
                                          const MixerControlDetails& details) = 0;
};

} // namespace sonarith
