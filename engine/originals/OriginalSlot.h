// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/originals/OriginalRecord.h"
#include "files/Descriptor.h"

#include <QByteArray>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace brevant {

class PrivateFolder;

/// What has become of a source since its record was made.
enum class SourceState {
    Same,      ///< the same content
    Missing,   ///< no file there
    Empty,     ///< no content, and there was some
    Beginning, ///< less than before, and all of that from the beginning of what was there
    Changed,   ///< other content in the same file
    Replaced,  ///< other content in another file of the same name
    Unknown,   ///< cannot be looked at, or is no regular file
};

/// The state as far as it shows without reading: never Beginning, and Changed or Replaced where only the file
/// was touched.
[[nodiscard]] SourceState glanceAtSource(const OriginalRecord &original);

/// A file that holds the content of one source after another, each with its record before it.
///
/// One file for both, kept for a whole run and overwritten in place, so that a source is safe on the disk
/// after one flush of bytes that already have their place there. Its name is locked for as long as the
/// program that made it, or a compressor that outlived it, may change the source: what is in use is never
/// taken for a leftover.
class OriginalSlot final {
public:
    /// What an opened slot holds.
    enum class Content {
        Nothing,    ///< no source: unused, or not yet filled when its program ended
        Source,     ///< a record and the content that belongs to it
        Damaged,    ///< a record, but not its content
        Unknown,    ///< bytes that are no record
        Unreadable, ///< cannot be told, as the disk does not give it; the record, if that was read
    };

    /// A new slot, locked; nothing, with errno set, on failure. The folder must outlive it.
    [[nodiscard]] static std::optional<OriginalSlot> makeIn(PrivateFolder &folder);

    /// The slots left by programs that have ended, each locked by us now. `refused` gets the paths of files
    /// that are named so and might be somebody else's. One in use is waited for while `waitsFor` holds for
    /// its record.
    [[nodiscard]] static std::vector<OriginalSlot>
    leftIn(PrivateFolder &folder, QStringList &refused,
           const std::function<bool(const OriginalRecord &)> &waitsFor = {});

    OriginalSlot(OriginalSlot &&) = default;
    OriginalSlot &operator=(OriginalSlot &&) = default;

    /// Fills the slot with all of the open `source` and waits until it is on the disk. Size and hash of the
    /// record become those of what was copied. False, with errno set, on failure.
    [[nodiscard]] bool fill(int source, OriginalRecord &record);

    /// Forgets the source at once for every reader, though maybe not yet on the disk.
    void clear();

    /// What the slot holds, the record included where there is one.
    [[nodiscard]] std::pair<Content, std::optional<OriginalRecord>> read() const;

    /// Writes the source's content to the beginning of `target`. False, with errno set, on failure.
    [[nodiscard]] bool copyTo(int target, qint64 size) const;

    /// What has become of the source whose content this holds.
    [[nodiscard]] SourceState stateOf(const OriginalRecord &original) const;

    /// The SHA-256 of the content that is there; nothing on failure.
    [[nodiscard]] std::optional<QByteArray> contentHash(qint64 size) const;

    /// Remembers, on the disk, that the source is being written back. False, with errno set, on failure.
    [[nodiscard]] bool markPuttingBack();
    [[nodiscard]] bool isPuttingBack() const;

    /// Makes a plain file of the content, which stays for the user. Its path, or nothing, with errno set, on
    /// failure.
    [[nodiscard]] std::optional<QString> keep(const OriginalRecord &record) const;

    /// Renames the slot, so that nothing looks at it any more. Its new path, or that of before on failure.
    [[nodiscard]] QString setAside() const;

    void remove() const;
    void unlock() const;

    [[nodiscard]] QString path() const;

private:
    OriginalSlot(PrivateFolder &folder, QByteArray name, Descriptor file);

    PrivateFolder *m_folder;
    QByteArray m_name;
    Descriptor m_file;
    bool m_isNew = false; ///< its name is not yet on the disk
};

} // namespace brevant
