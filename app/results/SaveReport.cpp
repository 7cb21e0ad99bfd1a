// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/SaveReport.h"

#include "app/results/ReportTexts.h"
#include "engine/report/Report.h"
#include "files/DurableFile.h"
#include "files/PathString.h"
#include "widgets/Dialogs.h"

#include <QFileDialog>

#include <array>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

struct Format {
    QLatin1StringView extension;
    const char *name;
    QByteArray (*write)(const RunRecord &);
};

constexpr std::array formats{
    Format{"json"_L1, QT_TRANSLATE_NOOP("Results", "JSON, as brevant-cli has it (*.json)"),
           [](const RunRecord &run) { return reportAsJson(run.rows, run.reason); }},
    Format{"csv"_L1, QT_TRANSLATE_NOOP("Results", "Comma-separated values (*.csv)"), reportAsCsv},
    Format{"md"_L1, QT_TRANSLATE_NOOP("Results", "Markdown (*.md)"),
           [](const RunRecord &run) {
               return reportAsMarkdown({run.rows, run.reason, run.started});
           }},
};

QString nameOf(const Format &format)
{
    return QCoreApplication::translate("Results", format.name);
}

} // namespace

void saveReport(const std::shared_ptr<const RunRecord> &run, QWidget *window)
{
    auto *const panel =
        new QFileDialog(window, QCoreApplication::translate("Results", "Save Report")); // deletes itself
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setAcceptMode(QFileDialog::AcceptSave);
    QStringList names;
    for (const Format &format : formats)
        names.append(nameOf(format));
    panel->setNameFilters(names);
    panel->setDefaultSuffix(formats.front().extension);
    QObject::connect(panel, &QFileDialog::filterSelected, panel, [panel](const QString &name) {
        for (const Format &format : formats) {
            if (name == nameOf(format))
                panel->setDefaultSuffix(format.extension);
        }
    });
    setUpFilePanel(*panel);
    panel->selectFile(u"brevant-report.json"_s);
    QObject::connect(panel, &QFileDialog::fileSelected, window, [run, window](const QString &path) {
        const Format *chosen = formats.data();
        for (const Format &format : formats) {
            if (PathString::hasExtension(path, QString(format.extension)))
                chosen = &format;
        }
        if (const QString error = DurableFile::replace(path, chosen->write(*run)); !error.isEmpty())
            showWarningSheet(window, QCoreApplication::translate("Results", "The report was not saved"),
                             error, QCoreApplication::translate("Results", "OK"));
    });
    panel->open();
}

} // namespace brevant
