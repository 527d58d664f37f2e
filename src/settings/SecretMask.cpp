#include "settings/SecretMask.h"

#include "base/Text.h"

namespace vuro {

QString maskedSecret(const QString& secret) {
    const QString key = Text::trimmed(secret);
    const qsizetype length = Text::characterCount(key);
    const QString ellipsis = QStringLiteral("…");
    // Below these lengths the visible ends would give away too large a share of the key.
    if (length >= 16) return Text::leftCharacters(key, 3) + ellipsis + key.right(4);
    if (length >= 6) return ellipsis + key.right(2);
    return length == 0 ? QString() : ellipsis;
}

}  // namespace vuro
