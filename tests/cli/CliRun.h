// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

namespace brevant::test {

/// How a program ended and what it printed.
struct Ended {
    int status = -1; ///< exit status; minus the signal's number if a signal ended it
    QByteArray out;
    QByteArray err;
};

/// The built brevant-cli.
[[nodiscard]] QString cliProgram();

/// The folder with the two compressors that the built brevant-cli uses.
[[nodiscard]] QString toolsFolder();

/// Why the tests cannot run the real compressors; empty if they can.
[[nodiscard]] QString missingCompressors();

/// Names, relative to `folder`, and contents of all files below it. A folder is a name with "/" behind it.
[[nodiscard]] QMap<QString, QByteArray> tree(const QString &folder);

/// What the bare compressor makes of `source`, run by hand with no option but the encoding; the source's
/// extension says which. Absent output gives the text of readFile().
[[nodiscard]] QByteArray bareOutput(const QString &source);

/// What gzip makes of a compressed file.
[[nodiscard]] QByteArray decompressed(const QString &file);

/// JavaScript that takes the compressor some time: about 85 bytes for each function.
[[nodiscard]] QByteArray manyFunctions(int count);

/// A temporary folder to work in, with a home folder of its own outside it.
class Sandbox final {
public:
    Sandbox();

    /// The working folder, or what is called `name` in it.
    [[nodiscard]] QString path(const QString &name = QString()) const;
    [[nodiscard]] QString home() const { return m_home; }

    /// Writes a file, with the folders above it; returns its path.
    QString add(const QString &name, QByteArrayView bytes) const;

    [[nodiscard]] bool has(const QString &name) const;
    [[nodiscard]] QByteArray read(const QString &name) const;

    /// The environment of everything that is run here.
    QProcessEnvironment environment;

    /// Runs brevant-cli in the working folder.
    [[nodiscard]] Ended run(const QStringList &arguments) const;

    /// Runs a program in the working folder. `whenStarted` gets its process id.
    [[nodiscard]] Ended runProgram(const QString &program, const QStringList &arguments,
                                   const std::function<void()> &inChild = {},
                                   const std::function<void(qint64)> &whenStarted = {}) const;

    /// Runs lines for /bin/sh in the working folder; $CLI is brevant-cli.
    [[nodiscard]] Ended runShell(const QString &script, const QStringList &arguments = {}) const;

private:
    QTemporaryDir m_folder;
    QString m_home;
    QString m_work;
};

} // namespace brevant::test
