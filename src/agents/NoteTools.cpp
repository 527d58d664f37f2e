#include "agents/NoteTools.h"

namespace vuro {
namespace {

struct Words {
    const char* english;
    const char* turkish;
    QString in(bool turkish) const { return QString::fromUtf8(turkish ? this->turkish : english); }
};

struct ParameterRow {
    const char* name;
    bool required;
    Words description;
};

struct ToolRow {
    const char* name;
    bool writes;
    Words description;
    QList<ParameterRow> parameters;
};

const QString kWhen = QStringLiteral("when");

const QList<ToolRow>& rows() {
    static const QList<ToolRow> table = {
        {"list_notes", false,
         {"List all notes on the user's Shelf (the notes at the screen edge): titles, a preview and open tasks.",
          "Kullanıcının Raf'taki tüm notlarını (ekran kenarındaki notlar) listele: başlıklar, bir önizleme ve açık "
          "görevler."},
         {}},
        {"search_notes", false,
         {"Find the user's notes containing some words. Returns titles and a snippet.",
          "Kullanıcının bazı kelimeleri içeren notlarını bul. Başlıkları ve kısa bir alıntı döndürür."},
         {{"query", true, {"Words to look for", "Aranacak kelimeler"}}}},
        {"read_note", false,
         {"Read one of the user's notes by its title.", "Kullanıcının notlarından birini başlığıyla oku."},
         {{"note", true, {"Title of the note", "Notun başlığı"}}}},
        {"list_tasks", false,
         {"List the user's unfinished tasks from all notes, with due dates.",
          "Kullanıcının tüm notlardaki bitmemiş görevlerini tarihleriyle listele."},
         {{"when", true,
           {"open: all unfinished; today: due today or overdue; overdue; upcoming: next 7 days",
            "open: bitmemiş tümü; today: bugün veya gecikmiş; overdue: gecikmiş; upcoming: önümüzdeki 7 gün"}}}},
        {"add_task", true,
         {"Add a to-do or an item to an existing note or list, e.g. milk to the shopping list. Keep date words like "
          "'tomorrow 10am'.",
          "Var olan bir nota veya listeye bir yapılacak ya da öğe ekle, ör. alışveriş listesine süt. 'yarın saat 10' "
          "gibi tarih sözcüklerini koru."},
         {{"task", true, {"The task in the user's words", "Görev, kullanıcının kendi sözcükleriyle"}},
          {"note", false,
           {"Title of the note or list; empty for the default to-do list",
            "Notun veya listenin başlığı; varsayılan yapılacaklar listesi için boş"}}}},
        {"create_note", true,
         {"Create a brand-new note. Not for adding to an existing note or list: use add_task for that. Write tasks as "
          "lines starting with '- [ ] '.",
          "Yepyeni bir not oluştur. Var olan bir nota veya listeye eklemek için değil: onun için add_task kullan. "
          "Görevleri '- [ ] ' ile başlayan satırlar olarak yaz."},
         {{"title", true, {"Short title", "Kısa başlık"}}, {"body", true, {"Content of the note", "Notun içeriği"}}}},
        {"append_to_note", true,
         {"Add a line of text to the end of an existing note.", "Var olan bir notun sonuna bir satır metin ekle."},
         {{"note", true, {"Title of the note", "Notun başlığı"}}, {"text", true, {"Text to add", "Eklenecek metin"}}}},
        {"fix_notes", true,
         {"Fix spelling and grammar in the user's notes: the ones named, or every note on the Shelf. Vuro corrects "
          "each note and keeps its lines and tasks.",
          "Kullanıcının notlarındaki yazım ve dil bilgisi hatalarını düzelt: adı verilenleri ya da Raf'taki her notu. "
          "Vuro her notu düzeltir, satırlarını ve görevlerini korur."},
         {{"notes", false,
           {"Titles of the notes, separated by ';'. Leave empty for all notes",
            "Notların başlıkları, ';' ile ayrılmış. Tüm notlar için boş bırak"}}}},
        {"archive_notes", true,
         {"Remove notes the user no longer wants (e.g. test notes) from the Shelf by moving them to the Archive. The "
          "user can bring them back.",
          "Kullanıcının artık istemediği notları (ör. deneme notları) Arşiv'e taşıyarak Raf'tan kaldır. Kullanıcı "
          "onları geri getirebilir."},
         {{"notes", true,
           {"Exact titles of the notes, separated by ';'", "Notların tam başlıkları, ';' ile ayrılmış"}}}},
        {"complete_task", true,
         {"Mark an unfinished task as done.", "Bitmemiş bir görevi tamamlandı olarak işaretle."},
         {{"task", true, {"Words from the task", "Görevden sözcükler"}}}},
        {"tag_notes", true,
         {"Tag the user's notes so they can group and find them in the Notes window. Give tags to add or remove; "
          "leave both empty and Vuro picks fitting tags for each note.",
          "Kullanıcının notlarını, Notlar penceresinde gruplayıp bulabilmesi için etiketle. Eklenecek ya da "
          "kaldırılacak etiketleri ver; ikisini de boş bırakırsan Vuro her not için uygun etiketler seçer."},
         {{"notes", false,
           {"Titles of the notes, separated by ';'. Leave empty for the untagged notes on the Shelf",
            "Notların başlıkları, ';' ile ayrılmış. Raf'taki etiketsiz notlar için boş bırak"}},
          {"tags", false, {"Tags to add, separated by commas", "Eklenecek etiketler, virgülle ayrılmış"}},
          {"remove", false, {"Tags to remove, separated by commas", "Kaldırılacak etiketler, virgülle ayrılmış"}}}},
        {"move_notes", true,
         {"Move the user's notes into a folder in the Notes window (the folder is created if it doesn't exist), or "
          "out of their folder.",
          "Kullanıcının notlarını Notlar penceresindeki bir klasöre taşı (klasör yoksa açılır) ya da klasörlerinden "
          "çıkar."},
         {{"notes", true,
           {"Exact titles of the notes, separated by ';'", "Notların tam başlıkları, ';' ile ayrılmış"}},
          {"folder", false,
           {"Folder name; empty to take the notes out of their folder",
            "Klasör adı; notları klasörlerinden çıkarmak için boş"}}}},
        {"remove_lines", true,
         {"Delete lines or sentences from inside a note (e.g. junk or test lines) and keep the rest. Copy each line "
          "as read_note shows it.",
          "Bir notun içinden satırları ya da cümleleri sil (ör. gereksiz ya da deneme satırları), gerisini koru. Her "
          "satırı read_note'un gösterdiği gibi kopyala."},
         {{"note", true, {"Title of the note", "Notun başlığı"}},
          {"lines", true,
           {"The lines to delete, copied from the note, one per line or separated by ';'",
            "Silinecek satırlar, nottan kopyalanmış, her satırda bir tane ya da ';' ile ayrılmış"}}}},
        {"replace_line", true,
         {"Change one line or sentence of a note to new text, e.g. reword it or rename a task. Copy the old line as "
          "read_note shows it; its checkbox, bullet and date are kept.",
          "Bir notun bir satırını ya da cümlesini yeni bir metinle değiştir, ör. yeniden yaz ya da bir görevin adını "
          "değiştir. Eski satırı read_note'un gösterdiği gibi kopyala; onay kutusu, madde işareti ve tarihi korunur."},
         {{"note", true, {"Title of the note", "Notun başlığı"}},
          {"line", true,
           {"The line or sentence to change, copied from the note", "Değişecek satır ya da cümle, nottan kopyalanmış"}},
          {"text", true, {"The new text", "Yeni metin"}}}},
        {"remember", false,
         {"Save a lasting fact about the user to your memory (a preference, a person, a routine).",
          "Kullanıcı hakkında kalıcı bir bilgiyi hafızana kaydet (bir tercih, bir kişi, bir alışkanlık)."},
         {{"fact", true, {"One short sentence", "Kısa bir cümle"}}}},
    };
    return table;
}

AgentToolDefinition make(const ToolRow& row, bool turkish) {
    AgentToolDefinition spec;
    spec.name = QLatin1String(row.name);
    spec.description = row.description.in(turkish);
    spec.writes = row.writes;
    for (const ParameterRow& p : row.parameters) {
        AgentToolDefinition::Parameter parameter{QLatin1String(p.name), p.description.in(turkish), {}, p.required};
        // `when` is the one parameter with fixed answers; they are argument values, not words.
        if (parameter.name == kWhen)
            parameter.kind = AgentToolDefinition::Parameter::Kind::choice(
                {QStringLiteral("open"), QStringLiteral("today"), QStringLiteral("overdue"), QStringLiteral("upcoming")});
        spec.parameters.append(parameter);
    }
    return spec;
}

}  // namespace

QList<AgentToolDefinition> NoteTools::all(bool turkish) {
    QList<AgentToolDefinition> specs;
    for (const ToolRow& row : rows()) specs.append(make(row, turkish));
    return specs;
}

std::optional<AgentToolDefinition> NoteTools::spec(const QString& name, bool turkish) {
    for (const ToolRow& row : rows())
        if (name == QLatin1String(row.name)) return make(row, turkish);
    return std::nullopt;
}

}  // namespace vuro
