// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/originals/OriginalRecord.h"
#include "files/FileBytes.h"
#include "files/PrivateFolder.h"

#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

namespace brevant {

/// What has become of a source since its record was made.
enum class SourceState {
    Same,      ///< the same content
    Missing,   ///< no file there
    Empty,     ///< no content, where there was some
    Beginning, ///< a beginning of the content of before
    Changed,   ///< other content in the same file
    Replaced,  ///< other content in another file of the same name
    Unknown,   ///< unreadable, or no regular file
};

/// The state as far as it shows without reading the content: never Beginning, and Changed or Replaced also if
/// the file was only touched.
[[nodiscard]] SourceState glanceAtSource(const OriginalRecord &original);

/// A file that holds the record and the content of one source after another.
///
/// It is overwritten in place for a whole run, so that one flush of blocks that are already allocated makes a
/// source safe. Its name stays locked while the program that made it, or a compressor that outlived it, may
/// change the source, so that nobody takes it for a leftover.
class OriginalSlot final {
public:
    /// What a slot holds.
    enum class Content {
        Nothing,    ///< no source: unused, or not filled when its program ended
        Source,     ///< a record and its content
        Damaged,    ///< a record, but other content
        Unknown,    ///< bytes that are no record
        Unreadable, ///< the disk does not give it; there may be a record
    };

    /// A new slot, locked; nothing, with errno set, on failure. The folder must outlive it.
    [[nodiscard]] static std::optional<OriginalSlot> makeIn(PrivateFolder &folder);

    /// The slots left by programs that have ended, now locked by us. `refused` gets the paths of those that
    /// might be somebody else's. A slot in use is waited for as long as `waitsFor` its record is true.
    [[nodiscard]] static std::vector<OriginalSlot>
    leftIn(PrivateFolder &folder, QStringList &refused,
           const std::function<bool(const OriginalRecord &)> &waitsFor = {});

    /// Copies the whole of the open `source` and flushes it to the disk. Size and hash of the record become
    /// those of the copy. False, with errno set, on failure.
    [[nodiscard]] bool fill(int source, OriginalRecord &record);

    /// Drops the source for every reader, though a power cut may bring it back.
    void clear();

    /// What the slot holds, and its record if there is one.
    [[nodiscard]] std::pair<Content, std::optional<OriginalRecord>> read() const;

    /// Writes the content to the beginning of `target`. False, with errno set, on failure.
    [[nodiscard]] bool copyTo(int target, qint64 size) const
    {
        return FileBytes::copyAll(m_file.number(), contentAt, target, 0, size);
    }

    /// What has become of the source of this content.
    [[nodiscard]] SourceState stateOf(const OriginalRecord &original) const;

    /// The SHA-256 of the first `size` bytes of the content; nothing on failure.
    [[nodiscard]] std::optional<QByteArray> contentHash(qint64 size) const
    {
        return FileBytes::hash(m_file.number(), contentAt, size);
    }

    /// Marks durably that the source is being written back. False, with errno set, on failure.
    [[nodiscard]] bool markPuttingBack();
    [[nodiscard]] bool isPuttingBack() const;

    /// Copies the content to a plain file for the user. Its path, or nothing, with errno set, on failure.
    [[nodiscard]] std::optional<QString> keep(const OriginalRecord &record) const
    {
        return m_folder->keep(m_file.number(), contentAt, record.size, record.path);
    }

    /// Renames the slot so that nothing takes it for one any more. Returns its path afterwards.
    [[nodiscard]] QString setAside() const;

    void remove() const { static_cast<void>(m_folder->removeFile(m_name)); }
    void unlock() const { m_folder->unlock(m_name); }
    [[nodiscard]] QString path() const { return m_folder->pathOf(m_name); }

private:
    OriginalSlot(PrivateFolder &folder, QByteArray name, Descriptor file)
        : m_folder(&folder), m_name(std::move(name)), m_file(std::move(file))
    {
    }

    /// Where the content begins, after the record and one flag byte: at a multiple of every usual block size,
    /// so that a file system can share the blocks of the source.
    static constexpr qint64 contentAt = 65536;

    PrivateFolder *m_folder;
    QByteArray m_name;
    Descriptor m_file;
    bool m_isNew = false; ///< its name is not yet on the disk
};

} // namespace brevant
