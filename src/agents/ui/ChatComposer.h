#pragma once

#include <QPlainTextEdit>

namespace vuro {

// Where the user writes to an agent. Enter sends, Shift+Enter starts a new line; while an input
// method is composing, Enter belongs to it. Files dropped or pasted onto it are offered as
// attachments instead of becoming their paths in the text. The box grows with its text up to a few lines and
// then scrolls.
class ChatComposer : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit ChatComposer(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // The local files among dragged or pasted data.
    static QStringList localFiles(const QMimeData* data);

Q_SIGNALS:
    void submitted();
    void filesOffered(const QStringList& paths);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    int heightForLines(int lines) const;

    bool _composing = false;
};

}  // namespace vuro
