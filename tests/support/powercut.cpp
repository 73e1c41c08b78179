#include "support/powercut.h"

#include <algorithm>

using RecordedFiles::Event;

namespace {

constexpr qint64 sector = 512;

void overwrite(QByteArray &content, qint64 at, const char *data, qint64 size)
{
    if (content.size() < at + size)
        content.append(QByteArray(int(at + size - content.size()), '\0'));
    std::copy_n(data, size, content.data() + at);
}

void truncate(QByteArray &content, qint64 size)
{
    if (content.size() > size)
        content.truncate(int(size));
}

void applyAll(QByteArray &content, const Event &event)
{
    if (event.kind == Event::Truncate)
        truncate(content, event.at);
    else
        overwrite(content, event.at, event.text.constData(), event.text.size());
}

/// Each piece with a probability of one half. One that is missing may still have made the file longer.
void applyPieces(QByteArray &content, const Event &event, QRandomGenerator &random)
{
    if (event.kind == Event::Truncate) {
        if (random.bounded(2) == 0)
            truncate(content, event.at);
        return;
    }
    const qint64 end = event.at + event.text.size();
    for (qint64 at = event.at; at < end;) {
        const qint64 next = std::min(end, (at / sector + 1) * sector);
        const int chance = random.bounded(4);
        if (chance < 2)
            overwrite(content, at, event.text.constData() + (at - event.at), next - at);
        else if (chance == 2)
            overwrite(content, next, nullptr, 0);
        at = next;
    }
}

} // namespace

PowerCut::PowerCut(const RecordedFiles::History &history) : m_syncedNames(history.numbers)
{
    for (auto content = history.contents.cbegin(); content != history.contents.cend(); ++content)
        m_files[content.key()].synced = content.value();
}

void PowerCut::apply(const Event &event)
{
    ++m_count;
    switch (event.kind) {
    case Event::Write:
    case Event::Truncate:
        m_files[event.file].unsynced.append({event, m_count});
        break;
    case Event::Sync: {
        File &file = m_files[event.file];
        for (const Change &change : qAsConst(file.unsynced))
            applyAll(file.synced, change.event);
        file.unsynced.clear();
        break;
    }
    case Event::Create:
    case Event::Delete:
        m_unsyncedNames.append({event, m_count});
        break;
    case Event::SyncFolder:
        for (const Change &change : qAsConst(m_unsyncedNames)) {
            if (change.event.kind == Event::Create)
                m_syncedNames.insert(change.event.text, change.event.file);
            else
                m_syncedNames.remove(change.event.text);
        }
        m_unsyncedNames.clear();
        break;
    case Event::Note:
        break;
    }
}

bool PowerCut::isCertain() const
{
    const auto isSynced = [](const File &file) { return file.unsynced.isEmpty(); };
    return m_unsyncedNames.isEmpty() && std::all_of(m_files.cbegin(), m_files.cend(), isSynced);
}

PowerCut::Folder PowerCut::withRandomPart(QRandomGenerator &random) const
{
    const int percent = 10 + 20 * random.bounded(5);
    const auto perhaps = [&random, percent](Part part) {
        return random.bounded(100) < percent ? part : Nothing;
    };
    const int chosen = m_count - random.bounded(std::min(m_count, 40) + 1);
    switch (random.bounded(4)) {
    case 0: // in order, the last one in pieces
        return folder(
            [chosen](int number) {
                return number < chosen ? Everything : number == chosen ? RandomPieces : Nothing;
            },
            &random);
    case 1: // all but one
        return folder([chosen](int number) { return number == chosen ? RandomPieces : Everything; }, &random);
    case 2:
        return folder([&](int) { return perhaps(Everything); }, &random);
    default:
        return folder([&](int) { return perhaps(RandomPieces); }, &random);
    }
}

PowerCut::Folder PowerCut::folder(const Choice &choice, QRandomGenerator *random) const
{
    QHash<QByteArray, int> names = m_syncedNames;
    for (const Change &change : m_unsyncedNames) {
        if (choice(change.number) == Nothing)
            continue;
        if (change.event.kind == Event::Create)
            names.insert(change.event.text, change.event.file);
        else
            names.remove(change.event.text);
    }
    Folder folder;
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        folder.insert(name.key(), contentOf(m_files.value(name.value()), choice, random));
    return folder;
}

QByteArray PowerCut::contentOf(const File &file, const Choice &choice, QRandomGenerator *random) const
{
    QByteArray content = file.synced;
    for (const Change &change : file.unsynced) {
        switch (choice(change.number)) {
        case Nothing:
            break;
        case Everything:
            applyAll(content, change.event);
            break;
        case RandomPieces:
            applyPieces(content, change.event, *random);
            break;
        }
    }
    return content;
}
