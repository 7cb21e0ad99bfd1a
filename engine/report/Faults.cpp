// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/report/Faults.h"

namespace brevant {

using namespace Qt::StringLiterals;
namespace {

using Kind = CompressorMessage::Kind;

void addMessages(std::vector<Fault> &faults, const ResultRemarks &remarks, Kind kind)
{
    for (const CompressorMessage &message : remarks.messages.shown) {
        if (message.kind == kind)
            faults.push_back({kind == Kind::Error ? Fault::Kind::Error : Fault::Kind::Warning, message.text,
                              message.line, message.column});
    }
}

void addChecked(std::vector<Fault> &faults, const CheckedFile &checked)
{
    if (!checked.obstacle.isEmpty())
        faults.push_back({Fault::Kind::Warning, u"not checked: "_s + checked.obstacle});
    for (const ResultWarning &warning : checked.warnings)
        faults.push_back({warning.isNote() ? Fault::Kind::Note : Fault::Kind::Warning,
                          warning.withoutLine(u"->"_s), warning.line});
}

} // namespace

std::vector<Fault> faultsOf(const ResultRow &row)
{
    std::vector<Fault> faults;
    if (!row.remarks)
        return faults;
    if (!row.reason().isEmpty()) {
        addMessages(faults, *row.remarks, Kind::Error);
        // A compressor's own words say more, but not what became of the source.
        if (faults.empty() || row.state == ResultRow::State::PutBack ||
            row.state == ResultRow::State::Skipped)
            faults.insert(faults.begin(), {Fault::Kind::Error, row.reason()});
    }
    addMessages(faults, *row.remarks, Kind::Warning);
    if (row.remarks->checked)
        addChecked(faults, *row.remarks->checked);
    return faults;
}

} // namespace brevant
