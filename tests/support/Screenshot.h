#pragma once

#include <QDir>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace vuro::test {

// Saves what the widget shows now as build/test/screenshots/<name>.png, for a person to look at.
// Pending relayouts land first, so the picture is the one the user would see.
inline void screenshot(QWidget& widget, const QString& name) {
    QTest::qWait(60);
    const QString folder = QStringLiteral(VURO_BINARY_DIR "/screenshots");
    QDir().mkpath(folder);
    ASSERT_TRUE(widget.grab().save(folder + QLatin1Char('/') + name + QStringLiteral(".png")));
}

}  // namespace vuro::test
