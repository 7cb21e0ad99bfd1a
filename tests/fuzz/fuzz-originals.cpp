// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The bytes are a file in the folder of the safety copies; and once more as a record whose checksum is right.
#include "engine/originals/OriginalRecord.h"
#include "engine/originals/OriginalSlot.h"
#include "files/PrivateFolder.h"
#include "tests/fuzz/Fuzzing.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

namespace {

void readRecord(QByteArrayView bytes)
{
    const std::optional<OriginalRecord> record = OriginalRecord::fromBytes(bytes);
    if (!record)
        return;
    require(record->size >= 0 && record->path.startsWith('/') && record->file.startsWith('/'),
            "a record is of a file");
    const std::optional<OriginalRecord> again = OriginalRecord::fromBytes(record->toBytes());
    require(again && again->toBytes() == record->toBytes(), "a record is read as it was written");
}

QByteArray withChecksum(QByteArrayView line)
{
    return QCryptographicHash::hash(line.toByteArray(), QCryptographicHash::Sha256).toHex() + '\n' +
           line.toByteArray() + '\n';
}

QByteArray withOldChecksum(QByteArrayView rest)
{
    QByteArray length(sizeof(quint32), Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(rest.size()), length.data());
    return "BVORIG1\n" + length + QCryptographicHash::hash(rest.toByteArray(), QCryptographicHash::Sha256) +
           rest.toByteArray();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder(u"/dev/shm/brevant-fuzz-XXXXXX"_s);
    const QByteArrayView bytes = bytesOf(data, size);
    const QByteArray record = withChecksum(bytes);
    const QByteArray oldRecord = withOldChecksum(bytes);

    QString error;
    std::optional<PrivateFolder> originals = PrivateFolder::open(folder.path(), error);
    require(originals.has_value(), "the folder is ours");
    for (const QByteArrayView content : {bytes, QByteArrayView(record), QByteArrayView(oldRecord)}) {
        readRecord(content);
        QFile file(folder.filePath(u"a.original"_s));
        require(file.open(QIODevice::WriteOnly) &&
                    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
                    file.write(content.data(), content.size()) == content.size(),
                "the input can be written");
        file.close();
        QStringList refused;
        const std::vector<OriginalSlot> left = OriginalSlot::leftIn(*originals, refused);
        require(left.size() == 1, "what nobody uses can be opened");
        const auto [state, original] = left.front().read();
        require(state != OriginalSlot::Content::Source || original, "a source has a record");
        static_cast<void>(left.front().isPuttingBack());
    }
    return 0;
}
