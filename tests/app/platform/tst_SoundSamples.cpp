// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DoneSound.h"
#include "app/sound/SoundSamples.h"
#include "app/sound/SoundThread.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace brevant;
using namespace std::chrono_literals;

class tst_SoundSamples final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void decodesTheDoneSound();
    void appendsSilence();
    void decodesOtherKinds();
    void damagedFiles_data();
    void damagedFiles();
    void loads();

private:
    [[nodiscard]] static std::vector<float> values(const SoundSamples &samples)
    {
        std::vector<float> result(static_cast<std::size_t>(samples.bytes.size()) / sizeof(float));
        std::memcpy(result.data(), samples.bytes.constData(), result.size() * sizeof(float));
        return result;
    }

    QByteArray m_file;
};

void tst_SoundSamples::initTestCase()
{
    QFile file(QStringLiteral(":/Done.aif"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_file = file.readAll();
}

void tst_SoundSamples::decodesTheDoneSound()
{
    const auto samples = decodedSound(m_file, 0ms);
    QVERIFY(samples);
    QVERIFY(samples->channels >= 1);
    QVERIFY(samples->duration() > 100ms);
    QVERIFY(samples->duration() < 1s);
    const auto numbers = values(*samples);
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

void tst_SoundSamples::appendsSilence()
{
    const auto plain = decodedSound(m_file, 0ms);
    const auto longer = decodedSound(m_file, 250ms);
    QVERIFY(plain && longer);
    QCOMPARE(longer->bytes.size() - plain->bytes.size(),
             qsizetype(sizeof(float)) * plain->channels * (plain->sampleRate / 4));
    QVERIFY(longer->bytes.startsWith(plain->bytes));
    QCOMPARE(longer->bytes.sliced(plain->bytes.size()).count('\0'),
             longer->bytes.size() - plain->bytes.size());
    QCOMPARE(longer->duration(), plain->duration() + 250ms);
}

void tst_SoundSamples::decodesOtherKinds()
{
    // Two 8-bit stereo frames, 8000 a second, as a WAVE file.
    const QByteArray wave =
        QByteArray::fromHex("52494646 28000000 57415645 666d7420 10000000 0100 0200 401f0000"
                            "803e0000 0200 0800 64617461 04000000 80c00040");
    const auto samples = decodedSound(wave, 1ms);
    QVERIFY(samples);
    QCOMPARE(samples->sampleRate, 8000);
    QCOMPARE(samples->channels, 2);
    std::vector<float> expected(4 + 16, 0.0F);
    expected[1] = 0.5F;
    expected[2] = -1.0F;
    expected[3] = -0.5F;
    QCOMPARE(values(*samples), expected);
}

void tst_SoundSamples::damagedFiles_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("body { color: red }");
    QTest::newRow("only its name") << m_file.first(12);
    QTest::newRow("zeros") << QByteArray(1000, '\0');
}

void tst_SoundSamples::damagedFiles()
{
    QFETCH(const QByteArray, file);
    QVERIFY(!decodedSound(file, 250ms));

    // Cut off anywhere, or with any byte of its head turned round, it is a sound or none, and nothing else.
    for (qsizetype length = 0; length < 200; ++length)
        (void)decodedSound(m_file.first(length), 0ms);
    for (qsizetype place = 0; place < 80; ++place) {
        QByteArray turned = m_file;
        turned[place] = static_cast<char>(~turned.at(place));
        (void)decodedSound(turned, 0ms);
    }
}

void tst_SoundSamples::loads()
{
    DoneSound sound;
    SoundThread engine;
    QVERIFY(sound.load());
    QVERIFY(sound.load(QStringLiteral(":/Done.aif")));
    QVERIFY(engine.loadFromData(m_file));
    QVERIFY(!sound.load(QStringLiteral("/nonexistent/Done.aif")));
    QVERIFY(!engine.loadFromData("no sound"));
    sound.play(); // nothing is loaded, nothing happens

    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.aif")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(m_file) == m_file.size());
    file.close();
    QVERIFY(sound.load(file.fileName()));
}

QTEST_GUILESS_MAIN(tst_SoundSamples)
#include "tst_SoundSamples.moc"
