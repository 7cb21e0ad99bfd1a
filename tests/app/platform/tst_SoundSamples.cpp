// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DoneSound.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace brevant;
using namespace Qt::StringLiterals;

class tst_SoundSamples final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_file = test::readFile(u":/Done.aif"_s); }

    void decodesTheDoneSound()
    {
        const auto samples = decoded(m_file);
        QVERIFY(samples);
        QVERIFY(samples->channels >= 1);
        const std::vector<float> &numbers = samples->values;
        const double seconds = static_cast<double>(numbers.size()) / samples->channels / samples->sampleRate;
        QVERIFY(seconds > 0.1);
        QVERIFY(seconds < 1.0);
        const auto [low, high] = std::minmax_element(numbers.cbegin(), numbers.cend());
        QVERIFY(*high > 0.1F && *high <= 1.0F);
        QVERIFY(*low < -0.1F && *low >= -1.0F);

        // The file ends with its 16-bit samples, the most significant byte first.
        const auto count = static_cast<qsizetype>(numbers.size());
        const QByteArray stored = m_file.last(count * 2);
        for (qsizetype i = 0; i < count; ++i) {
            const int value =
                static_cast<signed char>(stored.at(2 * i)) * 256 + static_cast<uchar>(stored.at(2 * i + 1));
            QCOMPARE(std::lround(numbers[static_cast<std::size_t>(i)] * 32768.0F), value);
        }
    }

    void decodesOtherKinds()
    {
        // Two 8-bit stereo frames, 8000 a second, as a WAVE file.
        const QByteArray wave =
            QByteArray::fromHex("52494646 28000000 57415645 666d7420 10000000 0100 0200 401f0000"
                                "803e0000 0200 0800 64617461 04000000 80c00040");
        const auto samples = decoded(wave);
        QVERIFY(samples);
        QCOMPARE(samples->sampleRate, 8000);
        QCOMPARE(samples->channels, 2);
        QCOMPARE(samples->values, (std::vector<float>{0.0F, 0.5F, -1.0F, -0.5F}));
    }

    void damagedFiles_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("body { color: red }");
        QTest::newRow("only its name") << m_file.first(12);
        QTest::newRow("zeros") << QByteArray(1000, '\0');
    }

    void damagedFiles()
    {
        QFETCH(const QByteArray, file);
        QVERIFY(!decoded(file));

        // Cut off anywhere, or with any byte of its head turned round, it is a sound or none, and nothing
        // else.
        for (qsizetype length = 0; length < 200; ++length)
            (void)decoded(m_file.first(length));
        for (qsizetype place = 0; place < 80; ++place) {
            QByteArray turned = m_file;
            turned[place] = static_cast<char>(~turned.at(place));
            (void)decoded(turned);
        }
    }

    void loads()
    {
        const QTemporaryDir folder;
        const auto file = [&folder](const QByteArray &content) {
            QTemporaryFile kept(folder.filePath(u"XXXXXX.aif"_s));
            kept.setAutoRemove(false);
            return kept.open() && kept.write(content) == content.size() ? kept.fileName() : QString();
        };
        DoneSound sound;
        QVERIFY(sound.load());
        QVERIFY(sound.load(u":/Done.aif"_s));
        QVERIFY(!sound.load(u"/nonexistent/Done.aif"_s));
        sound.play(); // nothing is loaded, nothing happens
        QVERIFY(sound.load(file(m_file)));
        QVERIFY(!sound.load(file("no sound")));
    }

private:
    [[nodiscard]] static std::optional<SoundSamples> decoded(QByteArray bytes)
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        return decodedSound(buffer);
    }

    QByteArray m_file;
};

BREVANT_TEST(tst_SoundSamples, QCoreApplication)
#include "tst_SoundSamples.moc"
