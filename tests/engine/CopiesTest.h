// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/Files.h"
#include "tests/engine/LeftCopy.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace brevant::test {

using namespace Qt::StringLiterals;

inline const QByteArray original("a { b : c ; }");

/// A test of what becomes of a source by the copies that a program has left.
class CopiesTest : public QObject {
protected:
    void setUp()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir(m_folder->path()).mkdir(u"site"_s);
        m_source = path(u"site/a.css"_s);
        m_originals = path(u"originals"_s);
        write(m_source, original);
    }

    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }

    static void write(const QString &path, const QByteArray &bytes)
    {
        QVERIFY2(writeFile(path, bytes), qPrintable(path));
    }

    /// What a program that is killed leaves.
    void leaveCopy(const QString &source = QString()) const
    {
        QVERIFY(LeftCopy(source.isEmpty() ? m_source : source, m_originals).isFilled());
    }

    [[nodiscard]] QStringList leftInFolder() const
    {
        QStringList names =
            QDir(m_originals)
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        names.removeOne(u"locks"_s);
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_source;
    QString m_originals;
};

} // namespace brevant::test
