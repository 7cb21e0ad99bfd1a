// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Tools.h"
#include "engine/originals/OriginalRecord.h"
#include "files/PrivateFolder.h"

#include <QByteArray>
#include <QSet>
#include <QStringList>

#include <chrono>
#include <list>
#include <mutex>
#include <optional>

namespace brevant {

struct EntryResult;
class OriginalSlot;

/// One kept source, open and looked over.
struct KeptCopy {
    PrivateFolder folder;
    QByteArray name;
    Descriptor content;
    OriginalRecord record;

    /// That of `source` with the content at `path`; nothing if it is gone, damaged, or that of another
    /// source, with the reason in `error`.
    [[nodiscard]] static std::optional<KeptCopy> open(const QString &source, const QString &path,
                                                      QString &error);
    void remove() const;
};

/// The sources that runs have replaced by their outputs, kept for the user: each as two files in a folder of
/// the safety copies, NAME.source.kept with the content and NAME.record.kept with the record of it. A start
/// takes neither for a safety copy.
///
/// What is kept goes when the next run begins, or after seven days, but not while it is in use. That of
/// another program is left alone while it runs. Safe in any thread.
class KeptOriginals final {
public:
    static constexpr std::chrono::hours longest{7 * 24};

    /// Takes the folders of `tools`, which must outlive this, and at most `room` bytes there.
    explicit KeptOriginals(const Tools &tools, qint64 room = 500'000'000);

    /// A run, or a putting back: what it has to do with stays as long as this lives.
    class Use {
    public:
        explicit Use(KeptOriginals &originals, const QStringList &paths = {});
        ~Use();
        Use(const Use &) = delete;
        Use &operator=(const Use &) = delete;

        /// Keeps the source that is in the slot, if it was replaced by another content. Completes the result
        /// with the path of its content, or why it is not kept.
        void keep(const OriginalSlot &slot, OriginalRecord record, EntryResult &result);

    private:
        KeptOriginals &m_originals;
        QSet<QString> m_paths;
    };

    /// To be called when a run begins.
    void dropForRun();

    /// Drops what is older than seven days.
    void dropOld();

    /// Whether a content is still there.
    [[nodiscard]] static bool isThere(const QString &path);

private:
    [[nodiscard]] PrivateFolder *folderAt(const QString &path, QString &error);
    [[nodiscard]] std::optional<QString> keep(const OriginalSlot &slot, const OriginalRecord &record,
                                              QString &why);
    void drop(bool onlyOld);
    void dropIn(PrivateFolder &folder, bool onlyOld);

    const Tools &m_tools;
    const qint64 m_room;
    const QByteArray m_owner; ///< of the names of our files; locked while we live
    std::mutex m_mutex;       ///< guards all below, and the files
    QSet<QString> m_used;
    qint64 m_size = 0; ///< of all that is kept
    std::list<PrivateFolder> m_folders;
};

} // namespace brevant
