#include "notes/NoteTokens.h"
#include "support/Printers.h"

#include <gtest/gtest.h>
#include <limits>

using namespace vuro;

namespace {

struct FileCase {
    const char* text;
    QList<FileToken> expected;
};

TEST(NoteTokensTest, findsFileTokens) {
    const QString id64(64, QLatin1Char('a'));
    const QString id65(65, QLatin1Char('a'));
    const QList<FileCase> cases = {
        {"no token here", {}},
        {"[report.pdf](vuro-file://ABC-1)", {{"ABC-1", "report.pdf", 0, 31}}},
        {"see [](vuro-file://X) now", {{"X", "", 4, 17}}},
        {"[a](vuro-file://A) and [b c](vuro-file://B-2)", {{"A", "a", 0, 18}, {"B-2", "b c", 23, 22}}},
        {"[a\nb](vuro-file://A)", {}},                 // a name can't span lines
        {"[a](vuro-file://A_B)", {}},                  // "_" is outside the alphabet
        {"[a](vuro-file://)", {}},                     // no identifier
        {"[a](vuro-img://A)", {}},                     // the other scheme
        {"[a](VURO-FILE://A)", {}},
        {"[x] [a](vuro-file://A)", {{"A", "a", 4, 18}}},  // "]" ends a name: the token starts at the second "["
    };
    for (const auto& c : cases) EXPECT_EQ(NoteTokens::fileTokens(QString::fromUtf8(c.text)), c.expected) << c.text;

    EXPECT_EQ(NoteTokens::fileTokens("[n](vuro-file://" + id64 + ")").value(0).id, id64);
    EXPECT_TRUE(NoteTokens::fileTokens("[n](vuro-file://" + id65 + ")").isEmpty());
}

struct ImageCase {
    const char* text;
    QList<ImageToken> expected;
};

TEST(NoteTokensTest, findsImageTokens) {
    const QList<ImageCase> cases = {
        {"![image](vuro-img://ABC)", {{"ABC", std::nullopt, 0, 24}}},
        {"![image|300](vuro-img://A-1)", {{"A-1", 300.0, 0, 28}}},
        {"![image|2.25](vuro-img://A)", {{"A", 2.25, 0, 27}}},
        {"![image|0](vuro-img://A)", {{"A", 0.0, 0, 24}}},
        {"x ![image](vuro-img://A)![image](vuro-img://B)", {{"A", std::nullopt, 2, 22}, {"B", std::nullopt, 24, 22}}},
        {"![image](https://A)", {}},       // another scheme stays text
        {"![image](vuro-file://A)", {}},
        {"![picture](vuro-img://A)", {}},
        {"![image|](vuro-img://A)", {}},    // a bar needs a width
        {"![image|1.](vuro-img://A)", {}},  // and a point needs digits
        {"![image|-5](vuro-img://A)", {}},
        {"![image](vuro-img://)", {}},
        {"![image](vuro-img://A B)", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(NoteTokens::imageTokens(QString::fromUtf8(c.text)), c.expected) << c.text;
}

TEST(NoteTokensTest, writesImageTokensThatReadBack) {
    struct Case {
        std::optional<double> width;
        const char* written;
    };
    const QList<Case> cases = {
        {std::nullopt, "![image](vuro-img://ID-1)"},
        {0.0, "![image](vuro-img://ID-1)"},
        {-3.0, "![image](vuro-img://ID-1)"},
        {std::numeric_limits<double>::infinity(), "![image](vuro-img://ID-1)"},
        {std::numeric_limits<double>::quiet_NaN(), "![image](vuro-img://ID-1)"},
        {300.0, "![image|300](vuro-img://ID-1)"},
        {240.5, "![image|240.5](vuro-img://ID-1)"},
        {0.04, "![image|0.0](vuro-img://ID-1)"},
        {1e20, "![image|100000000000000000000](vuro-img://ID-1)"},
    };
    for (const auto& c : cases) {
        const QString written = NoteTokens::imageToken("ID-1", c.width);
        EXPECT_EQ(written, QString::fromUtf8(c.written));
        const auto read = NoteTokens::imageTokens(written);
        ASSERT_EQ(read.size(), 1) << c.written;
        EXPECT_EQ(read[0].id, "ID-1");
        EXPECT_EQ(read[0].length, written.size());
    }
    const QString rounded = NoteTokens::imageToken("A", 2.25);
    EXPECT_TRUE(rounded == "![image|2.2](vuro-img://A)" || rounded == "![image|2.3](vuro-img://A)") << rounded.toStdString();

    // A zero width read from a body is written back without one.
    const auto zero = NoteTokens::imageTokens("![image|0](vuro-img://A)").value(0);
    EXPECT_EQ(NoteTokens::imageToken(zero.id, zero.width), "![image](vuro-img://A)");
}

TEST(NoteTokensTest, writesFileTokensThatReadBack) {
    struct Case {
        const char* name;
        const char* expectedName;
    };
    const QList<Case> cases = {{"report.pdf", "report.pdf"}, {"", ""}, {"a]b", "ab"}, {"two\nlines", "two lines"}};
    for (const auto& c : cases) {
        const auto read = NoteTokens::fileTokens(NoteTokens::fileToken(QString::fromUtf8(c.name), "F-1"));
        ASSERT_EQ(read.size(), 1) << c.name;
        EXPECT_EQ(read[0].name, QString::fromUtf8(c.expectedName));
        EXPECT_EQ(read[0].id, "F-1");
    }
}

TEST(NoteTokensTest, collectsIdentifiersAndChecksTheAlphabet) {
    const QString body = "![image](vuro-img://I1)\n[a](vuro-file://F1) ![image|20](vuro-img://I2) "
                         "[b](vuro-file://F1) ![image](vuro-img://I1)";
    EXPECT_EQ(NoteTokens::imageIDs(body), (QSet<QString>{"I1", "I2"}));
    EXPECT_EQ(NoteTokens::fileIDs(body), (QSet<QString>{"F1"}));

    const QList<std::pair<QString, bool>> ids = {
        {"0E5C1A2B-9F3D-4C6E-8A7B-112233445566", true}, {QString(64, 'z'), true}, {QString(65, 'z'), false},
        {"", false}, {"../etc", false}, {"a/b", false}, {"a.b", false}, {"ı", false}};
    for (const auto& [id, valid] : ids) EXPECT_EQ(NoteTokens::isValidIdentifier(id), valid) << id.toStdString();
}

}  // namespace
