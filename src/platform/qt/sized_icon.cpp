// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/sized_icon.h"

#include <QIconEngine>
#include <QPainter>

namespace sonarith {
namespace {

class SizedIconEngine : public QIconEngine {
  public:
    explicit SizedIconEngine(QIcon icon) : icon_(std::move(icon)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        icon_.paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }
    // The icon sizes of the panels of common desktops, at scales of 1 to 2, in pixels. Over D-Bus,
    // Qt sends the panel no size above 64.
    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {44, 44}, {48, 48}, {64, 64}};
    }
    [[nodiscard]] QIconEngine* clone() const override { return new SizedIconEngine(*this); }
    QString key() const override { return QStringLiteral("sonarith-sized"); }

  private:
    QIcon icon_;
};

} // namespace

QIcon withPanelSizes(const QIcon& icon) {
    return QIcon(new SizedIconEngine(icon));
}

} // namespace sonarith
