// SPDX-License-Identifier: GPL-3.0-or-later
// The line at the bottom of the main window that shows the last notice to the user, separate from
// the logic's controls. It takes no focus and blocks nothing.
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

    /// Shows a notice in place of the previous one, preceded by the number of notices since the bar
    /// was dismissed. Screen readers announce it.
    void show(const QString& text);
    /// Hides the bar.
    void dismiss();
    [[nodiscard]] QString text() const { return text_; }

    /// The user requests the list of all notices.
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
