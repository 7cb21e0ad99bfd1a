// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

/// How putting a kept original back went.
struct RestoredSource {
    enum class Outcome {
        Restored, ///< the source is what it was before its run
        Beside,   ///< so is another file beside it
        Changed,  ///< nothing was done, as the source is no longer what the run has written
        Failed,
    };
    Outcome outcome = Outcome::Failed;
    QString error; ///< why it failed
    QString lacks; ///< what could not be restored besides the content; empty if all was
    QString path;  ///< the file that has the content now
};

/// Replaces a source by the original that KeptOriginals keeps at `kept`, durably and in one step, with mode,
/// times and attributes; one that has several names, say, is written into. The kept one is removed then. Only
/// the output of the run is replaced, by its content.
[[nodiscard]] RestoredSource restoreSource(const QString &source, const QString &kept);

/// Makes the original a new file beside the source, by the next free second name. The kept one stays.
[[nodiscard]] RestoredSource restoreBeside(const QString &source, const QString &kept);

/// "/w/app.original.js" of "/w/app.js", or from `number` 2 on "/w/app.original-2.js". A long name loses
/// letters before that, so that file systems take it.
[[nodiscard]] QString secondName(const QString &source, int number = 1);

} // namespace brevant
