// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound/SoundMessages.h"

#include <QTest>

#include <atomic>
#include <string>
#include <thread>

#include <pthread.h>

using namespace brevant;

namespace {

std::atomic<int> heard = 0;

void count(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString & /*text*/)
{
    ++heard;
}

} // namespace

class tst_SoundMessages final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hidesOnlyThoseOfSound();
};

void tst_SoundMessages::hidesOnlyThoseOfSound()
{
    const QtMessageHandler before = qInstallMessageHandler(count);
    const auto saidIn = [](const char *name, bool hide) {
        heard = 0;
        std::thread([&] {
            ::pthread_setname_np(::pthread_self(), name);
            if (hide)
                SoundMessages::hideThoseOfThisThread();
            qWarning("a warning");
            qCritical("worse");
        }).join();
        return heard.load();
    };
    const int early = saidIn("threaded-ml", false);
    const int player = saidIn("player", true);
    const int again = saidIn("player", true);
    const int library = saidIn("threaded-ml", false);
    const int other = saidIn("other", false);
    heard = 0;
    qWarning("of the main thread");
    const int main = heard;
    qInstallMessageHandler(before);

    QCOMPARE(early, 2); // nothing is hidden before the first sound
    QCOMPARE(player, 0);
    QCOMPARE(again, 0);
    QCOMPARE(library, 0);
    QCOMPARE(other, 2);
    QCOMPARE(main, 1);
}

QTEST_GUILESS_MAIN(tst_SoundMessages)
#include "tst_SoundMessages.moc"
