#pragma once

#include "base/Defaults.h"
#include "models/AIKeyStore.h"
#include "models/RoutingProvider.h"
#include "settings/ui/ApiKeyRow.h"
#include "settings/ui/AssistantSettingsPage.h"
#include "settings/ui/SettingsWindow.h"
#include "storage/Keychain.h"
#include "support/LoopbackHttpServer.h"

#include <QLabel>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

namespace vuro::test {

// This machine has no on-device model; the assistant falls back to it when nothing is chosen.
class NoOnDeviceModel : public AIProvider {
public:
    QString name() const override { return QStringLiteral("On-device model"); }
    AIRoute route() const override { return AIRoute::onDevice(); }
    AIAvailability availability() const override {
        return AIAvailability::unavailable(QStringLiteral("The on-device model is not available."));
    }
    QCoro::AsyncGenerator<QString> streamText(QString, QString) const override { return nothing(); }
    QCoro::Task<QStringList> extractTasks(QString, QString) const override { return noTasks(); }
    QCoro::Task<GeneratedCommand> generateCommand(QString, QString) const override { return noCommand(); }

private:
    static QCoro::AsyncGenerator<QString> nothing() { co_return; }
    static QCoro::Task<QStringList> noTasks() { co_return QStringList(); }
    static QCoro::Task<GeneratedCommand> noCommand() { co_return GeneratedCommand{}; }
};

// The Settings window on its Assistant page, wired as the app wires it: the page writes the
// defaults and the key store, and its Test goes through the routing provider that reads them.
struct AssistantPageFixture {
    explicit AssistantPageFixture(Keychain& keychain) : keys(keychain, true) {}

    void open() {
        window = std::make_unique<SettingsWindow>(defaults, keys, assistant);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }
    AssistantSettingsPage& page() const { return *window->assistantPage(); }
    void type(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Return);
    }
    void storeThroughPage(AIProviderKind kind, const QString& key) {
        ApiKeyRow* row = page().keyRow(kind);
        if (row->shownKey().isEmpty() == false) QTest::mouseClick(row->replaceButton(), Qt::LeftButton);
        row->entry()->setFocus();
        QTest::keyClicks(row->entry(), key);
        QTest::mouseClick(row->saveButton(), Qt::LeftButton);
    }
    // Every text the window shows: labels, fields, buttons.
    QStringList shownTexts() const {
        QStringList texts;
        for (const QLabel* label : window->findChildren<QLabel*>()) texts << label->text();
        for (const QLineEdit* field : window->findChildren<QLineEdit*>()) texts << field->text() << field->displayText();
        for (const QPushButton* button : window->findChildren<QPushButton*>()) texts << button->text();
        return texts;
    }

    QTemporaryDir folder;
    Defaults defaults{folder.filePath(QStringLiteral("Vuro.conf")), {}};
    AIKeyStore keys;
    QNetworkAccessManager session;
    NoOnDeviceModel onDevice;
    RoutingProvider assistant{onDevice, [this] { return selectedAPIProvider(defaults, keys, session); }};
    std::unique_ptr<SettingsWindow> window;
};

}  // namespace vuro::test
