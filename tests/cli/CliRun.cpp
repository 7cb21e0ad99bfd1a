// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cstdlib>

namespace brevant::test {

namespace {

constexpr int longestRun = 60'000; // milliseconds

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(no output)");
}

/// Where lines are counted, the program of an ordinary user says that it may not write its counts.
QByteArray withoutCounting(const QByteArray &text)
{
    QByteArrayList lines = text.split('\n');
    lines.removeIf([](const QByteArray &line) { return line.startsWith("profiling:"); });
    return lines.join('\n');
}

} // namespace

QString cliProgram()
{
    return QStringLiteral(BREVANT_CLI);
}

QString toolsFolder()
{
    return QFileInfo(cliProgram()).dir().filePath(QStringLiteral("resources/lib"));
}

QString missingCompressors()
{
    for (const char *name : {"yuicompressor-2.4.8.jar", "htmlcompressor-1.5.3.jar"}) {
        const QString path = toolsFolder() + u'/' + QLatin1StringView(name);
        if (!QFileInfo::exists(path))
            return QStringLiteral("%1 is missing: run scripts/fetch-compressors").arg(path);
    }
    return {};
}

QMap<QString, QByteArray> tree(const QString &folder)
{
    QMap<QString, QByteArray> files;
    const QDir top(folder);
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QFileInfo entry(entries.next());
        const QString name = top.relativeFilePath(entry.filePath());
        if (entry.isDir())
            files.insert(name + u'/', QByteArray());
        else
            files.insert(name, contentOf(entry.filePath()));
    }
    return files;
}

QByteArray bareOutput(const QString &source)
{
    const QTemporaryDir folder;
    const QString output = folder.filePath(QStringLiteral("output"));
    const bool isYui = source.endsWith(QLatin1StringView("css")) || source.endsWith(QLatin1StringView("js"));
    QStringList arguments{QStringLiteral("-jar")};
    if (isYui) {
        arguments << QStringLiteral("yuicompressor-2.4.8.jar") << source << QStringLiteral("-o") << output
                  << QStringLiteral("--charset") << QStringLiteral("utf-8");
    } else {
        arguments << QStringLiteral("htmlcompressor-1.5.3.jar") << QStringLiteral("--charset")
                  << QStringLiteral("utf-8") << QStringLiteral("--type") << QStringLiteral("html")
                  << QStringLiteral("--compress-js") << QStringLiteral("--compress-css")
                  << QStringLiteral("--remove-intertag-spaces") << source << QStringLiteral("-o") << output;
    }
    QProcess java;
    java.setWorkingDirectory(toolsFolder());
    java.start(QStringLiteral("/usr/bin/java"), arguments);
    java.waitForFinished(longestRun);
    return contentOf(output);
}

QByteArray decompressed(const QString &file)
{
    QProcess gzip;
    gzip.start(QStringLiteral("/usr/bin/gzip"), {QStringLiteral("-d"), QStringLiteral("-c"), file});
    gzip.waitForFinished(longestRun);
    return gzip.exitCode() == 0 ? gzip.readAllStandardOutput() : QByteArrayLiteral("(not compressed)");
}

QByteArray manyFunctions(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "function f" + number + "(first, second) { var sum = first + second; return sum * " + number +
                "; }\n";
    }
    return text;
}

Sandbox::Sandbox()
{
    const QString top = QFileInfo(m_folder.path()).canonicalFilePath();
    m_home = top + QLatin1StringView("/home");
    m_work = top + QLatin1StringView("/site");
    if (!QDir().mkpath(m_home) || !QDir().mkpath(m_work))
        std::abort();
    environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), m_home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home + QLatin1StringView("/config"));
    environment.insert(QStringLiteral("XDG_STATE_HOME"), m_home + QLatin1StringView("/state"));
    environment.insert(QStringLiteral("TMPDIR"), m_home);
    environment.insert(QStringLiteral("TERM"), QStringLiteral("xterm"));
    environment.insert(QStringLiteral("CLI"), cliProgram());
}

QString Sandbox::path(const QString &name) const
{
    return name.isEmpty() ? m_work : m_work + u'/' + name;
}

QString Sandbox::add(const QString &name, QByteArrayView bytes) const
{
    const QString filePath = path(name);
    QFile file(filePath);
    if (!QDir().mkpath(filePath.first(filePath.lastIndexOf(u'/'))) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes.data(), bytes.size()) != bytes.size())
        std::abort();
    return filePath;
}

bool Sandbox::has(const QString &name) const
{
    return QFileInfo::exists(path(name));
}

QByteArray Sandbox::read(const QString &name) const
{
    return contentOf(path(name));
}

Ended Sandbox::run(const QStringList &arguments) const
{
    return runProgram(cliProgram(), arguments);
}

Ended Sandbox::runProgram(const QString &program, const QStringList &arguments,
                          const std::function<void()> &inChild,
                          const std::function<void(qint64)> &whenStarted) const
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_work);
    process.setStandardInputFile(QProcess::nullDevice());
    if (inChild)
        process.setChildProcessModifier(inChild);
    process.start(program, arguments);
    if (!process.waitForStarted())
        return {};
    if (whenStarted)
        whenStarted(process.processId());
    Ended ended;
    if (!process.waitForFinished(longestRun))
        return ended;
    ended.status = process.exitStatus() == QProcess::CrashExit ? -process.exitCode() : process.exitCode();
    ended.out = process.readAllStandardOutput();
    ended.err = withoutCounting(process.readAllStandardError());
    return ended;
}

Ended Sandbox::runShell(const QString &script, const QStringList &arguments) const
{
    return runProgram(QStringLiteral("/bin/sh"),
                      QStringList{QStringLiteral("-c"), script, QStringLiteral("sh")} + arguments);
}

} // namespace brevant::test
