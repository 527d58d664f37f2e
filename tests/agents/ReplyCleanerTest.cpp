#include "agents/ReplyCleaner.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

namespace vuro {
namespace {

TEST(ReplyCleaner, LabelsRepeatsAndLoops) {
    const QString line40 = QStringLiteral("This line is exactly forty characters!!!");
    ASSERT_EQ(line40.size(), 40);
    const QString block200 = [] {
        QString block;
        for (int i = 0; block.size() < 200; ++i) block += QString::number(i * 7919 % 1000) + QLatin1Char(' ');
        return block.left(200);
    }();
    struct Case {
        const char* what;
        QString input;
        QString expected;
    };
    const QList<Case> cases = {
        {"plain text stands as it is, blanks included", "  Hello there.\n\nBye  ", "  Hello there.\n\nBye  "},
        {"an assistant label and a greeting", "Assistant:  Hi, I'm Vuro.", "Hi, I'm Vuro."},
        {"a Turkish label in any case", "Sen yanıtlamıştın: Tamam.", "Tamam."},
        {"a later user label ends the reply", "Done.\nUser: add eggs\nSure!", "Done."},
        {"a label on the first line after trimming", "  you: fine\nok", "fine\nok"},
        {"a 40-character line twice ends before the second", line40 + "\nmiddle\n" + line40 + "\nafter",
         line40 + "\nmiddle"},
        {"short lines may repeat", "ok\nok\nok", "ok\nok\nok"},
        {"a 200-character block three times is no loop", block200 + block200 + block200, block200 + block200 + block200},
        {"a 20-character loop is cut after its first time", "Start. " + QString("abcdefghij0123456789").repeated(4),
         "Start. abcdefghij0123456789"},
        {"a period of 11 is too short", "x" + QString("abcdefghijk").repeated(5), "x" + QString("abcdefghijk").repeated(5)},
        {"emoji count as one scalar each", QString::fromUtf8("🙂🙃🙂🙃🙂🙃🙂🙃🙂🙃🙂🙃").repeated(3),
         QString::fromUtf8("🙂🙃🙂🙃🙂🙃🙂🙃🙂🙃🙂🙃")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(ReplyCleaner::clean(c.input), c.expected);
    }
}

TEST(ReplyCleaner, OnlyTheLastSixHundredScalarsAreSearched) {
    const QString loop = QString("0123456789ab").repeated(3);
    // A loop that ends more than 600 scalars before the end is out of the window; the filler's
    // shortest period is 260.
    QString text = loop;
    for (int i = 0; text.size() < loop.size() + 700; ++i) text += QString::number(i % 10) + QChar(u'a' + i % 26);
    ASSERT_EQ(ReplyCleaner::loopCut(text.toUcs4()), -1) << text.toStdString();
    EXPECT_EQ(ReplyCleaner::loopCut(QString("q" + loop).toUcs4()), 13);
}

}  // namespace
}  // namespace vuro
