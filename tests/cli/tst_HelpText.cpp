// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"
#include "cli/OptionTable.h"
#include "engine/Tools.h"
#include "settings/SettingsKeys.h"
#include "tests/Files.h"
#include "tests/TestClass.h"

#include <QHash>
#include <QRegularExpression>
#include <QTest>

using namespace brevant;
using namespace brevant::test;
using namespace Qt::StringLiterals;

/// What --help and --version print.
class tst_HelpText final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void helpNamesEverything()
    {
        const QString help = helpText();
        const QStringList usages{u"--exclude GLOB"_s,
                                 u"--include GLOB"_s,
                                 u"--gitignore"_s,
                                 u"--files-from FILE"_s,
                                 u"-0"_s,
                                 u"--sort"_s,
                                 u"--shard K/N"_s,
                                 u"--changed"_s,
                                 u"--also KINDS"_s,
                                 u"--all"_s,
                                 u"--list"_s,
                                 u"--print0"_s,
                                 u"--out-dir DIR"_s,
                                 u"--copy-rest"_s,
                                 u"--keep-times"_s,
                                 u"--suffix TEXT"_s,
                                 u"--no-suffix"_s,
                                 u"--gzip"_s,
                                 u"--brotli"_s,
                                 u"--source-maps"_s,
                                 u"--stdin KIND"_s,
                                 u"--compressors FAMILY"_s,
                                 u"--dry-run"_s,
                                 u"--set KEY=VALUE"_s,
                                 u"--settings FILE"_s,
                                 u"--no-user-settings"_s,
                                 u"--profile NAME"_s,
                                 u"--no-project"_s,
                                 u"--show-settings"_s,
                                 u"--init"_s,
                                 u"--jobs N"_s,
                                 u"--timeout SECONDS"_s,
                                 u"--fail-fast"_s,
                                 u"--watch"_s,
                                 u"--delete"_s,
                                 u"--check"_s,
                                 u"--report FILE"_s,
                                 u"--report-format FORMAT"_s,
                                 u"--quiet"_s,
                                 u"--version"_s,
                                 u"--help"_s};
        QStringList shown;
        for (const Option &option : allOptions())
            shown << option.usage.toString();
        QCOMPARE(shown, usages);
        for (const QString &usage : usages)
            QVERIFY2(help.contains(u"\n  "_s + usage), qPrintable(usage));
        for (const QString &title :
             {u"\n\nWhich files:\n"_s, u"\n\nWhere to:\n"_s, u"\n\nHow:\n"_s, u"\n\nReports:\n"_s})
            QVERIFY2(help.contains(title), qPrintable(title));
        for (const SettingKey &setting : allSettingKeys) {
            const bool isOffered = setting.key != keepOriginalsCheckerKeyString;
            QVERIFY2(help.contains(u"\n  "_s + setting.key + u"="_s) == isOffered, setting.key.data());
        }
        for (const QString &sample : {u"suffixKeyString=.min\n"_s, u"suffixSwitcherKeyString=true\n"_s,
                                      u"gzipCheckerKeyString=false\n"_s, u"lineBreakKeyString=500\n"_s,
                                      u"brevant-cli [options] PATH...\n"_s, u"130"_s})
            QVERIFY2(help.contains(sample), qPrintable(sample));
        QVERIFY(help.endsWith(u'\n'));
    }

    void helpShowsOptionsThatExist()
    {
        const QHash<QString, QString> samples{
            {u"N"_s, u"2"_s},           {u"K/N"_s, u"1/2"_s},
            {u"KIND"_s, u"css"_s},      {u"KINDS"_s, u"mjs"_s},
            {u"FAMILY"_s, u"modern"_s}, {u"FORMAT"_s, u"junit"_s},
            {u"SECONDS"_s, u"9"_s},     {u"KEY=VALUE"_s, u"suffixKeyString=x"_s}};
        for (const Option &option : allOptions()) {
            QStringList arguments{option.name().toString()};
            if (!option.valueName().isEmpty())
                arguments << samples.value(option.valueName().toString(), u"f"_s);
            if (!option.needs.isEmpty() && option.needs != aRun)
                arguments << option.needs.toString() +
                                 (option.needs == u"--list" || option.needs == u"--watch" ? QString()
                                                                                          : u"=f"_s);
            if (option.name() != u"--stdin" && option.name() != u"--init")
                arguments << u"a"_s;
            QCOMPARE(parseCommandLine(arguments).error, QString());
        }
    }

    void version()
    {
        QVERIFY2(QRegularExpression(u"^brevant-cli \\d+\\.\\d+\\.\\d+\n$"_s).match(versionText()).hasMatch(),
                 qPrintable(versionText()));
        const QTemporaryDir folder;
        Tools tools;
        tools.folder = tools.programs = folder.path();
        QVERIFY(writeFile(folder.filePath(u"esbuild"_s), ""));
        QVERIFY(writeFile(folder.filePath(u"htmlcompressor-1.5.3.jar"_s), ""));
        QCOMPARE(tools.versions(), u"YUI Compressor 2.4.8 (missing)\nhtmlcompressor 1.5.3\n"
                                   "esbuild 0.28.2\nminify 2.24.8 (missing)\n"_s);
    }
};

BREVANT_TEST(tst_HelpText, QCoreApplication)
#include "tst_HelpText.moc"
