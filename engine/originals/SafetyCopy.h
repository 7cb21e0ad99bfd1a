// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"
#include "engine/originals/KeptOriginals.h"
#include "engine/originals/OriginalSlot.h"

#include <QScopeGuard>
#include <QStringList>

namespace brevant {

struct EntryResult;
struct PutBackResult;

/// Why a file may be lost while an entry is worked on.
enum class Danger {
    None,
    Replaced,     ///< the source is its own output, as intended
    Exchanged,    ///< likewise, in one step: it takes a turn, and needs no copy
    Surprise,     ///< the source became its own output by a setting changed during the run
    Pattern,      ///< YUI Compressor takes the output path for a pattern, and may write to the source
    AnotherEntry, ///< the output is another entry's source
    Output,       ///< an output, no source, is written into
};

/// Keeps sources safe while their entries are worked on, one after the other. A source that a compressor
/// could leave empty, cut or overwritten is copied before, and put back if it is lost; the copy of one that
/// nobody meant to replace is kept for the user.
///
/// Runs take turns with such a source, so that none takes what another's compressor has half written for the
/// source, or for a loss.
class SafetyCopy final {
public:
    /// The first of the folders that works gets the copies; without folders, none are made. `stop`, which
    /// must outlive this, ends waiting for another run.
    SafetyCopy(const QStringList &folders, const std::atomic<Stop> &stop) : m_folders(folders), m_stop(stop)
    {
    }

    /// Drops the copy, unless it is left for the next start.
    ~SafetyCopy()
    {
        if (m_slot)
            m_slot->remove();
    }

    SafetyCopy(const SafetyCopy &) = delete;
    SafetyCopy &operator=(const SafetyCopy &) = delete;

    /// To be called first of all for an entry. Waits while another run works on the file, even if there is no
    /// danger, and puts back what such a run has lost. Returns why the file cannot be kept safe, in which
    /// case the entry must not be worked on, or an empty text.
    [[nodiscard]] QString make(const QString &file, Danger danger);

    /// While the result lives, child processes are started so that they keep copy and turn if this process is
    /// killed.
    [[nodiscard]] auto inherited() const
    {
        const auto set = [this](bool isOn) {
            if (m_folder)
                m_folder->setInherited(isOn && (m_source.record || !m_turn.isEmpty()));
        };
        set(true);
        return qScopeGuard([set] { set(false); });
    }

    /// To be called last for an entry: puts the file back if it is lost, and completes the result. With
    /// `kept`, a source that was meant to be replaced, and is, is kept there.
    void finish(EntryResult &result, bool gzipWanted, KeptOriginals::Use *kept = nullptr);

private:
    /// An open file and its record.
    struct Held {
        Descriptor file;
        std::optional<OriginalRecord> record;
    };
    [[nodiscard]] static Held held(const QString &path);
    [[nodiscard]] QString whyNotHeld(int error) const;

    [[nodiscard]] bool openFolder(bool make, QString &error);
    void leaveFolder(QString &error);
    [[nodiscard]] QString waitForOthers();
    [[nodiscard]] bool takeTurn(PrivateFolder &folder);
    void end();

    [[nodiscard]] bool isOutput() const { return m_danger != Danger::Pattern; }
    [[nodiscard]] bool isLost(SourceState state, bool isDone) const;
    void finishReplaced(EntryResult &result);
    void putBackFile(EntryResult &result, SourceState state);
    void undoGzipSteps(EntryResult &result, SourceState state);
    void tellOf(const PutBackResult &done, EntryResult &result) const;
    void putBackGzipCopy(EntryResult &result);

    /// Leaves the slot in the folder for the next start.
    void leaveSlot()
    {
        m_slot->unlock();
        m_slot.reset();
    }

    const QStringList m_folders;
    const std::atomic<Stop> &m_stop;
    QStringList m_notes; ///< for the next result
    bool m_saidNoLocks = false;
    qsizetype m_folderIndex = 0;
    std::optional<PrivateFolder> m_folder;
    std::optional<OriginalSlot> m_slot;

    // Of the entry being worked on:
    Danger m_danger = Danger::None;
    QString m_file;
    QStringList m_turn;       ///< the locked marks
    Held m_source;            ///< the file in danger
    Held m_gzipCopy;          ///< the one of before
    bool m_isGzipped = false; ///< whether the gzip steps ran over the file in danger
};

} // namespace brevant
