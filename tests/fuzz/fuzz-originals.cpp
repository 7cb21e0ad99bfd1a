// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The bytes are a file in the folder of the safety copies; and once more as a record whose checksum is right.
#include "engine/OriginalRecord.h"
#include "engine/OriginalSlot.h"
#include "tests/fuzz/Fuzzing.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

using namespace brevant;
using namespace brevant::test;

namespace {

void readRecord(QByteArrayView bytes)
{
    const std::optional<OriginalRecord> record = OriginalRecord::fromBytes(bytes);
    if (!record)
        return;
    require(record->size >= 0 && record->path.startsWith('/') && record->file.startsWith('/'),
            "a record is of a file");
    require(bytes.startsWith(record->toBytes()), "a record is written as it was read");
}

QByteArray withChecksum(QByteArrayView rest)
{
    QByteArray length(sizeof(quint32), Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(rest.size()), length.data());
    return "BVORIG1\n" + length + QCryptographicHash::hash(rest.toByteArray(), QCryptographicHash::Sha256) +
           rest.toByteArray();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder(QStringLiteral("/dev/shm/brevant-fuzz-XXXXXX"));
    const QByteArrayView bytes = bytesOf(data, size);
    readRecord(bytes);
    const QByteArray record = withChecksum(bytes);
    readRecord(record);

    const QString path = folder.filePath(QStringLiteral("a.original"));
    for (const QByteArrayView content : {bytes, QByteArrayView(record)}) {
        QFile file(path);
        require(file.open(QIODevice::WriteOnly) &&
                    file.write(content.data(), content.size()) == content.size(),
                "the input can be written");
        file.close();
        const std::optional<OriginalSlot> slot = OriginalSlot::openLeft(QFile::encodeName(path));
        require(slot.has_value(), "what nobody uses can be opened");
        const auto [state, original] = slot->read();
        require(state != OriginalSlot::Content::Source || original, "a source has a record");
        static_cast<void>(slot->isPuttingBack());
    }
    return 0;
}
