// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/Pty.h"

#include "tests/cli/CliRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <chrono>
#include <cstdlib>
#include <vector>

#include <csignal>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant::test {

namespace {

constexpr std::chrono::seconds patience{60};

/// An array as execve(2) takes it, over texts that live elsewhere.
std::vector<char *> pointers(QList<QByteArray> &texts)
{
    std::vector<char *> list;
    for (QByteArray &text : texts)
        list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

/// The processes that a thread has started and that run `program` by now.
QList<pid_t> running(pid_t process, const QString &thread, const QString &program)
{
    const QString wanted = QFileInfo(program).canonicalFilePath();
    QList<pid_t> found;
    QFile list(u"/proc/%1/task/%2/children"_s.arg(process).arg(thread));
    if (!list.open(QIODevice::ReadOnly))
        return found;
    for (const QByteArray &child : list.readAll().split(' ')) {
        const QFileInfo link(u"/proc/%1/exe"_s.arg(QString::fromLatin1(child)));
        if (!child.isEmpty() && link.canonicalFilePath() == wanted)
            found.append(child.toInt());
    }
    return found;
}

} // namespace

Pty::Pty(const Sandbox &sandbox, const QStringList &arguments, int columns)
{
    QList<QByteArray> texts{QFile::encodeName(cliProgram())};
    for (const QString &argument : arguments)
        texts.append(QFile::encodeName(argument));
    QList<QByteArray> variables;
    for (const QString &variable : sandbox.environment.toStringList())
        variables.append(QFile::encodeName(variable));
    const std::vector<char *> argumentList = pointers(texts);
    const std::vector<char *> environmentList = pointers(variables);
    const QByteArray folder = QFile::encodeName(sandbox.path());

    winsize size{};
    size.ws_col = static_cast<unsigned short>(columns);
    size.ws_row = 24;
    std::array<char, 64> device{};
    m_child = ::forkpty(&m_master, device.data(), nullptr, &size);
    if (m_child == 0) {
        if (::chdir(folder.constData()) == 0)
            ::execve(argumentList[0], argumentList.data(), environmentList.data());
        ::_exit(127);
    }
    if (m_child < 0)
        std::abort();
    m_device = QString::fromLatin1(device.data());
}

Pty::~Pty()
{
    if (m_child > 0) {
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
    }
    ::close(m_master);
}

void Pty::read(int milliseconds)
{
    pollfd descriptor{m_master, POLLIN, 0};
    if (::poll(&descriptor, 1, milliseconds) <= 0)
        return;
    std::array<char, 4096> buffer{};
    const ssize_t length = ::read(m_master, buffer.data(), buffer.size());
    if (length > 0)
        m_output.append(buffer.data(), length);
    else
        ::usleep(1000); // the other side is closed
}

bool Pty::waitUntil(const std::function<bool()> &condition)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        read(10);
    }
    return true;
}

void Pty::type(QByteArrayView keys) const
{
    if (::write(m_master, keys.data(), static_cast<std::size_t>(keys.size())) != keys.size())
        std::abort();
}

void Pty::stopBackgroundOutput() const
{
    termios modes{};
    ::tcgetattr(m_master, &modes);
    modes.c_lflag |= TOSTOP;
    if (::tcsetattr(m_master, TCSANOW, &modes) != 0)
        std::abort();
}

int Pty::waitForEnd()
{
    int status = 0;
    const bool ended = waitUntil([&] { return ::waitpid(m_child, &status, WNOHANG) == m_child; });
    if (!ended)
        return -1000;
    m_child = -1;
    for (qsizetype length = -1; length != m_output.size();) {
        length = m_output.size();
        read(0);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

pid_t childRunning(pid_t parent, const QString &program)
{
    const QList<pid_t> children = running(parent, QString::number(parent), program);
    return children.isEmpty() ? -1 : children.first();
}

int childrenRunning(pid_t parent, const QString &program)
{
    qsizetype count = 0;
    const QDir threads(u"/proc/%1/task"_s.arg(parent));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        count += running(parent, thread, program).size();
    return static_cast<int>(count);
}

} // namespace brevant::test
