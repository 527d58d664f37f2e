#pragma once

#include "inbox/AwayDigest.h"
#include "inbox/AwaySummaryProvider.h"

#include <QHash>
#include <QObject>
#include <functional>
#include <memory>
#include <optional>

namespace vuro {

// One machine-written sentence per group of the away digest, asked of the assistant only while
// the user allows it ("summarizeAwayDrops"). States are kept per source id and not stored; a group
// whose notes changed is asked again, an unchanged one is not. Main thread only; only the
// provider's call leaves it.
class AwaySummarizer : public QObject {
    Q_OBJECT
public:
    struct State {
        enum class Kind { working, done, failed };
        Kind kind = Kind::working;
        QString fingerprint;  // which notes a working or finished summary is of
        QString summary;      // when done
        bool operator==(const State&) const = default;
    };

    AwaySummarizer(std::shared_ptr<AwaySummaryProvider> provider, std::function<bool()> isEnabled,
                   bool turkish, QObject* parent = nullptr);

    void summarize(const AwayDigest::Group& group);
    void cancelAll();
    std::optional<State> state(const QString& groupKey) const;
    const QHash<QString, State>& states() const { return _states; }

    static QString key(const AwayDigest::Group& group) { return group.sourceID; }
    static QString fingerprint(const AwayDigest::Group& group);
    static QString instruction(bool turkish);
    // One message per line, oldest first: "sender: line" when a person sent it.
    static QString input(const AwayDigest::Group& group);

Q_SIGNALS:
    void statesChanged();

private:
    static QCoro::Task<> run(QPointer<AwaySummarizer> self, std::shared_ptr<AwaySummaryProvider> provider,
                             QString key, quint64 request, QString instruction, QString input);
    void finish(const QString& key, quint64 request, std::optional<QString> summary);

    std::shared_ptr<AwaySummaryProvider> _provider;
    std::function<bool()> _isEnabled;
    bool _turkish;
    QHash<QString, State> _states;
    QHash<QString, quint64> _tasks;  // the live request of each group; a stale answer is dropped
    quint64 _nextRequest = 1;
};

}  // namespace vuro
