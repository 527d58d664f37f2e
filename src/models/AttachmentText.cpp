#include "models/AttachmentText.h"

#include <QLocale>
#include <QStringList>

namespace vuro {

bool agentTextIsTurkish() { return QLocale().language() == QLocale::Turkish; }

QString attachmentText(bool noteNativeFiles, const QString& text, const QList<ChatAttachment>& attachments) {
    const bool turkish = agentTextIsTurkish();
    QStringList pieces;
    for (const ChatAttachment& attachment : attachments) {
        QString name = attachment.info.name;
        name.replace(QLatin1Char('"'), QLatin1Char('\''));
        const QString open = QStringLiteral("<attachment name=\"%1\">").arg(name);
        const QLatin1String close("</attachment>");
        if (attachment.isNative()) {
            if (noteNativeFiles)
                pieces.append(open + (turkish ? QStringLiteral("(dosya olarak ekte)") : QStringLiteral("(attached as a file)")) + close);
        } else if (const auto* extracted = std::get_if<ChatAttachment::Text>(&attachment.content)) {
            pieces.append(open + QLatin1Char('\n') + extracted->text + QLatin1Char('\n') + close);
        } else {
            pieces.append(open +
                          (turkish ? QStringLiteral("(içeriği bu mesajda yok)") : QStringLiteral("(its content isn't included here)")) +
                          close);
        }
    }
    if (pieces.isEmpty()) return text;
    const QString joined = pieces.join(QLatin1String("\n\n"));
    if (text.isEmpty()) return joined;
    return joined + QLatin1String("\n\n") + text;
}

}  // namespace vuro
