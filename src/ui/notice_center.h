// SPDX-License-Identifier: GPL-3.0-or-later
// Shows notices to the user in the main window's notice bar. While that window is hidden or
// minimized, shows them as notifications of the desktop.
#pragma once

#include <functional>

#include <QObject>
#include <QString>
#include <QWidget>

#include "platform/notice_board.h"
#include "ui/notice_bar.h"

namespace sonarith {

class NoticeCenter : public QObject {
  public:
    /// `notify` sends a notification of the desktop. `board`, `window` and `bar` must outlive this
    /// object.
    NoticeCenter(NoticeBoard& board, QWidget& window, NoticeBar& bar,
                 std::function<void(const QString&)> notify);
    ~NoticeCenter() override;

  private:
    void show(const QString& text);

    NoticeBoard& board_;
    QWidget& window_;
    NoticeBar& bar_;
    std::function<void(const QString&)> notify_;
};

} // namespace sonarith
