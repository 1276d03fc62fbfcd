// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/tray_icon.h"

#include "platform/text/unicode.h"

namespace sonarith {

void TrayIconCalls::AddTrayIcon(std::uint32_t identifier, Form& form, const std::string& tip) {
    fill(identifier, form, tip);
    tray_.add(record_);
}

void TrayIconCalls::ModifyTrayIcon(std::uint32_t identifier, Form& form, const std::string& tip) {
    fill(identifier, form, tip);
    tray_.modify(record_);
}

void TrayIconCalls::DeleteTrayIcon(std::uint32_t identifier) {
    record_.identifier = identifier;
    tray_.remove(record_.identifier);
}

void TrayIconCalls::fill(std::uint32_t identifier, Form& form, const std::string& tip) {
    record_ = {.identifier = identifier, .form = &form, .tip = leftCharacters(tip, longestTrayTip)};
}

} // namespace sonarith
