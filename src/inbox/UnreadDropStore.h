#pragma once

#include <QSet>
#include <QString>

namespace vuro {

// Where the ids of unread drop notes are kept between runs. Main thread only.
class UnreadDropStore {
public:
    virtual ~UnreadDropStore() = default;
    virtual QSet<QString> load() = 0;
    virtual void save(const QSet<QString>& ids) = 0;
};

// The twin for tests and for runs without preferences.
class InMemoryUnreadDropStore : public UnreadDropStore {
public:
    explicit InMemoryUnreadDropStore(QSet<QString> ids = {}) : _ids(std::move(ids)) {}
    QSet<QString> load() override { return _ids; }
    void save(const QSet<QString>& ids) override {
        _ids = ids;
        ++_saveCount;
    }
    int saveCount() const { return _saveCount; }

private:
    QSet<QString> _ids;
    int _saveCount = 0;
};

}  // namespace vuro
