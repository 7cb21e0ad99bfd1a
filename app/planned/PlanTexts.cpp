// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/PlanTexts.h"

#include "app/results/RunRecord.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "files/SizeText.h"
#include "settings/SettingsKeys.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using Kind = PlannedProblem::Kind;
using State = PlannedFile::State;

QString tr(const char *text)
{
    return QCoreApplication::translate("PlannedOutputs", text);
}

QString shortPath(const QString &path)
{
    return printable(PathString::withTilde(path));
}

QString capitalised(QString text)
{
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

QString problemText(const PlannedProblem &problem)
{
    switch (problem.kind) {
    case Kind::CannotBeRead:
        return tr("Cannot be read: %1").arg(problem.words);
    case Kind::NotUtf8Path:
        return tr("Path is not valid UTF-8");
    case Kind::NoOutput:
        return tr("No output path");
    case Kind::BadSetting:
        return capitalised(problem.words);
    case Kind::OddColumn:
        return tr("Column for line breaks is not a whole number");
    case Kind::ColonInOutput:
        return tr("Output path has a colon");
    case Kind::FolderNotWritable:
        return tr("Folder cannot be written");
    case Kind::OutputNotWritable:
        return tr("Output cannot be written");
    case Kind::NotValid:
        return tr("Not valid in %1, at byte %2").arg(problem.words, QLocale().toString(problem.byte));
    case Kind::ReplacesItself:
        return tr("Replaces its own source");
    case Kind::ReplacesSource:
        return tr("Replaces the source in row %1").arg(problem.row + 1);
    case Kind::ReplacedByOther:
        return tr("Replaced by the output of row %1").arg(problem.row + 1);
    case Kind::SameOutput:
        return tr("Same output as row %1").arg(problem.row + 1);
    case Kind::SlashInSuffix:
        return tr("Suffix has a slash");
    case Kind::OutputIsNewer:
        return tr("Output is newer than the source");
    }
    Q_UNREACHABLE();
}

QStringList aboutSameOutput(const PlannedFile &file, int row, int other)
{
    QStringList sentences{tr("Rows %1 and %2 both go to %3. Row %2 is minified later, so its output stays "
                             "and that of row %1 is "
                             "lost.")
                              .arg(std::min(row, other) + 1)
                              .arg(std::max(row, other) + 1)
                              .arg(shortPath(file.output))};
    if (PathString::folder(file.output) != PathString::folder(file.source))
        sentences.append(tr("“The same folder as source” in the preferences keeps them apart."));
    return sentences;
}

/// What follows from a problem whose few words leave that open.
QStringList sentencesAbout(const PlannedProblem &problem, const PlannedFile &file, int row)
{
    switch (problem.kind) {
    case Kind::SameOutput:
        return aboutSameOutput(file, row, problem.row);
    case Kind::NotUtf8Path:
        return {tr("The path is not valid UTF-8 and cannot be handed to a compressor.")};
    case Kind::NoOutput:
        return {tr("The setting %1 is neither true nor false.").arg(suffixSwitcherKeyString)};
    case Kind::ColonInOutput:
        return {tr("YUI Compressor takes an output path with a colon for a pattern.")};
    case Kind::FolderNotWritable:
        return {tr("The folder %1 is missing, or cannot be written to.")
                    .arg(shortPath(PathString::folder(file.output).toString()))};
    case Kind::OutputNotWritable:
        return {tr("%1 is there, and cannot be written to.").arg(shortPath(file.output))};
    case Kind::NotValid:
        return {problemText(problem) + u'.', problem.isFatal
                                                 ? tr("Modern compressors do not minify such a file.")
                                                 : tr("What is not valid becomes “\uFFFD” in the output.")};
    case Kind::ReplacesSource:
        return {tr("%1 is the source in row %2, which is replaced.")
                    .arg(shortPath(file.output))
                    .arg(problem.row + 1)};
    case Kind::ReplacedByOther:
        return {problem.row < row
                    ? tr("The output of row %1 replaces this file before it is minified itself.")
                          .arg(problem.row + 1)
                    : tr("The output of row %1 replaces this file after it has been minified.")
                          .arg(problem.row + 1)};
    case Kind::SlashInSuffix:
        return {tr("With a slash, each file goes into a folder of its own, which must exist.")};
    case Kind::OutputIsNewer:
        return {tr("%1 was changed after its source. Minify writes it anew.").arg(shortPath(file.output))};
    default:
        return {problemText(problem) + u'.'};
    }
}

} // namespace

PlanTotals totalsOf(const std::vector<PlannedFile> &files)
{
    PlanTotals totals;
    for (const PlannedFile &file : files) {
        ++totals.counts[static_cast<std::size_t>(file.state())];
        totals.size += std::max<qint64>(file.size, 0);
    }
    return totals;
}

QString stateText(State state)
{
    switch (state) {
    case State::WillFail:
        return tr("Will fail");
    case State::TakeCare:
        return tr("Take care");
    case State::Checking:
        return tr("Checking");
    case State::Ready:
        return tr("Ready");
    }
    Q_UNREACHABLE();
}

ResultRow::State signOf(State state)
{
    switch (state) {
    case State::WillFail:
        return ResultRow::State::Failed;
    case State::TakeCare:
        return ResultRow::State::Warned;
    case State::Checking:
        return ResultRow::State::Running;
    case State::Ready:
        return ResultRow::State::Done;
    }
    Q_UNREACHABLE();
}

QString problemsText(const PlannedFile &file)
{
    QStringList texts;
    for (const PlannedProblem &problem : file.problems)
        texts.append(problemText(problem));
    return texts.join(u"; "_s);
}

QStringList sentencesAbout(const PlannedFile &file, int row)
{
    QStringList sentences;
    for (const PlannedProblem &problem : file.problems)
        sentences += sentencesAbout(problem, file, row);
    if (sentences.isEmpty())
        sentences.append(tr("Goes to %1.").arg(shortPath(file.output)));
    return sentences;
}

QString totalsText(const PlanTotals &totals, Qt::LayoutDirection direction)
{
    int files = 0;
    for (const int count : totals.counts)
        files += count;
    QStringList parts{files == 1 ? tr("1 file") : tr("%1 files").arg(files), sizeText(totals.size)};
    for (const State state : {State::Ready, State::TakeCare, State::WillFail, State::Checking}) {
        if (const int count = totals.count(state); count > 0)
            parts.append(u"%1 %2"_s.arg(count).arg(stateText(state).toLower()));
    }
    return joinedParts(parts, direction);
}

} // namespace brevant
