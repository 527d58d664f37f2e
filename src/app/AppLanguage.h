#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace vuro {

class Defaults;

// The languages the interface comes in, the user's choice among them, and the relaunch that
// makes a new choice take effect. The choice is the one-element list under "AppleLanguages" in
// the defaults; without it the system's language is used. Main thread only.
class AppLanguage {
public:
    struct Language {
        QString code;
        QString nativeName;
    };
    static const QList<Language>& all();  // en, tr, de, fr, es, ja, zh-Hans

    explicit AppLanguage(Defaults& defaults);

    std::optional<QString> override() const;
    // A code of the list, or none for the system's language.
    void setOverride(const std::optional<QString>& code);
    // The override when it names one of the languages, else the system's.
    QString effective() const;
    static QString systemLanguage();
    // The first of the locale's interface languages ("tr-TR", "zh_CN") that maps onto one of
    // ours; "en" when none does.
    static QString languageFor(const QStringList& uiLanguages);

    // Installs the interface translation and default locale of the effective language.
    void apply() const;

    // Starts a new copy of program told to wait for this one, then calls terminate (the normal
    // quit path, so unsaved notes are still written). When the start fails this copy stays.
    static bool relaunch(const std::function<void()>& terminate, const QString& program = {});

private:
    Defaults& _defaults;
};

}  // namespace vuro
