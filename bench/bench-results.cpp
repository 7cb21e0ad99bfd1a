// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// bench-results COUNT     opens Results on a run of COUNT files and prints, in milliseconds, how long it
// takes to
//                         open, to sort by the slowest column, to filter, to paint a frame, and the bytes
//                         that run and window take
#include "app/results/Inquiry.h"
#include "app/results/ResultRuns.h"
#include "app/results/ResultTable.h"
#include "app/results/ResultsWindow.h"
#include "engine/Tools.h"
#include "settings/SettingsStore.h"
#include "widgets/FilterField.h"

#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include <malloc.h>
#include <unistd.h>

using namespace brevant;
using namespace Qt::StringLiterals;

namespace {

qint64 residentBytes()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

/// Every tenth one has failed.
ResultRow rowOf(int number)
{
    const bool isDone = number % 10 != 0;
    ResultRow row(
        isDone ? ResultRow::State::Done : ResultRow::State::Failed,
        u"/srv/sites/example/folder%1/style-sheet-%2.css"_s.arg(number / 1000).arg(number * 7919 % 1000003));
    row.output = row.source.chopped(4) + u".min.css"_s;
    row.sizeBefore = 1000 + number * 31 % 50000;
    row.sizeAfter = row.sizeBefore * (30 + number % 50) / 100;
    row.gzipSize = row.sizeAfter / 3;
    row.seconds = 0.1 + number % 100 / 100.0;
    if (!isDone) {
        ResultRemarks remarks;
        remarks.reason = u"Unexpected token %1"_s.arg(number);
        remarks.messages.shown.push_back({CompressorMessage::Kind::Error, remarks.reason, number % 500, 7});
        row.remarks = std::make_shared<ResultRemarks>(std::move(remarks));
    }
    return row;
}

template <typename Work>
double milliseconds(const Work &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const int count = argc == 2 ? QByteArray(argv[1]).toInt() : 0;
    if (count <= 0) {
        std::fprintf(stderr, "usage: bench-results COUNT\n");
        return 2;
    }
    const SettingsStore settings(u"/nowhere/settings.json"_s);
    const Tools tools;
    const auto encodingName = [] { return QString(); };
    {
        ResultRuns small; // what Qt loads once does not count
        Inquiry nothing(small, settings, tools);
        ResultsWindow warm(small, nothing, encodingName, nullptr);
        warm.show();
        QApplication::processEvents();
    }
    malloc_trim(0);
    const qint64 before = residentBytes();
    ResultRuns runs;
    runs.start(1, u"Classic compressors"_s);
    for (int number = 0; number < count; ++number) {
        const ResultRow row = rowOf(number);
        runs.startFile(1, row.source, count);
        runs.endFile(1, row);
    }
    runs.end(1, {});
    Inquiry inquiry(runs, settings, tools);
    ResultsWindow window(runs, inquiry, encodingName, nullptr);
    const double opening = milliseconds([&] {
        window.showLastRun();
        window.show();
        window.repaint();
        QApplication::processEvents();
    });
    auto *const table = window.findChild<ResultTable *>();
    double sorting = 0;
    for (int column = 0; column < ResultModel::ColumnCount; ++column) {
        sorting = std::max(sorting, milliseconds([&] {
                               table->horizontalHeader()->setSortIndicator(column, Qt::DescendingOrder);
                               QApplication::processEvents();
                           }));
    }
    const double filtering = milliseconds([&] {
        window.findChild<FilterField *>()->setText(u"7"_s);
        QApplication::processEvents();
    });
    constexpr int frames = 200;
    const double frame =
        milliseconds([&] {
            for (int i = 0; i < frames; ++i) {
                table->verticalScrollBar()->setValue(table->verticalScrollBar()->maximum() / frames * i);
                table->viewport()->repaint();
            }
        }) /
        frames;
    window.findChild<FilterField *>()->clear();
    malloc_trim(0);
    std::printf("%.1f %.1f %.1f %.2f %lld\n", opening, sorting, filtering, frame,
                static_cast<long long>(residentBytes() - before));
    return 0;
}
