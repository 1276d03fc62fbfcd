// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a PictureBox. BarView shows a bar. PictureView shows one of the program's pictures or an
// area for other widgets.
#pragma once

#include <optional>

#include <QWidget>

#include "platform/controls/picture_box.h"
#include "ui/control_view.h"
#include "ui/icons.h"

namespace sonarith {

/// A bar with a thin line along the edge `line`. In the main window, this is the bar's edge that
/// faces the work tree.
class BarView : public QWidget {
  public:
    BarView(PictureBox& model, QString label, Qt::Edge line, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::Edge line_;
    ControlView view_;
};

/// Shows the picture of `symbol` in the centre of the widget, in a square of `side` pixels. Shows
/// nothing if there is no symbol.
class PictureView : public QWidget {
  public:
    PictureView(PictureBox& model, QString label, std::optional<Symbol> symbol, int side,
                QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override { return {side_, side_}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    /// If the model has no handler for a press, the press is passed to the parent widget.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    PictureBox& model_;
    std::optional<Symbol> symbol_;
    int side_;
    ControlView view_;
};

} // namespace sonarith
