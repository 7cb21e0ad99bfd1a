// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSet>
#include <QString>

namespace brevant {

class FileQueue;

/// Knows the files of a queue by what the disk says, so that links and other spellings of a name do not
/// matter.
class ListedFiles final {
public:
    explicit ListedFiles(const FileQueue &queue) : m_queue(queue) {}

    /// Whether there is a file of that path, and it is in the queue under any name.
    [[nodiscard]] bool contains(const QString &path);

private:
    const FileQueue &m_queue;
    quint64 m_revision = 0; ///< of the queue, that the marks are of
    QSet<QString> m_marks;
};

} // namespace brevant
