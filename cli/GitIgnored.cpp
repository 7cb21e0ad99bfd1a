// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/GitIgnored.h"

#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QHash>
#include <QProcess>

#include <csignal>
#include <utility>

#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

struct Answer {
    QStringList paths;
    int status = 0;
    QString error; ///< why there is no answer
};

QProcessEnvironment environmentForAnyRepository()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // A hook of git has these, which hold for its own repository, as well as what an alias may have set.
    for (const QString &name : {u"GIT_DIR"_s, u"GIT_WORK_TREE"_s, u"GIT_INDEX_FILE"_s, u"GIT_PREFIX"_s,
                                u"GIT_COMMON_DIR"_s, u"GIT_OBJECT_DIRECTORY"_s, u"GIT_LITERAL_PATHSPECS"_s,
                                u"GIT_GLOB_PATHSPECS"_s, u"GIT_NOGLOB_PATHSPECS"_s, u"GIT_ICASE_PATHSPECS"_s})
        environment.remove(name);
    // A partial clone could name a program that fetches what it lacks. There is no protocol of this name.
    environment.insert(u"GIT_ALLOW_PROTOCOL"_s, u"none"_s);
    environment.insert(u"GIT_NO_LAZY_FETCH"_s, u"1"_s);
    environment.insert(u"LC_ALL"_s, u"C"_s);
    environment.insert(u"GIT_OPTIONAL_LOCKS"_s, u"0"_s);
    return environment;
}

Answer askGit(const QString &folder, const QStringList &question, const QStringList &paths = {})
{
    const QByteArray folderName = RawBytes::encoded(folder);
    QProcess git;
    git.setProcessEnvironment(environmentForAnyRepository());
    // In the child itself, as the folder need not be valid UTF-8. One that is gone makes it end with 127.
    git.setChildProcessModifier([&folderName, parent = ::getpid()] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM); // it may wait for a pipe that is called .gitignore
        if (::getppid() != parent)
            ::_exit(1);
        if (::chdir(folderName.constData()) != 0)
            ::_exit(127);
    });
    // A repository could name a program as its monitor of the file system.
    git.start(u"git"_s, QStringList{u"-c"_s, u"core.fsmonitor=false"_s} + question);
    for (const QString &path : paths)
        git.write(RawBytes::encoded(path) + '\0');
    git.closeWriteChannel();
    Answer answer;
    if (!git.waitForFinished(-1) && git.error() == QProcess::FailedToStart) {
        answer.error = u"--gitignore needs git, which is not installed"_s;
        return answer;
    }
    answer.status = git.exitStatus() == QProcess::NormalExit ? git.exitCode() : -1;
    if (answer.status != 0 && answer.status != 1) {
        const QString said = RawBytes::decoded(git.readAllStandardError()).section(u'\n', 0, 0);
        answer.error =
            u"--gitignore: git cannot tell what it ignores in %1 (%2); leave the option out there"_s.arg(
                folder, said.isEmpty() ? u"it has failed"_s : said);
    }
    for (const QByteArray &path : git.readAllStandardOutput().split('\0'))
        answer.paths.append(RawBytes::decoded(path));
    answer.paths.removeLast(); // what follows the last zero byte
    return answer;
}

} // namespace

QString GitIgnored::askBelow(const QString &folder)
{
    // Below an ignored folder the listing would fail.
    Answer answer = askGit(folder, {u"check-ignore"_s, u"-q"_s, u"--"_s, u"."_s});
    const bool isIgnoredItself = answer.error.isEmpty() && answer.status == 0;
    if (isIgnoredItself)
        m_paths.insert(folder);
    if (isIgnoredItself || !answer.error.isEmpty())
        return answer.error;
    answer = askGit(folder, {u"ls-files"_s, u"--others"_s, u"--ignored"_s, u"--exclude-standard"_s,
                             u"--directory"_s, u"-z"_s});
    for (QString &path : answer.paths) {
        if (path == u"./")
            m_paths.insert(folder);
        if (path.endsWith(u'/'))
            path.chop(1);
        m_paths.insert(PathString::join(folder, path));
    }
    return answer.error;
}

QString GitIgnored::ask(const QString &folder, const QStringList &paths)
{
    // git refuses a path that leads through a link.
    QHash<QString, QStringList> named; // by their paths without
    QHash<QString, QString> realFolders;
    for (const QString &path : paths) {
        const QString pathFolder = PathString::folder(path).toString();
        if (!realFolders.contains(pathFolder))
            realFolders.insert(pathFolder, RawBytes::decoded(realPath(RawBytes::encoded(pathFolder))));
        const QString real = realFolders.value(pathFolder);
        named[real.isEmpty() ? path : PathString::join(real, PathString::lastComponent(path))].append(path);
    }
    const Answer answer = askGit(folder, {u"check-ignore"_s, u"-z"_s, u"--stdin"_s}, named.keys());
    for (const QString &path : answer.paths) {
        const QStringList names = named.value(path);
        m_paths.unite({names.begin(), names.end()});
    }
    return answer.error;
}

bool isRepository(const QString &folder)
{
    return ::access((RawBytes::encoded(folder) + "/.git").constData(), F_OK) == 0;
}

} // namespace brevant
