#include "agents/ui/ChatTranscript.h"

#include "agents/ui/ChatMessageView.h"

#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

namespace vuro {
namespace {

// How close to the end counts as reading the end.
constexpr int endSlack = 24;

}  // namespace

ChatTranscript::ChatTranscript(AgentCenter& center, QWidget* parent)
    : QScrollArea(parent), _center(center), _content(new QWidget), _messages(new QVBoxLayout), _cards(new QVBoxLayout),
      _activity(new QLabel), _placeholder(new QLabel) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setBackgroundRole(QPalette::Base);
    _content->setBackgroundRole(QPalette::Base);
    _content->setAutoFillBackground(true);

    auto* column = new QVBoxLayout(_content);
    column->setContentsMargins(16, 16, 16, 12);
    column->setSpacing(14);
    _placeholder->setAlignment(Qt::AlignCenter);
    _placeholder->setWordWrap(true);
    _placeholder->setForegroundRole(QPalette::PlaceholderText);
    _placeholder->setContentsMargins(0, 48, 0, 0);
    column->addWidget(_placeholder);
    _messages->setSpacing(14);
    column->addLayout(_messages);
    _cards->setSpacing(10);
    column->addLayout(_cards);
    _activity->setForegroundRole(QPalette::PlaceholderText);
    QFont italic = _activity->font();
    italic.setItalic(true);
    _activity->setFont(italic);
    _activity->hide();
    column->addWidget(_activity);
    column->addStretch(1);
    setWidget(_content);

    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { _followsEnd = isAtBottom(); });
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] {
        if (_followsEnd) scrollToBottom();
    });
}

bool ChatTranscript::isAtBottom() const {
    const QScrollBar* bar = verticalScrollBar();
    return bar->value() >= bar->maximum() - endSlack;
}

void ChatTranscript::scrollToBottom() { verticalScrollBar()->setValue(verticalScrollBar()->maximum()); }

ChatMessageView* ChatTranscript::viewOf(const QString& messageID) const {
    for (ChatMessageView* view : _views)
        if (view->message().id == messageID) return view;
    return nullptr;
}

void ChatTranscript::setMessages(const QList<AgentMessage>& messages) {
    QHash<QString, ChatMessageView*> kept;
    for (ChatMessageView* view : std::as_const(_views)) kept.insert(view->message().id, view);
    QList<ChatMessageView*> ordered;
    for (const AgentMessage& message : messages) {
        ChatMessageView* view = kept.take(message.id);
        if (!view) view = new ChatMessageView(_center, message, _content);
        else if (!(view->message() == message)) view->setMessage(message);
        ordered.append(view);
    }
    for (ChatMessageView* gone : std::as_const(kept)) delete gone;
    // Re-seat the views in conversation order; a view already in place stays put.
    for (qsizetype i = 0; i < ordered.size(); ++i)
        if (_messages->indexOf(ordered[i]) != i) {
            _messages->removeWidget(ordered[i]);
            _messages->insertWidget(static_cast<int>(i), ordered[i]);
        }
    _views = ordered;
    _placeholder->setVisible(_views.isEmpty());
}

void ChatTranscript::setActivity(const QString& words) {
    _activity->setText(words);
    _activity->setVisible(!words.isEmpty());
}

void ChatTranscript::setPlaceholder(const QString& text) { _placeholder->setText(text); }

}  // namespace vuro
