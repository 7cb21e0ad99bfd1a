// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Stop.h"
#include "engine/originals/PutBack.h"
#include "tests/TestClass.h"
#include "tests/engine/CopiesTest.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QRandomGenerator>
#include <QtEndian>

using namespace brevant;
using namespace brevant::test;

/// What is made of records, whole and damaged, old and new.
class tst_OriginalRecords final : public CopiesTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }

    void damagedCopies()
    {
        // Any one byte of the record or the content: the source is put back as it was, or not at all.
        leaveCopy();
        const QString name = leftInFolder().first();
        const QByteArray whole = readFile(m_originals + u'/' + name);
        write(m_source, QByteArray());
        const qsizetype content = whole.indexOf(original);
        QVERIFY(content > 0);
        const qsizetype record = OriginalRecord::fromBytes(whole).value().toBytes().size();
        QList<qsizetype> places{content, content + original.size() - 1};
        for (qsizetype place = 0; place < record + 20; ++place)
            places.append(place);
        for (const qsizetype place : places) {
            QByteArray changed = whole;
            changed[place] = static_cast<char>(changed[place] ^ (1 << (place % 8)));
            const bool isBetween = place >= record && place < content;
            QCOMPARE(settles(name, changed), isBetween ? 1 : 0);
        }
    }

    void shortenedAndRandomCopies()
    {
        leaveCopy();
        const QString name = leftInFolder().first();
        const QByteArray whole = readFile(m_originals + u'/' + name);
        write(m_source, QByteArray());
        for (const qsizetype size : {1, 8, 12, 44, 200, 4096, 65536, 65540})
            QCOMPARE(settles(name, whole.first(size)), 0);
        QRandomGenerator random(1);
        for (int round = 0; round < 200; ++round) {
            QByteArray bytes(random.bounded(1, 70'000), Qt::Uninitialized);
            for (char &byte : bytes)
                byte = static_cast<char>(random.bounded(256));
            if (round % 2 == 0)
                bytes.replace(0, 8, "BVORIG1\n");
            QCOMPARE(settles(name, bytes), 0);
        }
    }

    void aTornCopyOfAnUntouchedSource()
    {
        leaveCopy();
        const QString name = leftInFolder().first();
        QByteArray torn = readFile(m_originals + u'/' + name);
        torn[torn.indexOf(original)] = '\0';
        write(m_originals + u'/' + name, torn);
        QCOMPARE(putBackAfterInterruption({m_originals}), QStringList());
        QCOMPARE(leftInFolder(), QStringList());
        QCOMPARE(readFile(m_source), original);
    }

    void recordsAndBytes()
    {
        const struct stat status = statusOf(m_source);
        const Descriptor file(::open(QFile::encodeName(m_source).constData(), O_RDONLY | O_CLOEXEC));
        const std::optional<OriginalRecord> record =
            OriginalRecord::of(QFile::encodeName(m_source), file.number());
        QVERIFY(record);
        const std::optional<OriginalRecord> read = OriginalRecord::fromBytes(record->toBytes() + "more");
        QVERIFY(read);
        QCOMPARE(read->toBytes(), record->toBytes());
        QVERIFY(read->isUntouched(status));
        for (const char *path : {"", "a.css", "/w/a.css\0x"}) {
            OriginalRecord other = *record;
            other.file = QByteArray(path, path[0] == '/' ? 10 : qsizetype(qstrlen(path)));
            QVERIFY(!OriginalRecord::fromBytes(other.toBytes()));
        }
    }

    void recordsOfVersion100()
    {
        const QByteArray source = QFile::encodeName(m_source);
        const QByteArray hash = QCryptographicHash::hash(original, QCryptographicHash::Sha256);
        QByteArray fields;
        QDataStream stream(&fields, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_6_4);
        stream << source << source << "other.css"_ba << hash << qint64(original.size()) << quint64(1)
               << quint64(2) << quint32(04640) << quint32(3) << quint32(4);
        for (const qint64 part : {5, 6, 7, 8, 9, 10})
            stream << part;
        QByteArray length(4, '\0');
        qToLittleEndian(quint32(fields.size()), length.data());
        const QByteArray bytes =
            "BVORIG1\n" + length + QCryptographicHash::hash(fields, QCryptographicHash::Sha256) + fields;

        const std::optional<OriginalRecord> record = OriginalRecord::fromBytes(bytes + "more");
        QVERIFY(record);
        QCOMPARE(record->path, source);
        QCOMPARE(record->file, source);
        QCOMPARE(record->linkText, "other.css"_ba);
        QCOMPARE(record->hash, hash);
        QCOMPARE(record->size, qint64(original.size()));
        QCOMPARE(record->device, quint64(1));
        QCOMPARE(record->inode, quint64(2));
        QCOMPARE(record->mode, quint32(0640));
        QCOMPARE(record->owner, quint32(3));
        QCOMPARE(record->group, quint32(4));
        QCOMPARE(record->accessed.tv_sec, 5);
        QCOMPARE(record->modified.tv_nsec, 8);
        QCOMPARE(record->changed.tv_sec, 9);
        QCOMPARE(record->toBytes(), OriginalRecord::fromBytes(record->toBytes()).value().toBytes());
        QVERIFY(!OriginalRecord::fromBytes(bytes.chopped(1)));

        // As that version left it: the record at the beginning, the content further on.
        QDir().mkdir(m_originals);
        write(m_source, QByteArray());
        QCOMPARE(settles(u"1-old.original"_s, bytes.leftJustified(65536, '\0') + original), 1);
    }

    void anInodeThatIsUsedAgain_data()
    {
        QTest::addColumn<bool>("isYounger"); // than the record
        QTest::newRow("a new file") << true;
        QTest::newRow("another name of the source") << false;
    }

    void anInodeThatIsUsedAgain()
    {
        QFETCH(bool, isYounger);
        // The source is lost with its folder; a file elsewhere has the inode that it had.
        const QString other = path(u"site/b.css"_s);
        write(other, "other");
        const struct stat status = statusOf(other);
        QVERIFY(QDir(path(u"site"_s)).mkdir(u"sub"_s));
        const QString gone = path(u"site/sub/gone.css"_s);
        write(gone, original);
        const QByteArray name = QFile::encodeName(gone);
        const Descriptor file = openFile(name, O_RDONLY);
        std::optional<OriginalRecord> record = OriginalRecord::of(name, file.number());
        QVERIFY(record);
        record->device = status.st_dev;
        record->inode = status.st_ino;
        record->changed.tv_sec += isYounger ? -1000 : 1000;
        QString error;
        {
            std::optional<PrivateFolder> folder = PrivateFolder::open(m_originals, error, true);
            QVERIFY(folder);
            std::optional<OriginalSlot> slot = OriginalSlot::makeIn(*folder);
            QVERIFY(slot && slot->fill(file.number(), *record));
        }
        QVERIFY(QDir(path(u"site/sub"_s)).removeRecursively());
        struct statx born {};
        if (::statx(AT_FDCWD, QFile::encodeName(other).constData(), 0, STATX_BTIME, &born) != 0 ||
            (born.stx_mask & STATX_BTIME) == 0)
            QSKIP("files have no time of birth here");
        QStringList sentences;
        QCOMPARE(putBackLeftOf(other, {m_originals}, Stop::No, sentences), isYounger);
        QCOMPARE(sentences.size(), isYounger ? 0 : 1);
        QCOMPARE(readFile(other), "other"_ba);
    }

private:
    /// Starts with these bytes as the only copy; whether the source was put back. It is empty again then.
    int settles(const QString &name, const QByteArray &bytes) const
    {
        QDir(m_originals).removeRecursively();
        QDir().mkdir(m_originals);
        write(m_originals + u'/' + name, bytes);
        QFile::setPermissions(m_originals + u'/' + name, QFile::ReadOwner | QFile::WriteOwner);
        static_cast<void>(putBackAfterInterruption({m_originals}));
        const QByteArray now = readFile(m_source);
        if (!now.isEmpty() && now != original)
            QTest::qFail(now.constData(), __FILE__, __LINE__);
        if (QDir(path(u"site"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot) !=
                QStringList{u"a.css"_s} ||
            QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size() !=
                2)
            QTest::qFail("a file was made elsewhere", __FILE__, __LINE__);
        write(m_source, QByteArray());
        return now == original ? 1 : 0;
    }
};

BREVANT_TEST(tst_OriginalRecords, QCoreApplication)
#include "tst_OriginalRecords.moc"
