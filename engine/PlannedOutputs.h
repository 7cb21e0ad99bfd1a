// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <stop_token>
#include <vector>

namespace brevant {

class SettingsStore;

/// One thing that is wrong with a file and its output before there is a run, or worth knowing.
struct PlannedProblem {
    enum class Kind {
        CannotBeRead,      ///< `words`: why
        NotUtf8Path,       ///< which no compressor can be given
        NoOutput,          ///< as a setting is neither true nor false
        BadSetting,        ///< `words`: which, as the run says it
        OddColumn,         ///< for line breaks: no whole number
        ColonInOutput,     ///< which YUI Compressor takes for a pattern
        FolderNotWritable, ///< or not there
        OutputNotWritable,
        NotValid, ///< `byte`: the first that is not in the character set `words`
        ReplacesItself,
        ReplacesSource,  ///< that in `row`
        ReplacedByOther, ///< by the output of `row`
        SameOutput,      ///< as `row`
        SlashInSuffix,
        OutputIsNewer, ///< as after every run: no more than a note
    };

    Kind kind;
    bool isFatal = false; ///< there will be no output
    int row = -1;         ///< of another file, from 0
    qint64 byte = 0;      ///< from 0
    QString words = {};

    /// What is only worth knowing: the file is ready all the same.
    [[nodiscard]] bool isNote() const { return kind == Kind::OutputIsNewer; }
};

/// What a run would do with one file of the list. Kept small, as there may be 100,000.
struct PlannedFile {
    /// The worst first.
    enum class State : quint8 { WillFail, TakeCare, Checking, Ready };

    QString source;
    QString output;   ///< as the compressor finds it; null if there is none
    qint64 size = -1; ///< of the source, in bytes; -1 if that is not known
    bool isChecked = false;
    std::vector<PlannedProblem> problems; ///< those that let it fail first, notes last

    [[nodiscard]] State state() const;
};

/// Is handed the files from row `first` on.
using PlanReceiver = std::function<void(int first, std::vector<PlannedFile> files)>;

/// Finds out what a run over `sources`, by the settings as they stand, would do. Tells of all files first,
/// unchecked; then looks at the disk and tells of them again, piece by piece. Nothing is written, except that
/// where two outputs differ in capitals alone a temporary file shows whether their folder tells these apart.
///
/// A relative folder of outputs counts from `classicFolder`, where classic compressors run, and for modern
/// ones from our own working folder.
///
/// The disk is asked several times for each file, and sources are read: not for the thread of a window. A
/// stop is obeyed within one call of the system.
void planOutputs(const std::vector<QString> &sources, const SettingsStore &settings,
                 const QString &classicFolder, const std::stop_token &stop, const PlanReceiver &tell);

} // namespace brevant
