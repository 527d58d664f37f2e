#include "agents/AgentPrompt.h"

#include "agents/ReplyCleaner.h"
#include "base/Text.h"
#include "base/TimeText.h"

#include <QLocale>

namespace vuro {
namespace {

QString pick(bool turkish, const char* english, const char* turkishText) {
    return QString::fromUtf8(turkish ? turkishText : english);
}

}  // namespace

QString AgentPrompt::systemText(const Agent& agent, const AgentRouteBudget& budget, const QDateTime& now, bool turkish) {
    QStringList parts;
    const QString name = agent.displayName();
    const bool builtIn = agent.id == Agent::notesAgentID;
    const QString vibe = Text::trimmed(agent.vibe);
    if (builtIn) {
        parts << pick(turkish,
                      "Your name is %1. You are the user's built-in notes assistant; you introduce yourself as \"I'm %1\". "
                      "Your work is only the user's notes and tasks: you search, read, summarize and correct notes; you "
                      "add, complete and date tasks.",
                      "Adın %1. Kullanıcının hazır not asistanısın; kendini tanıtırken \"Ben %1\" dersin. İşin yalnızca "
                      "kullanıcının notları ve görevleri: not arar, okur, özetler, düzeltirsin; görev ekler, bitirir, tarih "
                      "koyarsın.")
                     .arg(name);
        if (!vibe.isEmpty()) parts << pick(turkish, "Your vibe: ", "Tavrın: ") + Text::cut(vibe, 200);
        parts << pick(turkish,
                      "If asked about something unrelated to notes, answer briefly and mention that the user can create "
                      "their own agents for that.",
                      "Notlarla ilgisi olmayan bir şey sorulursa kısaca yanıtla ve bu tür işler için kullanıcının kendi "
                      "ajanlarını önerebileceğini söyle.");
    } else {
        parts << pick(turkish, "Your name is %1. You are an assistant; you introduce yourself as \"I'm %1\".",
                      "Adın %1. Bir asistansın; kendini tanıtırken \"Ben %1\" dersin.")
                     .arg(name);
        if (!vibe.isEmpty()) parts << pick(turkish, "Your vibe: ", "Tavrın: ") + Text::cut(vibe, 200);
        if (!Text::trimmed(agent.soul).isEmpty())
            parts << pick(turkish, "Persona and boundaries:\n", "Kişiliğin ve sınırların:\n") +
                         Text::cut(agent.soul, budget.persona);
        if (!Text::trimmed(agent.duty).isEmpty())
            parts << pick(turkish, "What you do and how you behave follows these directions:\n",
                          "Ne yaptığın ve nasıl davrandığın bu yönergelere göredir:\n") +
                         Text::cut(agent.duty, budget.persona);
        else
            parts << pick(turkish, "You chat with the user naturally, like a friendly companion.",
                          "Kullanıcıyla doğal, günlük bir şekilde sohbet edersin.");
    }
    if (!Text::trimmed(agent.memory).isEmpty())
        parts << pick(turkish, "What you remember about the user:\n", "Kullanıcı hakkında hatırladıkların:\n") +
                     Text::cut(agent.memory, budget.persona);
    const QLocale locale;
    parts << pick(turkish, "Now: ", "Şu an: ") + locale.toString(now.date(), QLocale::LongFormat) + QLatin1Char(' ') +
                 shortTime(now.time(), locale);
    QString access;
    switch (agent.access) {
    case NoteAccess::none:
        access = pick(turkish, "You have no access to the notes; if asked, say so: access is granted in the agent's settings.",
                      "Notlara erişimin yok; sorulursa söyle, izin ajanın ayarlarından verilir.");
        break;
    case NoteAccess::read:
        access = pick(turkish, "You can read the notes but not change them; if asked for a change, say so.",
                      "Notları okuyabilir ama değiştiremezsin; değişiklik istenirse bunu söyle.");
        break;
    case NoteAccess::readWrite:
        access = pick(turkish, "You can read and change the notes; the user can undo every change.",
                      "Notları okuyup değiştirebilirsin; kullanıcı her değişikliği geri alabilir.");
        break;
    }
    parts << pick(turkish,
                  "You're inside Vuro, a notes and agents app in the system tray. The Shelf is the stack of notes at the "
                  "screen edge; the user's notes are there. Tasks are '- [ ] ' lines in notes, with due dates after 📅 at "
                  "the end.",
                  "Vuro'nin içindesin: sistem tepsisindeki not ve ajan uygulaması. Raf, ekranın kenarındaki not destesi; "
                  "kullanıcının notları orada. Görevler notlardaki '- [ ] ' satırları, tarihleri satır sonunda 📅 ile.") +
                 QLatin1Char(' ') + access;
    if (!builtIn && agent.access != NoteAccess::none)
        parts << pick(turkish,
                      "Use the note tools only when the user talks about their notes or tasks, or your directions require "
                      "it. In everyday chat don't steer toward notes; answer according to your directions.",
                      "Not araçlarını yalnızca kullanıcı notlarından ya da görevlerinden söz ederse ya da yönergelerin bunu "
                      "gerektirirse kullan. Günlük sohbette notlara yönelme; yönergelerine göre yanıt ver.");
    parts << pick(turkish,
                  "When the user tells you a lasting fact about themselves (a preference, a person, a habit), save it with "
                  "remember. Keep replies short and in the user's language. Never claim to have done something you didn't "
                  "do.",
                  "Kullanıcı kendisi hakkında kalıcı bir bilgi verirse (bir tercih, bir kişi, bir alışkanlık) remember ile "
                  "kaydet. Kısa yanıt ver, kullanıcının dilinde yaz. Yapmadığın bir şeyi yaptım deme.");
    if (budget.asksMarkdown())
        parts << pick(turkish,
                      "Your reply is rendered as Markdown (in the chat and in notes on the Shelf). Write for reading: short "
                      "paragraphs with a blank line between them. Put several items in a bulleted or numbered list; one or "
                      "two sentences per item, details in sub-items. Bold the item's name. Use headings (##) only in long "
                      "replies with several parts, tables only for comparisons. Don't format a short reply.",
                      "Yanıtın Markdown olarak gösterilir (sohbette ve Raf'taki notlarda). Okunmak için yaz: aralarında boş "
                      "satır olan kısa paragraflar. Birkaç öğeyi madde işaretli ya da numaralı listeye koy; öğe başına bir "
                      "iki cümle, ayrıntılar alt maddelerde. Öğenin adını kalın yaz. Başlıkları (##) yalnızca birkaç "
                      "bölümlü uzun yanıtlarda, tabloları yalnızca karşılaştırmalarda kullan. Kısa bir yanıtı "
                      "biçimlendirme.");
    return parts.join(QStringLiteral("\n\n"));
}

QList<ChatTurn> AgentPrompt::turns(const QList<AgentMessage>& messages, qsizetype budget) {
    QList<ChatTurn> newestFirst;
    qsizetype used = 0;
    for (auto it = messages.crbegin(); it != messages.crend(); ++it) {
        const AgentMessage& message = *it;
        if (message.role == AgentMessage::Role::notice) continue;
        ChatTurn turn;
        turn.role = message.role == AgentMessage::Role::user ? ChatTurn::Role::user : ChatTurn::Role::assistant;
        turn.text = Text::trimmed(message.role == AgentMessage::Role::agent ? ReplyCleaner::clean(message.text) : message.text);
        if (message.role == AgentMessage::Role::user)
            for (const AgentAttachment& attachment : message.attachments)
                turn.attachments.append(ChatAttachment{attachment, ChatAttachment::Pending{}});
        if (turn.text.isEmpty() && turn.attachments.isEmpty()) continue;
        const qsizetype length = Text::characterCount(turn.text);
        if (newestFirst.isEmpty()) {
            if (length > budget) turn.text = Text::cut(turn.text, budget);
            used = std::min(length, budget);
        } else {
            if (used + length > budget) break;
            used += length;
        }
        newestFirst.append(turn);
    }
    while (!newestFirst.isEmpty() && newestFirst.last().role == ChatTurn::Role::assistant) newestFirst.removeLast();
    return QList<ChatTurn>(newestFirst.crbegin(), newestFirst.crend());
}

}  // namespace vuro
