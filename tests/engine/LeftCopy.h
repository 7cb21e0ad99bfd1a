// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/originals/OriginalRecord.h"
#include "engine/originals/OriginalSlot.h"
#include "files/PrivateFolder.h"

#include <QFile>

#include <memory>

#include <fcntl.h>

namespace brevant::test {

/// A safety copy in use; what a program that is killed leaves, once it is gone.
class LeftCopy final {
public:
    LeftCopy(const QString &source, const QString &originals)
    {
        QString error;
        m_folder = PrivateFolder::open(originals, error, true);
        const QByteArray name = QFile::encodeName(source);
        const Descriptor file(::open(name.constData(), O_RDONLY | O_CLOEXEC));
        std::optional<OriginalRecord> record = OriginalRecord::of(name, file.number());
        if (m_folder)
            m_slot = OriginalSlot::makeIn(*m_folder);
        m_isFilled = record && m_slot && m_slot->fill(file.number(), *record);
    }

    [[nodiscard]] bool isFilled() const { return m_isFilled; }
    [[nodiscard]] OriginalSlot &slot() { return *m_slot; }

private:
    std::optional<PrivateFolder> m_folder;
    std::optional<OriginalSlot> m_slot;
    bool m_isFilled = false;
};

} // namespace brevant::test
