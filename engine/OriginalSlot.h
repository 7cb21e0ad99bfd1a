// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/OriginalRecord.h"
#include "settings/Descriptor.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace brevant {

/// A file that holds the content of one source after another, each with its record before it.
///
/// One file for both, kept for a whole run and overwritten in place, so that a source is safe on the disk
/// after one flush of bytes that already have their place there. The file is locked for as long as this
/// process, or a child that inherited it, has it open: what is in use is never taken for a leftover.
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

    /// A new slot in a folder that is there; nothing, with errno set, on failure.
    [[nodiscard]] static std::optional<OriginalSlot> makeIn(const QByteArray &folder);

    /// A slot left by a program that has ended; nothing if it is none, gone, or in use.
    [[nodiscard]] static std::optional<OriginalSlot> openLeft(const QByteArray &path);

    /// Whether a file of this name in the folder is a slot.
    [[nodiscard]] static bool isName(const QByteArray &name);

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

    /// The SHA-256 of the content that is there; nothing on failure.
    [[nodiscard]] std::optional<QByteArray> contentHash(qint64 size) const;

    /// Remembers, on the disk, that the source is being written back. False on failure.
    [[nodiscard]] bool markPuttingBack();
    [[nodiscard]] bool isPuttingBack() const;

    /// Removes the file.
    void remove();

    /// Whether children started from now on hold the lock too.
    void setInherited(bool inherited);

    [[nodiscard]] const QByteArray &path() const { return m_path; }

private:
    OriginalSlot(QByteArray path, Descriptor file);

    QByteArray m_path;
    Descriptor m_file;
    bool m_isNew = false; ///< its name is not yet on the disk
};

} // namespace brevant
