// SPDX-License-Identifier: GPL-3.0-or-later
// A notification area for tests. It logs the calls of add(), modify() and remove();
// setHost() simulates that the desktop's panel appears or disappears.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/tray.h"

namespace sonarith::test {

class FakeTray final : public Tray {
  public:
    /// "add TIP", "modify TIP" or "remove" for each call, followed by " failed" if the call
    /// returned false.
    std::vector<std::string> log;
    /// Tips by identifier.
    std::map<std::uint32_t, std::string> icons;
    MenuItem* menu = nullptr;

    void setHost(bool present) {
        if (present != host_) {
            host_ = present;
            hostChanged.emit();
        }
    }

    bool add(const TrayIcon& icon) override {
        return note("add " + icon.tip, icons.emplace(icon.identifier, icon.tip).second);
    }
    bool modify(const TrayIcon& icon) override {
        const auto found = icons.find(icon.identifier);
        if (found != icons.end()) {
            found->second = icon.tip;
        }
        return note("modify " + icon.tip, found != icons.end());
    }
    bool remove(std::uint32_t identifier) override {
        return note("remove", icons.erase(identifier) == 1);
    }
    void setMenu(MenuItem& shown) override { menu = &shown; }
    [[nodiscard]] bool hostPresent() const override { return host_; }

  private:
    bool note(const std::string& call, bool done) {
        log.push_back(done ? call : call + " failed");
        return done;
    }

    bool host_ = true;
};

} // namespace sonarith::test
