// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// bench-window start             prints the milliseconds since BREVANT_BENCH_START (nanoseconds of the
// monotonic
//                                clock) when the application's window has first painted itself
// bench-window frames COUNT      prints the mean and the worst milliseconds of a scrolled frame with COUNT
// rows, first
//                                with none selected, then with all
// bench-window drop TREE         prints the seconds that a drop of TREE takes, and the entries
// bench-window edit COUNT        prints the milliseconds of Select All and Remove with COUNT rows
// bench-window job FILE...       prints the seconds of one run over the files
// bench-window results FILE...   the same while Results shows the run
//
// The settings are those of the user: name another XDG_CONFIG_HOME.
#include "app/Application.h"
#include "app/results/ResultsWindow.h"
#include "bench/FirstPaint.h"
#include "queue/view/BVTableView.h"
#include "ui_MainWindow.h"

#include <QApplication>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>

using namespace brevant;

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void drop(Application &application, const QStringList &paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    data.setUrls(urls);
    application.controller.tableViewAcceptDrop(data);
}

QStringList manyPaths(const char *count)
{
    QStringList paths;
    for (int i = 0; i < QByteArray(count).toInt(); ++i)
        paths.append(QStringLiteral("/srv/sites/%1.css").arg(i, 65, 10, QLatin1Char('0')));
    return paths;
}

void measureFrames(BVTableView &table)
{
    QScrollBar &bar = *table.verticalScrollBar();
    double worst = 0;
    double sum = 0;
    constexpr int frames = 200;
    for (int i = 0; i < frames; ++i) {
        const Clock::time_point start = Clock::now();
        bar.setValue(static_cast<int>(static_cast<qint64>(bar.maximum()) * i / frames));
        table.viewport()->repaint();
        const double spent = millisecondsSince(start);
        worst = std::max(worst, spent);
        sum += spent;
    }
    std::printf("%.2f %.2f\n", sum / frames, worst);
}

void benchFrames(Application &application, const char *count)
{
    drop(application, manyPaths(count));
    if (!QTest::qWaitForWindowExposed(&application.window))
        std::exit(1);
    BVTableView &table = *application.window.ui().filesTable;
    table.viewport()->repaint(); // loads the fonts
    measureFrames(table);
    table.selectAllRows();
    measureFrames(table);
}

void benchEdit(Application &application, const char *count)
{
    drop(application, manyPaths(count));
    const Clock::time_point start = Clock::now();
    application.controller.selectAll();
    const double selected = millisecondsSince(start);
    application.controller.removeRow();
    std::printf("%.1f %.1f\n", selected, millisecondsSince(start) - selected);
}

void openResults(Application &application)
{
    application.results.show();
    auto *const results = application.window.findChild<ResultsWindow *>();
    if (!QTest::qWaitForWindowExposed(results))
        std::exit(1);
    results->repaint(); // loads the fonts
}

void benchJob(Application &application, const QStringList &files)
{
    drop(application, files);
    QCoreApplication::processEvents();
    const Clock::time_point start = Clock::now();
    QObject::connect(&application.jobs, &JobRunner::allEnded, [start] {
        std::printf("%.4f\n", millisecondsSince(start) / 1000);
        QCoreApplication::exit(0);
    });
    application.controller.minify();
    QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    ApplicationService service;
    const std::future<void> fonts = loadFonts();
    const QApplication qtApplication(argc, argv);
    const std::string_view mode = argc > 1 ? argv[1] : "";
    FirstPaint firstPaint;
    setUpApplication();
    static_cast<void>(service.claimOrHandOver(sessionBus(), {}, {}));
    Application application(SettingsStore::defaultFilePath(), sessionBus());
    fonts.wait();
    application.setUp();
    application.serve(service);
    if (mode == "start")
        application.window.installEventFilter(&firstPaint);
    application.start({});
    if (mode == "start")
        return QApplication::exec();
    QCoreApplication::processEvents();
    if (mode == "frames" && argc == 3) {
        benchFrames(application, argv[2]);
    } else if (mode == "drop" && argc == 3) {
        const Clock::time_point start = Clock::now();
        drop(application, {QFile::decodeName(argv[2])});
        std::printf("%.4f %s\n", millisecondsSince(start) / 1000,
                    qUtf8Printable(application.window.ui().progressTextField->text()));
    } else if (mode == "edit" && argc == 3) {
        benchEdit(application, argv[2]);
    } else if ((mode == "job" || mode == "results") && argc > 2) {
        if (mode == "results")
            openResults(application);
        benchJob(application, QCoreApplication::arguments().sliced(2));
    } else {
        std::fprintf(stderr,
                     "usage: bench-window start | frames COUNT | drop TREE | edit COUNT | job FILE... | "
                     "results FILE...\n");
        return 2;
    }
    return 0;
}
