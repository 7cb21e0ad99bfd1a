// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileBytes.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

using namespace brevant;
using namespace brevant::test;

class tst_FileBytes final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsThere()
    {
        const QTemporaryDir folder;
        const QByteArray text = QByteArray(1'000'000, 'x') + "end";
        QVERIFY(writeFile(folder.filePath(u"a"_s), text));
        QCOMPARE(FileBytes::readAll(QFile::encodeName(folder.filePath(u"a"_s))), std::optional(text));
    }

    void refusesWhatMemoryMayNotHold()
    {
        const QTemporaryDir folder;
        const QByteArray path = QFile::encodeName(folder.filePath(u"a"_s));
        QVERIFY(writeFile(folder.filePath(u"a"_s), "x"));
        QCOMPARE(::truncate(path.constData(), FileBytes::longestText + 1), 0); // without a block on the disk
        const auto bytes = FileBytes::readAll(path);
        QCOMPARE(errno, EFBIG);
        QVERIFY(!bytes);
    }
};

BREVANT_TEST(tst_FileBytes, QCoreApplication)
#include "tst_FileBytes.moc"
