// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/OutputConflicts.h"

#include "cli/OutputFiles.h"
#include "engine/OutputClaims.h"
#include "files/Folders.h"
#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "queue/OutputPath.h"
#include "settings/EntrySettings.h"

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// A file of the run, and all that is made of it.
struct Written {
    QString source;
    QStringList outputs;
};

std::vector<Written> allWritten(const std::vector<QString> &files, const std::vector<FileCopy> &copies,
                                const EntrySettings &settings)
{
    BySettings<WantedCopies> wantedCopies(settings);
    OutputPath outputPath(settings, OutputPath::Reading::Once);
    std::vector<Written> all;
    for (const QString &file : files) {
        const std::optional<QString> output = outputPath.next(file);
        if (!output || RawBytes::areIn(file)) // which is not minified
            continue;
        const FileKind *const kind = anyKindOf(file);
        all.push_back(
            {file, withCopies(*output, kind ? wantedCopies.of(file).extensionsFor(*kind) : QStringList())});
    }
    for (const FileCopy &copy : copies)
        all.push_back({copy.found, {copy.target}});
    return all;
}

} // namespace

QString outputConflict(const std::vector<QString> &files, const std::vector<FileCopy> &copies,
                       const EntrySettings &settings)
{
    const std::vector<Written> all = allWritten(files, copies, settings);
    FileMarks::Reader marksOf;
    MarkedFiles sources(all.size());
    for (std::size_t row = 0; row < all.size(); ++row)
        sources.add(all[row].source, marksOf.all(all[row].source), static_cast<int>(row));
    MarkedFiles outputs(all.size());
    for (std::size_t row = 0; row < all.size(); ++row) {
        for (const QString &output : all[row].outputs) {
            const QStringList marks = marksOf.all(output);
            if (const int over = sources.find(marks); over >= 0)
                return u"%1 would be written over %2, a file of the run; choose another --out-dir"_s.arg(
                    output, all[static_cast<std::size_t>(over)].source);
            if (const int same = outputs.findInAnyCase(output, marks); same >= 0)
                return u"%1 and %2 would both be written to %3; leave out one of them with --exclude, or "
                       "choose another suffix"_s.arg(all[static_cast<std::size_t>(same)].source,
                                                     all[row].source, output);
            outputs.addInAnyCase(output, marks, static_cast<int>(row));
        }
    }
    return {};
}

} // namespace brevant
