// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the surfaces of the player's panel. A surface shows a picture box that contains other
// controls, and the user can drag the panel by the surface. A PlayerDisplay is dark with light text
// on every desktop.
#pragma once

#include <QColor>

#include "ui/picture_view.h"

namespace sonarith {

class PanelSurface : public PictureView {
  public:
    PanelSurface(PictureBox& model, QString label, QWidget* parent);

    /// The size that the contained views need, because the surface itself shows no picture.
    [[nodiscard]] QSize sizeHint() const override { return QWidget::sizeHint(); }
    [[nodiscard]] QSize minimumSizeHint() const override { return QWidget::minimumSizeHint(); }
};

class PlayerDisplay : public PanelSurface {
  public:
    inline static const QColor ground{0x10, 0x18, 0x14};
    /// The colour of the level meter's bar and trace: pure green.
    inline static const QColor signal{0x00, 0xFF, 0x00};
    inline static const QColor text{0x7C, 0xF0, 0xA0};

    PlayerDisplay(PictureBox& model, QString label, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace sonarith
