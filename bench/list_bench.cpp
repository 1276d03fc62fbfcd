// SPDX-License-Identifier: GPL-3.0-or-later
// Measures three costs of a list box with a million lines: adding a line (on average), painting,
// and choosing the first and the last line. Limit for each: 3 times the cost with ten thousand
// lines. The list is shown (by Qt's platform "offscreen") and painted while lines are added, as
// during a search. Also measures the peak memory of the whole benchmark. Limit: 400 MB.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <QApplication>
#include <QScrollBar>

#include "platform/controls/form.h"
#include "result_limits.h"
#include "statistics.h"
#include "ui/list_box_view.h"

namespace {

using namespace sonarith;
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr int few = 10'000;
constexpr int many = 1'000'000;
constexpr int linesBetweenYields = 500;
constexpr int rounds = 21;

template <typename Step>
double timeOf(Step step) {
    std::vector<double> taken;
    for (int i = 0; i < rounds; ++i) {
        const auto begin = Clock::now();
        step();
        taken.push_back(Microseconds(Clock::now() - begin).count());
    }
    return bench::median(taken);
}

struct Costs {
    double addUs = 0; ///< per line
    double paintUs = 0;
    double chooseUs = 0;
};

Costs measure(int lines) {
    Form form("frmsearch");
    ListBox model(form, "lstfiles");
    QWidget window;
    ListBoxView view(model, QStringLiteral("Files"), ListBoxView::LineTips::whenCut, &window);
    view.resize(400, 500);
    window.resize(400, 500);
    window.show();
    QCoreApplication::processEvents();
    Costs costs;
    const auto begin = Clock::now();
    for (int i = 0; i < lines; ++i) {
        model.addItem("h:\\my music\\an artist of some renown\\an album and its year\\" +
                      std::to_string(i) + " a title.mp3"); // as long as a usual path
        if (i % linesBetweenYields == 0) {
            QCoreApplication::processEvents();
        }
    }
    costs.addUs = Microseconds(Clock::now() - begin).count() / lines;
    while (view.model()->rowCount() < lines) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    int offset = 0;
    costs.paintUs = timeOf([&] {
        view.verticalScrollBar()->setValue(lines / 2 + 100 * ++offset);
        view.viewport()->repaint();
    });
    costs.chooseUs = timeOf([&] {
        model.setListIndex(0).passOver();
        model.setListIndex(lines - 1).passOver();
        QCoreApplication::processEvents();
    });
    return costs;
}

void reportMemory(bench::Limits& limits) {
    constexpr double limitMb = 400;
    rusage use{};
    getrusage(RUSAGE_SELF, &use);
    const double peakMb = static_cast<double>(use.ru_maxrss) / 1024;
    std::printf("memory with %d lines: %.0f MB, limit %.0f MB\n", many, peakMb, limitMb);
    limits.check("peak memory of the process, in MB", peakMb, limitMb);
}

void report(const char* what, double fewUs, double manyUs, bench::Limits& limits) {
    constexpr double limit = 3;
    std::printf("%s: %.2f us with %d lines, %.2f us with %d: %.2f times, limit %.0f\n", what, fewUs,
                few, manyUs, many, manyUs / fewUs, limit);
    limits.check(what, manyUs / fewUs, limit);
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication qt(argc, argv);
    const Costs small = measure(few);
    const Costs large = measure(many);
    bench::Limits limits;
    report("adding a line", small.addUs, large.addUs, limits);
    report("painting", small.paintUs, large.paintUs, limits);
    report("choosing the first and last line", small.chooseUs, large.chooseUs, limits);
    reportMemory(limits);
    return limits.exitCode();
}
