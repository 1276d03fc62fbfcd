// SPDX-License-Identifier: GPL-3.0-or-later
// Shows a PictureBox: a bar that contains other widgets, or one of the program's pictures.
#pragma once

#include <optional>

#include <QWidget>

#include "platform/controls/picture_box.h"
#include "ui/control_view.h"
#include "ui/icons.h"

namespace sonarith {

/// A bar with a thin line along the edge next to the work tree.
class BarView : public QWidget {
  public:
    BarView(PictureBox& model, QString label, Qt::Edge line, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::Edge line_;
    ControlView view_;
};

/// A picture in the centre of its area; without a symbol the area stays empty.
class PictureView : public QWidget {
  public:
    PictureView(PictureBox& model, QString label, std::optional<Symbol> symbol, int side,
                QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override { return {side_, side_}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    /// Presses without a handler in the model are passed to the widgets below.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    PictureBox& model_;
    std::optional<Symbol> symbol_;
    int side_;
    ControlView view_;
};

} // namespace sonarith
