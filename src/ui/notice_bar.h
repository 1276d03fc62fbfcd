// SPDX-License-Identifier: GPL-3.0-or-later
// The bar at the bottom of the main window, which shows the last notice to the user. It is not one
// of the logic's controls. Showing a notice neither moves the focus nor blocks other input.
#pragma once

#include <functional>

#include <QString>
#include <QWidget>

class QLabel;

namespace sonarith {

class NoticeBar : public QWidget {
  public:
    /// Hidden until there is a notice.
    explicit NoticeBar(QWidget* parent);

    /// Shows a notice in place of the previous one. If several notices were shown since the bar
    /// was last dismissed, their number precedes the text. Screen readers announce the notice.
    void show(const QString& text);
    /// Hides the bar.
    void dismiss();
    [[nodiscard]] QString text() const { return text_; }

    /// Called when the user requests the list of all notices.
    std::function<void()> onDetails;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void showText();

    QLabel* line_;
    QString text_;
    int sinceDismissed_ = 0;
};

} // namespace sonarith
