// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <span>

namespace brevant {

struct CommandLine;

/// The sections of the help text, in their order.
enum class OptionGroup { Files, Outputs, Run, Reports };

/// One option as it is typed, without its value: "--jobs"; and the value, empty if it takes none.
struct GivenOption {
    QStringView name;
    const QString &value;
};

/// One option of the command line. Its row in the table is all that parsing and --help need.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): a row of the table reads best so
struct Option {
    /// Puts the option into the command line. Returns what is wrong with it, in words; empty if nothing is.
    using Read = QString (*)(CommandLine &line, const GivenOption &given);

    OptionGroup group;
    QStringView usage; ///< with its value: "--jobs N"
    QStringView meaning;
    Read read = nullptr;          ///< called for each time it is given, in that order; null for actions
    QStringView needs = {};       ///< the option without which it makes no sense: "--list", or `aRun`
    bool mayHoldRawBytes = false; ///< its value names files, which need not be valid UTF-8

    /// "--jobs"
    [[nodiscard]] QStringView name() const { return usage.first(nameLength()); }
    /// "N", or empty
    [[nodiscard]] QStringView valueName() const { return usage.sliced(nameLength()).trimmed(); }

private:
    [[nodiscard]] qsizetype nameLength() const
    {
        const qsizetype blank = usage.indexOf(u' ');
        return blank < 0 ? usage.size() : blank;
    }
};

/// What an option needs that makes no sense where nothing is run.
inline constexpr QStringView aRun = u"a run";

/// In the order of the help text.
[[nodiscard]] std::span<const Option> allOptions();

} // namespace brevant
