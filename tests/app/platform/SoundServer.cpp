// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/platform/SoundServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant::test {

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

/// The file of a socket is there before somebody listens.
bool takesConnections(const QString &path)
{
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    const bool taken =
        ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::close(descriptor);
    return taken;
}

QMap<QString, double> soxStatistics(const QStringList &input, const QByteArray &bytes)
{
    // Cuts what is quieter than 0.1 % at the start, and again at the end with the sound turned round.
    const QStringList cut = words("silence 1 1s 0.1% reverse");
    QProcess sox;
    sox.start(u"sox"_s, input + words("-n") + cut + cut + words("stat"));
    sox.write(bytes);
    sox.closeWriteChannel();
    sox.waitForFinished();

    QMap<QString, double> statistics;
    const QString text = QString::fromUtf8(sox.readAllStandardError());
    static const QRegularExpression line(u"^([^:\n]+):\\s+([-0-9.]+)$"_s,
                                         QRegularExpression::MultilineOption);
    for (auto matches = line.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        statistics.insert(match.captured(1).simplified(), match.captured(2).toDouble());
    }
    return statistics.value(u"Samples read"_s) > 0 ? statistics : QMap<QString, double>();
}

} // namespace

SoundServer::SoundServer() : m_environment(QProcessEnvironment::systemEnvironment())
{
    const QString runtime = m_folder.filePath(u"run"_s);
    const QString socket = m_folder.filePath(u"socket"_s);
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    m_environment.insert(u"HOME"_s, m_folder.path());
    m_environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.path());
    m_environment.insert(u"PULSE_SERVER"_s, u"unix:"_s + socket);

    m_server.setProcessEnvironment(m_environment);
    m_server.setProcessChannelMode(QProcess::MergedChannels);
    QStringList arguments =
        words("-n --daemonize=no --exit-idle-time=-1 --disable-shm=yes --use-pid-file=no");
    arguments << u"-L"_s << u"module-null-sink sink_name=probe rate=44100 channels=1"_s << u"-L"_s
              << u"module-native-protocol-unix socket=%1"_s.arg(socket);
    m_server.start(u"pulseaudio"_s, arguments);
    QElapsedTimer clock;
    clock.start();
    bool isReady = false;
    while (!isReady && m_server.state() != QProcess::NotRunning && clock.elapsed() < 10'000) {
        m_server.waitForReadyRead(20);
        isReady = takesConnections(socket);
    }
    if (!isReady)
        m_error = m_server.errorString() + QLatin1Char('\n') + QString::fromUtf8(m_server.readAll());
}

SoundServer::~SoundServer()
{
    for (QProcess *process : {&m_recorder, &m_silence, &m_server}) {
        process->kill();
        process->waitForFinished();
    }
}

bool SoundServer::startRecording()
{
    // A sink that nobody plays to sleeps, and loses the first 30 ms when it is woken.
    m_silence.setProcessEnvironment(m_environment);
    m_silence.start(u"pacat"_s, words("--playback --raw --latency-msec=30 -d probe /dev/zero"));
    m_recorder.setProcessEnvironment(m_environment);
    m_recorder.start(u"parec"_s,
                     words("--latency-msec=30 --rate=44100 --channels=1 --format=s16le -d probe.monitor"));
    // Half a second of it, for good measure.
    for (QByteArray heard; heard.size() < 44'100; heard += m_recorder.readAllStandardOutput()) {
        if (!m_recorder.waitForReadyRead(10'000))
            return false;
    }
    return true;
}

QByteArray SoundServer::stopRecording()
{
    m_recorder.kill();
    m_recorder.waitForFinished();
    return m_recorder.readAllStandardOutput();
}

QMap<QString, double> soundStatistics(const QByteArray &recording)
{
    return soxStatistics(words("-t raw -r 44100 -e signed -b 16 -c 1 -"), recording);
}

QMap<QString, double> doneSoundStatistics()
{
    return soxStatistics({QStringLiteral(BREVANT_DONE_SOUND)}, {});
}

} // namespace brevant::test
