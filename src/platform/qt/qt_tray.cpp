// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_tray.h"

#include <algorithm>
#include <utility>

#include <QCursor>

#include "platform/qt/sized_icon.h"
#include "platform/qt/text.h"

namespace sonarith {

QtTray::QtTray(std::function<QIcon()> icon, TrayHosts::Sources hosts)
    : icon_(std::move(icon)),
      hosts_(std::move(hosts)),
      hostsChanged_(hosts_.changed.connect([this] { followHosts(); })),
      hostsReplied_(hosts_.replied.connect([this] { updateIcons(); })),
      watcherReplaced_(hosts_.watcherReplaced.connect([this] { registerAnew(); })) {}

// The icons are destroyed before the menu that they show.
QtTray::~QtTray() {
    discarded_.clear();
    entries_.clear();
}

bool QtTray::add(const TrayIcon& icon) {
    const auto [place, isNew] = entries_.try_emplace(icon.identifier);
    if (!isNew) {
        return false;
    }
    place->second.tip = toQString(icon.tip);
    hosts_.watchBus();
    followHosts();
    return true;
}

bool QtTray::modify(const TrayIcon& icon) {
    const auto found = entries_.find(icon.identifier);
    if (found == entries_.end()) {
        return false;
    }
    Entry& entry = found->second;
    QString tip = toQString(icon.tip);
    if (entry.tip != tip) {
        entry.tip = std::move(tip);
        if (entry.shown) {
            entry.shown->setToolTip(entry.tip);
        }
    }
    return true;
}

bool QtTray::remove(std::uint32_t identifier) {
    const auto found = entries_.find(identifier);
    if (found == entries_.end()) {
        return false;
    }
    discard(found->second);
    entries_.erase(found);
    requestUpdate();
    hosts_.pollEmbedding(!entries_.empty() && way_ != Way::statusNotifier);
    return true;
}

void QtTray::setMenu(MenuItem& menu) {
    heading_ = &menu;
    // The former menu is destroyed after the icons have the new one.
    const auto former = std::exchange(menu_, nullptr);
    drawnHere_ = nullptr;
    for (auto& [identifier, entry] : entries_) {
        if (entry.shown) {
            entry.shown->setContextMenu(menuOfIcons());
        }
    }
}

TrayMenu* QtTray::menuOfIcons() {
    if (!menu_ && heading_ != nullptr) {
        menu_ = std::make_unique<TrayMenu>(*heading_);
    }
    return menu_.get();
}

bool QtTray::hostPresent() const {
    if (way_ == Way::embedding) {
        return hosts_.embedding();
    }
    // Creating an icon now would block, even if a panel embeds icons: Qt asks the bus before it
    // chooses the protocol.
    if (hosts_.hangs()) {
        return false;
    }
    return hosts_.statusNotifier() || (!way_ && hosts_.embedding());
}

void QtTray::followHosts() {
    requestUpdate();
    hosts_.pollEmbedding(!entries_.empty() && way_ != Way::statusNotifier);
    const bool present = hostPresent();
    if (std::exchange(presentBefore_, present) != present) {
        hostChanged.emit();
    }
}

void QtTray::requestUpdate() {
    const bool waiting =
        std::ranges::any_of(entries_, [](const auto& entry) { return !entry.second.shown; });
    if (discarded_.empty() && !(waiting && hostPresent())) {
        return;
    }
    if (way_ == Way::embedding) {
        updateIcons();
    } else {
        hosts_.requestReply();
    }
}

void QtTray::updateIcons() {
    discarded_.clear();
    if (!hostPresent()) {
        return;
    }
    for (auto& [identifier, entry] : entries_) {
        if (!entry.shown) {
            show(entry);
        }
    }
}

/// Discards the icons, so that they are created again and registered with the new watcher (the
/// registry of status notifiers). Qt registers an existing icon with a new watcher only if the new
/// watcher has not directly replaced another one.
void QtTray::registerAnew() {
    if (way_ != Way::statusNotifier) {
        return;
    }
    for (auto& [identifier, entry] : entries_) {
        discard(entry);
    }
    followHosts();
}

void QtTray::discard(Entry& entry) {
    if (entry.shown) {
        entry.shown->disconnect(this);
        discarded_.push_back(std::move(entry.shown));
    }
}

void QtTray::show(Entry& entry) {
    if (!way_) {
        way_ = hosts_.statusNotifier() ? Way::statusNotifier : Way::embedding;
    }
    entry.shown = std::make_unique<QSystemTrayIcon>(withPanelSizes(icon_()), this);
    QSystemTrayIcon& shown = *entry.shown;
    shown.setToolTip(entry.tip);
    shown.setContextMenu(menuOfIcons());
    connect(&shown, &QSystemTrayIcon::activated, this, [this](auto reason) {
        if (reason == QSystemTrayIcon::Context) {
            openMenuHere();
        }
    });
    // Qt also shows the icon in a panel that appears later.
    shown.show();
}

/// Some panels on the bus do not draw the menu: they request that the program draw it.
void QtTray::openMenuHere() {
    if (way_ != Way::statusNotifier || heading_ == nullptr) {
        return;
    }
    if (!drawnHere_) {
        drawnHere_ = std::make_unique<TrayMenu>(*heading_);
    }
    drawnHere_->popup(QCursor::pos());
}

} // namespace sonarith
