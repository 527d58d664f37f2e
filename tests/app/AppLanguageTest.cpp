#include "app/AppLanguage.h"
#include "base/Defaults.h"

#include "support/Printers.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;

TEST(AppLanguage, SevenLanguagesInOrder) {
    QStringList codes;
    for (const auto& language : AppLanguage::all()) codes << language.code;
    EXPECT_EQ(codes, (QStringList{"en", "tr", "de", "fr", "es", "ja", "zh-Hans"}));
    EXPECT_EQ(AppLanguage::all()[1].nativeName, QStringLiteral("Türkçe"));
}

TEST(AppLanguage, MapsLocaleLanguagesOntoOurs) {
    struct Case {
        QStringList ui;
        const char* language;
    } cases[] = {
        {{"tr-TR"}, "tr"},
        {{"de_AT", "en-US"}, "de"},
        {{"pt-BR", "fr-CA"}, "fr"},
        {{"zh-Hans-CN"}, "zh-Hans"},
        {{"zh_CN"}, "zh-Hans"},
        {{"zh-TW", "ja-JP"}, "ja"},
        {{"zh-Hant"}, "en"},
        {{"ES"}, "es"},
        {{"pt", "ru"}, "en"},
        {{}, "en"},
    };
    for (const auto& c : cases) EXPECT_EQ(AppLanguage::languageFor(c.ui), QString::fromUtf8(c.language)) << c.ui.join(',').toStdString();
}

TEST(AppLanguage, OverrideIsStoredAsAOneElementList) {
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("Vuro.conf"));
    Defaults defaults(file, {});
    AppLanguage language(defaults);
    EXPECT_FALSE(language.override());
    EXPECT_EQ(language.effective(), AppLanguage::systemLanguage());

    language.setOverride(QStringLiteral("ja"));
    EXPECT_EQ(defaults.stringList(QStringLiteral("AppleLanguages")), QStringList{"ja"});
    EXPECT_EQ(language.effective(), QStringLiteral("ja"));
    defaults.sync();
    Defaults reread(file, {});
    EXPECT_EQ(AppLanguage(reread).override(), QStringLiteral("ja")) << "kept across runs";

    // A command-line choice wins for one run, as every default does.
    Defaults withArgument(file, {"vuro", "-AppleLanguages", "tr"});
    EXPECT_EQ(AppLanguage(withArgument).effective(), QStringLiteral("tr"));

    defaults.setValue(QStringLiteral("AppleLanguages"), QStringList{"xx"});
    EXPECT_EQ(language.effective(), AppLanguage::systemLanguage()) << "an unknown code falls back";
    language.setOverride(std::nullopt);
    EXPECT_FALSE(defaults.contains(QStringLiteral("AppleLanguages")));
    language.setOverride(QStringLiteral("klingon"));
    EXPECT_FALSE(defaults.contains(QStringLiteral("AppleLanguages")));
}

TEST(AppLanguage, RelaunchStartsANewCopyToldToWaitThenQuits) {
    QTemporaryDir folder;
    const QString script = folder.filePath(QStringLiteral("vuro"));
    const QString record = folder.filePath(QStringLiteral("arguments"));
    {
        QFile file(script);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\nprintf '%s\\n' \"$@\" > \"" + record.toUtf8() + ".part\" && mv \"" + record.toUtf8() +
                   ".part\" \"" + record.toUtf8() + "\"\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    int terminations = 0;
    ASSERT_TRUE(AppLanguage::relaunch([&] { ++terminations; }, script));
    EXPECT_EQ(terminations, 0) << "the quit path runs from the event loop, not inside relaunch";
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(record) && terminations == 1; }, 10000));
    QFile file(record);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "-VuroRelaunchAfter\n" + QByteArray::number(QCoreApplication::applicationPid()) + "\n");

    EXPECT_FALSE(AppLanguage::relaunch([&] { ++terminations; }, folder.filePath(QStringLiteral("missing"))));
    QTest::qWait(50);
    EXPECT_EQ(terminations, 1) << "a failed start keeps this copy";
}
