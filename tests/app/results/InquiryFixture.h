// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RunMaker.h"
#include "app/results/Inquiry.h"
#include "engine/CompressorCommand.h"
#include "engine/Tools.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "tests/Files.h"

#include <QTemporaryDir>

namespace brevant::test {

/// Runs with failures of a compressor that is a shell script.
struct InquiryFixture {
    InquiryFixture()
    {
        settings.registerDefaults(registeredDefaults());
        tools.folder = folder.path();
        tools.programs = QStringLiteral(BUILD_FOLDER "/libexec");
        tools.java = path(u"java"_s);
        qputenv("LOG", QFile::encodeName(path(u"log"_s)));
    }

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

    /// What the compressor does from now on; every call is a line in $LOG.
    [[nodiscard]] bool setCompressor(const QString &script) const
    {
        return writeFile(tools.java, "#!/bin/sh\necho call >> \"$LOG\"\n" + script.toUtf8() + '\n') &&
               setMode(tools.java, 0700);
    }

    [[nodiscard]] qsizetype calls() const { return readFile(path(u"log"_s)).count("call"); }

    /// A new file that has failed by an error of syntax.
    [[nodiscard]] ResultRow failedRow(const QString &name, QByteArrayView text = "a") const
    {
        EntryResult result;
        if (writeFile(path(name), text))
            result.source = path(name);
        result.outcome = EntryResult::Outcome::CompressorFailed;
        result.status = 2;
        result.arguments = CompressorCommand(settings).arguments(result.source, path(u"out"_s));
        return ResultRow(result);
    }

    /// A new style sheet that is done, and not checked yet.
    [[nodiscard]] ResultRow doneRow(const QString &name, QByteArrayView text, QByteArrayView result) const
    {
        ResultRow row(ResultRow::State::Done, path(name));
        row.output = path(name + u".out"_s);
        row.sizeBefore = text.size();
        row.sizeAfter = result.size();
        if (writeFile(row.source, text) && writeFile(row.output, result))
            row.basis =
                CheckBasis{TextEncoding::Utf8, *FileState::of(row.source), *FileState::of(row.output)};
        return row;
    }

    /// One that has lost declarations in lines 2 and 4.
    [[nodiscard]] ResultRow damagedRow(const QString &name) const
    {
        return doneRow(name, ".a {\n  width: calc(1px + 2px);\n  color: red;\n  left: calc(3px + 4px) }",
                       ".a{width:calc(1px+2px);color:red;left:calc(3px+4px)}");
    }

    [[nodiscard]] const ResultRow &rowOf(int run, std::size_t row) const { return runs.find(run)->rows[row]; }

    /// Whether that row has been checked.
    [[nodiscard]] bool isChecked(int run, std::size_t row) const
    {
        return rowOf(run, row).remarks && rowOf(run, row).remarks->checked;
    }

    /// What has been found out about a row of a run.
    [[nodiscard]] QString words(int run, std::size_t row) const
    {
        return runs.find(run)->rows[row].remarks->messages.inWords();
    }

    const QString syntaxError = u"printf '[ERROR] in x\\n  2:3:syntax error\\n' >&2; exit 2"_s;

    QTemporaryDir folder;
    SettingsStore settings{path(u"absent/settings.json"_s)};
    Tools tools;
    ResultRuns runs;
    Inquiry inquiry{runs, settings, tools};
};

} // namespace brevant::test
