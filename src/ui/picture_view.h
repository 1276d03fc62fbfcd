// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a PictureBox: a bar that holds other widgets, or a picture of ours.
#pragma once

#include <optional>

#include <QWidget>

#include "platform/controls/picture_box.h"
#include "ui/control_view.h"
#include "ui/icons.h"

namespace sonarith {

/// A bar with a thin line along the edge that faces the work tree.
class BarView : public QWidget {
  public:
    BarView(PictureBox& model, QString label, Qt::Edge line, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::Edge line_;
    ControlView view_;
};

/// A picture, drawn in the middle of its surface; without a symbol the surface stays bare.
class PictureView : public QWidget {
  public:
    PictureView(PictureBox& model, QString label, std::optional<Symbol> symbol, int side,
                QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override { return {side_, side_}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    /// Presses that the model has no handler for are left to the widgets beneath.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    PictureBox& model_;
    std::optional<Symbol> symbol_;
    int side_;
    ControlView view_;
};

} // namespace sonarith
