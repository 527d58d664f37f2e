#include "inbox/ui/AwayDigestWindow.h"

#include "inbox/AwayMonitor.h"
#include "inbox/AwaySummarizer.h"
#include "inbox/DropInbox.h"

#include <QCloseEvent>
#include <QCommandLinkButton>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace vuro {

namespace {
constexpr int notesPerGroup = 3;
}

AwayDigestWindow::AwayDigestWindow(DropInbox& inbox, AwaySummarizer* summarizer, QWidget* parent)
    : QWidget(parent, Qt::Tool), _inbox(inbox), _summarizer(summarizer) {
    setWindowTitle(AwayDigest::title());
    resize(420, 480);
    auto* layout = new QVBoxLayout(this);
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* content = new QWidget(scroll);
    _groups = new QVBoxLayout(content);
    _groups->setAlignment(Qt::AlignTop);
    scroll->setWidget(content);
    layout->addWidget(scroll, 1);
    auto* done = new QPushButton(tr("Done"), this);
    done->setDefault(true);
    connect(done, &QPushButton::clicked, this, &QWidget::close);
    layout->addWidget(done, 0, Qt::AlignRight);
    if (_summarizer) connect(_summarizer, &AwaySummarizer::statesChanged, this, &AwayDigestWindow::render);
}

void AwayDigestWindow::follow(AwayMonitor& monitor) {
    connect(&monitor, &AwayMonitor::awayChanged, this, [this](bool away) {
        _inbox.setAway(away);
        if (!away) showDigest();
    });
}

bool AwayDigestWindow::showDigest() {
    _digest = AwayDigest::make(_inbox.awayNotes(), _inbox.recentSources());
    if (_digest.groups.isEmpty()) return false;
    if (_summarizer)
        for (const AwayDigest::Group& group : _digest.groups) _summarizer->summarize(group);
    render();
    show();
    raise();
    return true;
}

void AwayDigestWindow::render() {
    while (QLayoutItem* item = _groups->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    auto* headline = new QLabel(QStringLiteral("<b>%1</b><br>%2").arg(AwayDigest::title().toHtmlEscaped(),
                                                                      _digest.countsLine().toHtmlEscaped()));
    _groups->addWidget(headline);
    for (const AwayDigest::Group& group : _digest.groups) {
        QString heading = QStringLiteral("<b>%1</b>").arg(group.sourceName.toHtmlEscaped());
        if (group.senders.size() > 1) heading += QStringLiteral(" · ") + group.senders.join(QStringLiteral(", ")).toHtmlEscaped();
        auto* title = new QLabel(heading);
        title->setContentsMargins(0, 10, 0, 0);
        _groups->addWidget(title);
        if (_summarizer)
            if (const auto state = _summarizer->state(AwaySummarizer::key(group));
                state && state->kind == AwaySummarizer::State::Kind::done) {
                auto* summary = new QLabel(QStringLiteral("<i>%1</i>").arg(state->summary.toHtmlEscaped()));
                summary->setWordWrap(true);
                _groups->addWidget(summary);
            }
        for (qsizetype i = 0; i < group.notes.size() && i < notesPerGroup; ++i) {
            const Note& note = group.notes[i];
            auto* line = new QCommandLinkButton(AwayDigest::line(note));
            line->setAccessibleName(AwayDigest::line(note));
            connect(line, &QCommandLinkButton::clicked, this, [this, id = note.id] { Q_EMIT openNote(id); });
            _groups->addWidget(line);
        }
        if (group.notes.size() > notesPerGroup)
            _groups->addWidget(new QLabel(tr("and %1 more").arg(group.notes.size() - notesPerGroup)));
    }
}

void AwayDigestWindow::closeEvent(QCloseEvent* event) {
    _inbox.clearAway();
    if (_summarizer) _summarizer->cancelAll();
    event->accept();
}

}  // namespace vuro
