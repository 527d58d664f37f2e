#include "base/Text.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;

TEST(Text, FoldsTurkishCaseDiacriticsAndWidth) {
    struct Case {
        const char* text;
        const char* folded;
    } cases[] = {
        {"İstanbul", "istanbul"}, {"ISTANBUL", "istanbul"}, {"ıspanak", "ispanak"},
        {"Çalışma Şöyle", "calisma soyle"}, {"Crème Brûlée", "creme brulee"},
        {"ＡＢＣ１２３", "abc123"},
        // ASCII and other runs side by side: a combining mark after an ASCII letter, a full-width
        // capital I, Turkish capitals between plain words.
        {"Cafe\u0301 KAPI Ｉrmak İÇİN ıI", "cafe kapi irmak icin ii"}, {"", ""}, {"Plain ASCII, 42!", "plain ascii, 42!"}
    };
    for (const auto& c : cases) EXPECT_EQ(Text::fold(QString::fromUtf8(c.text)), QString::fromUtf8(c.folded)) << c.text;
}

TEST(Text, CountsAndCutsUserPerceivedCharacters) {
    const QString family = QString::fromUtf8("👨‍👩‍👧");
    const QString flagged = QString::fromUtf8("é") + family + QStringLiteral("e\u0301");
    EXPECT_EQ(Text::characterCount(flagged), 3);
    EXPECT_EQ(Text::characterCount(QStringLiteral("a\r\nb")), 3);
    EXPECT_EQ(Text::leftCharacters(flagged, 2), QString::fromUtf8("é") + family);

    const QString sixty(60, QLatin1Char('x'));
    EXPECT_EQ(Text::cut(sixty, 60), sixty);
    EXPECT_EQ(Text::cut(sixty + QLatin1Char('y'), 60), sixty + QChar(0x2026));
    EXPECT_EQ(Text::cut(family + family, 1), family + QChar(0x2026));
    EXPECT_EQ(Text::cut(QString(), 0), QString());
}
