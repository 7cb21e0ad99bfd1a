// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

namespace brevant::test {

/// A real sound server of our own, whose one output leads nowhere but into a recording.
class SoundServer final {
public:
    SoundServer();
    ~SoundServer();

    SoundServer(const SoundServer &) = delete;
    SoundServer &operator=(const SoundServer &) = delete;

    /// Why it does not run; empty if it does.
    [[nodiscard]] QString error() const { return m_error; }

    /// The environment of a program that shall find this server.
    [[nodiscard]] QProcessEnvironment environment() const { return m_environment; }

    [[nodiscard]] qint64 processId() const { return m_server.processId(); }

    /// Starts recording, and returns when the recorder hears the server. False if that takes too long.
    [[nodiscard]] bool startRecording();

    /// Ends the recording: 44,100 mono 16-bit samples a second.
    [[nodiscard]] QByteArray stopRecording();

private:
    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    QString m_error;
    QProcess m_server;
    QProcess m_silence;
    QProcess m_recorder;
};

/// What `sox … stat` measures of a recording after leading and trailing silence has been cut off, by its own
/// names: "Length (seconds)", "Maximum amplitude", … Empty if there is nothing but silence.
[[nodiscard]] QMap<QString, double> soundStatistics(const QByteArray &recording);

/// The same of the sound file in the sources.
[[nodiscard]] QMap<QString, double> doneSoundStatistics();

} // namespace brevant::test
