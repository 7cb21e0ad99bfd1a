// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/RunChooser.h"

#include "app/results/ResultRuns.h"

#include <QLocale>

#include <ranges>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

QString filesText(qsizetype count)
{
    return count == 1 ? RunChooser::tr("1 file") : RunChooser::tr("%1 files").arg(count);
}

bool isSameMinute(const RunRecord &one, const RunRecord &other)
{
    return one.started.toString(u"yyyyMMddHHmm"_s) == other.started.toString(u"yyyyMMddHHmm"_s);
}

} // namespace

RunChooser::RunChooser(const ResultRuns &runs, QWidget *parent) : QComboBox(parent), m_runs(runs)
{
    setAccessibleName(tr("Run"));
    setSizeAdjustPolicy(AdjustToContents);
    connect(this, &QComboBox::activated, this, [this](int item) { Q_EMIT chosen(itemData(item).toInt()); });
}

void RunChooser::setRun(int run)
{
    const auto all = m_runs.all();
    const QDate today = QDate::currentDate();
    while (count() > static_cast<int>(all.size()))
        removeItem(count() - 1);
    int item = 0;
    for (auto at = all.rbegin(); at != all.rend(); ++at, ++item) {
        QString text = runText(**at, today);
        // Runs that began in the same minute are told apart by their numbers.
        const auto before = std::ranges::count_if(
            at + 1, all.rend(), [&](const auto &other) { return isSameMinute(**at, *other); });
        if (before > 0)
            text += u" (%1)"_s.arg(before + 1);
        if (item == count())
            addItem(text);
        else if (itemText(item) != text)
            setItemText(item, text);
        setItemData(item, (*at)->number);
    }
    setCurrentIndex(findData(run));
    setEnabled(count() > 0);
}

QString runText(const RunRecord &run, const QDate &today)
{
    const auto rows = static_cast<qsizetype>(run.rows.size());
    if (run.isRunning)
        return RunChooser::tr("Running, %1 of %2").arg(rows).arg(filesText(run.expected));
    const QString time = run.started.toString(u"HH:mm"_s);
    if (run.isOfStart())
        return RunChooser::tr("At the start, %1").arg(filesText(rows));
    const QDate day = run.started.date();
    const QString date = day == today               ? RunChooser::tr("Today")
                         : day == today.addDays(-1) ? RunChooser::tr("Yesterday")
                                                    : QLocale().toString(day, QLocale::ShortFormat);
    return u"%1 %2, %3"_s.arg(date, time, filesText(rows));
}

QString mannerText(const RunRecord &run)
{
    if (run.isOfStart())
        return RunChooser::tr("Left by a run that was cut short");
    const QString time =
        run.isRunning ? QString() : u", %1 s"_s.arg(run.seconds, 0, 'f', run.seconds < 100 ? 1 : 0);
    return (run.reason.isEmpty() ? run.manner : run.reason) + time;
}

} // namespace brevant
