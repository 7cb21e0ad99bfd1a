// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

struct EntryResult;

/// What a minify job shows of itself. The job calls these from its own thread, in the order of its steps, and
/// never waits for their effect.
class JobDisplay {
public:
    JobDisplay() = default;
    JobDisplay(const JobDisplay &) = delete;
    JobDisplay &operator=(const JobDisplay &) = delete;
    virtual ~JobDisplay() = default;

    /// The run begins: nothing may be started or cleared.
    virtual void lockControls() = 0;

    virtual void setStatusText(const QString &text) = 0;

    /// The file being worked on is the one in this row, which alone is to be selected.
    virtual void selectRow(int row) = 0;

    /// So many files have been worked on, of so many that are in the queue by now; called before each file.
    virtual void setProgress([[maybe_unused]] int done, [[maybe_unused]] int count) {}

    virtual void deselectRows() = 0;

    /// Every run that is completed reads the sound, whether or not it is then played.
    virtual void loadDoneSound() {}
    virtual void playDoneSound() = 0;

    /// The run has ended, however: called exactly once, as the job's last call.
    virtual void unlockControls() = 0;

    /// One file has been worked on, the gzip copy included.
    virtual void entryEnded([[maybe_unused]] const EntryResult &result) {}
};

} // namespace brevant
