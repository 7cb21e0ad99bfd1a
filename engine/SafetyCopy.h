// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/OriginalRecord.h"
#include "engine/OriginalSlot.h"
#include "settings/Descriptor.h"

#include <QString>

#include <optional>

namespace brevant {

struct EntryResult;

/// Keeps the source of one entry after another safe while it is worked on. A compressor may leave a source
/// empty, cut or overwritten when the output is the source itself, or when the output's path holds a ":",
/// which YUI Compressor 2.4.8 takes for a pattern. Such a source is copied before, and put back if it is lost
/// afterwards. For every other entry nothing is done.
///
/// Runs take turns with such a source, from its copy to its end: none may take what another's compressor has
/// half written for the source, or for a loss.
class SafetyCopy final {
public:
    /// The copies are made in that folder, which is made when it is needed; with no folder, none are made.
    explicit SafetyCopy(const QString &folder) : m_folder(folder) {}

    /// Drops the copy; one that could not be put back stays for the next start of the program.
    ~SafetyCopy();

    SafetyCopy(const SafetyCopy &) = delete;
    SafetyCopy &operator=(const SafetyCopy &) = delete;

    /// To be called before the compressor starts, and before anything is asked of the source: another run may
    /// have its turn with it, and then this waits. Returns the reason why the source cannot be kept safe, and
    /// then the entry must not be worked on; else an empty text.
    [[nodiscard]] QString make(const QString &source, const std::optional<QString> &output);

    /// While this lives, children that are started keep the copy in use, even when this process is killed.
    class Inheritance final {
    public:
        explicit Inheritance(SafetyCopy &copy) : m_copy(copy) { copy.setInherited(true); }
        ~Inheritance() { m_copy.setInherited(false); }
        Inheritance(const Inheritance &) = delete;
        Inheritance &operator=(const Inheritance &) = delete;

    private:
        SafetyCopy &m_copy;
    };

    /// To be called when everything is done for the entry: puts the source back if it is lost, and says so in
    /// the result.
    void finish(EntryResult &result, bool gzipWanted);

private:
    [[nodiscard]] bool fill(int source);
    [[nodiscard]] bool isLost(const EntryResult &result, bool gzipWanted) const;
    [[nodiscard]] bool mayBeNewer(const EntryResult &result) const;
    void setInherited(bool inherited);
    void putBackSource(EntryResult &result, bool gzipWanted);

    const QString m_folder;
    std::optional<OriginalSlot> m_slot;
    std::optional<OriginalRecord> m_record; ///< of the entry being worked on, if its source is copied
    Descriptor m_turn;                      ///< with that source
    bool m_isOutput = false;                ///< the source is the output too
};

} // namespace brevant
