// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mci/mci_errors.h"

#include <utility>

namespace sonarith::mci {
namespace {

constexpr std::pair<MciError, std::string_view> texts[] = {
    {MciError::unrecognizedKeyword, "The driver cannot recognize the specified command parameter."},
    {MciError::unrecognizedCommand, "The driver cannot recognize the specified command."},
    {MciError::invalidDeviceName, "The specified device is not open or is not recognized."},
    {MciError::deviceOpen, "The device name is already being used as an alias by this application. "
                           "Use a unique alias."},
    {MciError::missingCommandString, "No command was specified."},
    {MciError::missingStringArgument,
     "The specified command requires a character-string parameter. Please provide one."},
    {MciError::badInteger, "The specified integer is invalid for this command."},
    {MciError::missingParameter, "The specified command requires a parameter. Please supply one."},
    {MciError::unsupportedFunction,
     "The device you are using does not support the specified command."},
    {MciError::deviceNotReady, "The device driver is not ready."},
    {MciError::cannotUseAll, "Cannot use 'all' as the device name with the specified command."},
    {MciError::outOfRange, "The specified parameter is out of range for the specified command."},
    {MciError::flagsNotCompatible, "The specified parameters cannot be used together."},
    {MciError::fileNotSaved, "Cannot save the specified file. Make sure you have enough disk space "
                             "and may write to the folder."},
    {MciError::deviceTypeRequired, "Cannot find the specified device. Make sure it is installed or "
                                   "that the device name is spelled correctly."},
    {MciError::duplicateAlias,
     "The specified alias is already being used in this application. Use a unique alias."},
    {MciError::badConstant, "The value specified for a parameter is unknown."},
    {MciError::mustUseShareable, "The device driver is already in use. To share it, use the "
                                 "'shareable' parameter with each 'open' command."},
    {MciError::missingDeviceName,
     "The specified command requires an alias, file, driver, or device name. Please supply one."},
    {MciError::badTimeFormat, "The specified value for the time format is invalid."},
    {MciError::noClosingQuote, "A closing double-quotation mark is missing from the specified "
                               "value. Please supply one."},
    {MciError::duplicateFlags, "The same flag or value was specified twice."},
    {MciError::unnamedResource, "Cannot save an unnamed file. Supply a filename."},
    {MciError::newRequiresAlias, "You must specify an alias when using the 'new' parameter."},
    {MciError::noElementAllowed, "Cannot use a filename with the specified device."},
    {MciError::nonapplicableFunction, "Cannot carry out the commands in the order specified. "
                                      "Correct the command sequence, and then try again."},
    {MciError::extraCharacters,
     "Cannot specify extra characters after a string enclosed in quotation marks."},
    {MciError::deviceNotInstalled, "The specified device is not installed on the system."},
    {MciError::waveInputsInUse, "All wave devices that can record files in the current format are "
                                "in use. Wait until a wave device is free, and then try again."},
    {MciError::waveInputsUnsuitable,
     "No installed wave device can record files in the current format."},
    {MciError::dataTrack, "The specified track holds data and cannot be played."},
    {MciError::commandTooLong, "The specified command is too long."},
};

} // namespace

std::string_view errorText(int status) {
    for (const auto& [number, text] : texts) {
        if (static_cast<int>(number) == status) {
            return text;
        }
    }
    return {};
}

} // namespace sonarith::mci
