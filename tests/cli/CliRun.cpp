// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRun.h"

#include "tests/Files.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace brevant::test {

namespace {

constexpr int longestRun = 60'000; // milliseconds

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
    return QFileInfo(cliProgram()).dir().filePath(u"resources/lib"_s);
}

QString missingCompressors()
{
    for (const char *name : {"yuicompressor-2.4.8.jar", "htmlcompressor-1.5.3.jar"}) {
        const QString path = toolsFolder() + u'/' + QLatin1StringView(name);
        if (!QFileInfo::exists(path))
            return u"%1 is missing: run scripts/fetch-compressors"_s.arg(path);
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
            files.insert(name, readFile(entry.filePath()));
    }
    return files;
}

QByteArray bareOutput(const QString &source)
{
    const QTemporaryDir folder;
    const QString output = folder.filePath(u"output"_s);
    const bool isYui = source.endsWith("css"_L1) || source.endsWith("js"_L1);
    QStringList arguments{u"-jar"_s};
    if (isYui) {
        arguments << u"yuicompressor-2.4.8.jar"_s << source << u"-o"_s << output << u"--charset"_s
                  << u"utf-8"_s;
    } else {
        arguments << u"htmlcompressor-1.5.3.jar"_s << u"--charset"_s << u"utf-8"_s << u"--type"_s << u"html"_s
                  << u"--compress-js"_s << u"--compress-css"_s << u"--remove-intertag-spaces"_s << source
                  << u"-o"_s << output;
    }
    QProcess java;
    java.setWorkingDirectory(toolsFolder());
    java.start(u"/usr/bin/java"_s, arguments);
    java.waitForFinished(longestRun);
    return readFile(output);
}

QByteArray decompressed(const QString &file)
{
    QProcess gzip;
    gzip.start(u"/usr/bin/gzip"_s, {u"-d"_s, u"-c"_s, file});
    gzip.waitForFinished(longestRun);
    return gzip.exitCode() == 0 ? gzip.readAllStandardOutput() : "(not compressed)"_ba;
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
    m_home = top + "/home"_L1;
    m_work = top + "/site"_L1;
    if (!QDir().mkpath(m_home) || !QDir().mkpath(m_work))
        std::abort();
    environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"HOME"_s, m_home);
    environment.insert(u"XDG_CONFIG_HOME"_s, m_home + "/config"_L1);
    environment.insert(u"XDG_STATE_HOME"_s, m_home + "/state"_L1);
    environment.insert(u"TMPDIR"_s, m_home);
    environment.insert(u"TERM"_s, u"xterm"_s);
    for (const QString &name : {u"NO_COLOR"_s, u"CLICOLOR_FORCE"_s})
        environment.remove(name);
    environment.insert(u"CLI"_s, cliProgram());
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
    return readFile(path(name));
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
    return runProgram(u"/bin/sh"_s, QStringList{u"-c"_s, script, u"sh"_s} + arguments);
}

} // namespace brevant::test
