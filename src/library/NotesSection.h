#pragma once

#include <QString>

namespace vuro {

// A place in the sidebar of the Notes window. folder and tag carry their argument in `value`
// (a folder id, a tag name); the other kinds carry none.
struct NotesSection {
    enum class Kind { folder, tag, all, tasks, agents, archive };

    Kind kind = Kind::all;
    QString value;

    static NotesSection folder(QString id) { return {Kind::folder, std::move(id)}; }
    static NotesSection tag(QString name) { return {Kind::tag, std::move(name)}; }
    static NotesSection all() { return {Kind::all, {}}; }
    static NotesSection tasks() { return {Kind::tasks, {}}; }
    static NotesSection agents() { return {Kind::agents, {}}; }
    static NotesSection archive() { return {Kind::archive, {}}; }

    bool operator==(const NotesSection&) const = default;
};

}  // namespace vuro
