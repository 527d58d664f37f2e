#include "app/AppLanguage.h"

#include "base/Defaults.h"
#include "base/Log.h"

#include <QCoreApplication>
#include <QLocale>
#include <QProcess>
#include <QTimer>
#include <QTranslator>

namespace vuro {
namespace {
const QString key = QStringLiteral("AppleLanguages");

bool isKnown(const QString& code) {
    const auto& languages = AppLanguage::all();
    return std::any_of(languages.cbegin(), languages.cend(), [&](const auto& l) { return l.code == code; });
}
}  // namespace

const QList<AppLanguage::Language>& AppLanguage::all() {
    static const QList<Language> languages{
        {QStringLiteral("en"), QStringLiteral("English")},  {QStringLiteral("tr"), QStringLiteral("Türkçe")},
        {QStringLiteral("de"), QStringLiteral("Deutsch")},  {QStringLiteral("fr"), QStringLiteral("Français")},
        {QStringLiteral("es"), QStringLiteral("Español")},  {QStringLiteral("ja"), QStringLiteral("日本語")},
        {QStringLiteral("zh-Hans"), QStringLiteral("简体中文")},
    };
    return languages;
}

AppLanguage::AppLanguage(Defaults& defaults) : _defaults(defaults) {}

std::optional<QString> AppLanguage::override() const {
    const QStringList list = _defaults.stringList(key);
    if (list.isEmpty() || list.first().isEmpty()) return std::nullopt;
    return list.first();
}

void AppLanguage::setOverride(const std::optional<QString>& code) {
    if (code && isKnown(*code))
        _defaults.setValue(key, QStringList{*code});
    else
        _defaults.remove(key);
}

QString AppLanguage::effective() const {
    const auto chosen = override();
    return chosen && isKnown(*chosen) ? *chosen : systemLanguage();
}

QString AppLanguage::systemLanguage() { return languageFor(QLocale::system().uiLanguages()); }

QString AppLanguage::languageFor(const QStringList& uiLanguages) {
    for (QString name : uiLanguages) {
        name.replace(QLatin1Char('_'), QLatin1Char('-'));
        const QStringList parts = name.split(QLatin1Char('-'));
        const QString language = parts.first().toLower();
        if (language == QLatin1String("zh")) {
            // Simplified unless the name says traditional script or a region that writes it.
            const bool traditional = parts.contains(QStringLiteral("Hant"), Qt::CaseInsensitive) ||
                                     parts.contains(QStringLiteral("TW"), Qt::CaseInsensitive) ||
                                     parts.contains(QStringLiteral("HK"), Qt::CaseInsensitive) ||
                                     parts.contains(QStringLiteral("MO"), Qt::CaseInsensitive);
            if (!traditional) return QStringLiteral("zh-Hans");
            continue;
        }
        if (isKnown(language)) return language;
    }
    return QStringLiteral("en");
}

void AppLanguage::apply() const {
    const QString code = effective();
    QLocale::setDefault(QLocale(code == QLatin1String("zh-Hans") ? QStringLiteral("zh_CN") : code));
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QStringLiteral(":/i18n/vuro_") + code))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

bool AppLanguage::relaunch(const std::function<void()>& terminate, const QString& program) {
    const QString executable = program.isEmpty() ? QCoreApplication::applicationFilePath() : program;
    const QStringList arguments{QStringLiteral("-VuroRelaunchAfter"), QString::number(QCoreApplication::applicationPid())};
    if (!QProcess::startDetached(executable, arguments)) {
        log(QStringLiteral("could not start a new copy of ") + executable);
        return false;
    }
    QTimer::singleShot(0, QCoreApplication::instance(), terminate);
    return true;
}

}  // namespace vuro
