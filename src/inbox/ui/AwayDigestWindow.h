#pragma once

#include "inbox/AwayDigest.h"

#include <QWidget>

class QVBoxLayout;

namespace vuro {

class AwayMonitor;
class AwaySummarizer;
class DropInbox;

// "While you were away": shown when the user comes back and something arrived meanwhile, one
// block per sender with its newest notes and, when allowed, a one-line summary. Closing it
// clears the absence. Clicking a note asks for it to be opened.
class AwayDigestWindow : public QWidget {
    Q_OBJECT
public:
    AwayDigestWindow(DropInbox& inbox, AwaySummarizer* summarizer, QWidget* parent = nullptr);

    // Marks the inbox away while the monitor says so, and shows the digest on return.
    void follow(AwayMonitor& monitor);
    // Shows the digest of the current absence; false when nothing arrived.
    bool showDigest();
    const AwayDigest& digest() const { return _digest; }

Q_SIGNALS:
    void openNote(const QString& noteID);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void render();

    DropInbox& _inbox;
    AwaySummarizer* _summarizer;
    AwayDigest _digest;
    QVBoxLayout* _groups;
};

}  // namespace vuro
