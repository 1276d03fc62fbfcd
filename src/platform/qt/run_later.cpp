// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/run_later.h"

#include <utility>

#include <QObject>

namespace sonarith {
namespace {

class Later final : public QObject {
  public:
    Later(QObject& context, std::function<void()> work)
        : QObject(&context), work_(std::move(work)) {
        startTimer(0);
    }

  private:
    void timerEvent(QTimerEvent*) override {
        // The work may destroy the context, which would also destroy this object.
        const std::function<void()> work = std::move(work_);
        delete this;
        work();
    }

    std::function<void()> work_;
};

} // namespace

void runLater(QObject& context, std::function<void()> work) {
    new Later(context, std::move(work));
}

} // namespace sonarith
