#include "settings/SecretMask.h"

#include "settings/ProviderOptions.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace vuro {
namespace {

TEST(SecretMask, ShowsTooLittleToCopyTheKey) {
    struct Case {
        QString key;
        QString shown;
    };
    const Case cases[] = {
        {"sk-proj-aB3dE5fG7hJ9kL1m3f9a", "sk-…3f9a"},
        {"  sk-ant-api03-XYZ0123456789  \n", "sk-…6789"},
        {"abcdefghijklmnop", "abc…mnop"},  // sixteen: the shortest that shows both ends
        {"abcdefghijklmno", "…no"},
        {"abcdef", "…ef"},
        {"abcde", "…"},
        {"a", "…"},
        {"   ", ""},
        {"", ""},
    };
    for (const Case& c : cases) {
        const QString shown = maskedSecret(c.key);
        EXPECT_EQ(shown, c.shown) << c.key.toStdString();
        const QString key = c.key.trimmed();
        if (!key.isEmpty()) {
            EXPECT_LE(shown.size() - 1, key.size() / 2) << "never half of the key or more";
        }
    }
}

TEST(ProviderOptions, KeyTakingKindsAreNamedAfterTheirAPI) {
    const auto options = ProviderOptions::all();
    ASSERT_EQ(options.size(), 11);
    QStringList labels;
    for (const auto& option : options) {
        labels.append(option.label);
        const auto kind = option.choice.apiKind();
        const bool takesKey = kind && (*kind == AIProviderKind::claude || *kind == AIProviderKind::openAI ||
                                       *kind == AIProviderKind::gemini);
        EXPECT_EQ(option.label.endsWith(" API"), takesKey) << option.label.toStdString();
    }
    labels.removeDuplicates();
    EXPECT_EQ(labels.size(), 11) << "every choice can be told apart";
}

}  // namespace
}  // namespace vuro
