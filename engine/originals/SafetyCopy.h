// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"
#include "engine/originals/OriginalRecord.h"
#include "engine/originals/OriginalSlot.h"
#include "files/Descriptor.h"
#include "files/PrivateFolder.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <optional>

namespace brevant {

struct EntryResult;
struct PutBackResult;

/// Why a file may be lost while an entry is worked on.
enum class Danger {
    None,
    Replaced,     ///< the source is the output too, as it was meant
    Surprise,     ///< the source is the output too, as somebody changed a setting amid the run
    Pattern,      ///< YUI Compressor 2.4.8 takes the output's path for a pattern, and may write to the source
    AnotherEntry, ///< the output is another entry's source
};

/// Keeps the source of one entry after another safe while it is worked on. A compressor may leave a source
/// empty, cut or overwritten. One that is in danger is copied before, and put back if it is lost afterwards;
/// the copy of one that nobody meant to lose is kept for the user.
///
/// Runs take turns with such a source, from its copy to its end: none may take what another's compressor has
/// half written for the source, or for a loss.
class SafetyCopy final {
public:
    /// The copies are made in the first of the folders that takes them; with no folder, none are made.
    /// `stop` ends a wait for another run; it must outlive this.
    SafetyCopy(const QStringList &folders, const std::atomic<Stop> &stop);

    /// Drops the copy; one that could not be put back stays for the next start of the program.
    ~SafetyCopy();

    SafetyCopy(const SafetyCopy &) = delete;
    SafetyCopy &operator=(const SafetyCopy &) = delete;

    /// To be called before the compressor starts, and before anything is asked of the file: another run may
    /// have its turn with it, and then this waits, even where there is no danger. What such a run has lost is
    /// put back. Returns the reason why the file cannot be kept safe, and then the entry must not be worked
    /// on; else an empty text.
    [[nodiscard]] QString make(const QString &file, Danger danger);

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

    /// To be called when everything is done for the entry: puts the file back if it is lost, and says so in
    /// the result.
    void finish(EntryResult &result, bool gzipWanted);

private:
    /// A file held open, and what it was.
    struct Held {
        Descriptor file;
        std::optional<OriginalRecord> record;
    };
    [[nodiscard]] static Held held(const QString &path);

    [[nodiscard]] bool openFolder(bool make, QString &error);
    void leaveFolder(QString &error);
    [[nodiscard]] QString waitForOthers();
    [[nodiscard]] bool takeTurn(PrivateFolder &folder);
    [[nodiscard]] bool fill();
    void end();
    void setInherited(bool inherited) const;

    [[nodiscard]] bool isOutput() const { return m_danger != Danger::Pattern; }
    [[nodiscard]] bool isLost(const EntryResult &result) const;
    [[nodiscard]] bool mayBeNewer(const EntryResult &result) const;
    void finishReplaced(EntryResult &result);
    void putBackFile(EntryResult &result);
    void undoGzipSteps(EntryResult &result);
    void tellOf(const PutBackResult &done, EntryResult &result) const;
    void putBackGzipCopy(EntryResult &result);
    void leaveSlot();

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
    QStringList m_turn;       ///< what is locked; empty for nothing
    Held m_source;            ///< the file in danger, if it is copied
    Held m_gzipCopy;          ///< the one that was there before
    bool m_isGzipped = false; ///< whether the gzip steps have been at work on the file in danger
};

} // namespace brevant
