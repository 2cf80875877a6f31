// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/ContactBook.h"

#include "formats/Input.h"
#include "formats/VCard.h"
#include "formats/VCardFile.h"
#include "Limits.h"
#include "Log.h"
#include "model/PlacePrivate.h"
#include "places/AuxiliaryData.h"
#include "places/Place.h"
#include "sources/Gazetteer.h"
#include "store/IndexEntries.h"
#include "text/TextKeys.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace placesd
{

using namespace vela::platform::places;
namespace fs = std::filesystem;

namespace
{

/// 32-bit FNV-1a, made positive: a stable number for a text.
int hashOf(const QByteArray &text)
{
    std::uint32_t hash = 2166136261U;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return static_cast<int>(hash & 0x7fffffffU);
}

bool isVCardFile(const fs::directory_entry &entry)
{
    std::error_code ignored;
    const std::string extension = entry.path().extension().string();
    return (extension == ".vcf" || extension == ".vcard") && entry.is_regular_file(ignored);
}

/// Identifies a file in the log, because file names may be names of people. `find -inum` finds the file.
unsigned long long inodeOf(const fs::path &path)
{
    struct stat status = {};
    ::stat(path.c_str(), &status);
    return static_cast<unsigned long long>(status.st_ino);
}

/// Counters for the faults of a file of vCards.
struct Faults
{
    int cut = 0;
    int leftOut = 0;
    int unusable = 0;
    bool isTooLong = false;
    QString unread; ///< Why it was not read to its end; empty when it was.
};

void report(const fs::path &path, const Faults &faults)
{
    const unsigned long long inode = inodeOf(path);
    if (faults.cut > 0)
        logError("contacts: file with inode %llu: %d cards have no end; their lines were read", inode, faults.cut);
    if (faults.leftOut > 0)
        logError("contacts: file with inode %llu: %d lines are too long or too many for a card and were left out",
                 inode, faults.leftOut);
    if (faults.isTooLong)
        logError("contacts: file with inode %llu: too long; only its beginning was read", inode);
    if (faults.unusable > 0)
        logError("contacts: file with inode %llu: %d cards have no name or cannot be read, and were left out", inode,
                 faults.unusable);
    if (!faults.unread.isEmpty())
        logError("contacts: file with inode %llu cannot be read: %s", inode, qUtf8Printable(faults.unread));
}

} // namespace

ContactBook::ContactBook(std::string folder, Gazetteer *gazetteer)
    : m_folder(std::move(folder))
    , m_gazetteer(gazetteer)
    , m_reader([this] {
        const std::lock_guard<std::mutex> lock(m_reading);
        readChanges();
    })
{}

ContactBook::~ContactBook()
{
    m_stopping = true;
}

void ContactBook::reread()
{
    m_isStale = true;
    m_reader.runAgain();
}

bool ContactBook::isRead() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_contents != nullptr;
}

std::optional<std::vector<FoundPlace>> ContactBook::find(const TermTest &test, bool onlyRooms, Deadline deadline)
{
    const Snapshot all = contents(deadline);
    if (!all)
        return {};
    std::vector<FoundPlace> found;
    for (const Entry &entry : all->entries) {
        if ((entry.isRoom || !onlyRooms) && test(test.isOfNames() ? entry.nameKey : entry.textKey))
            found.push_back(entry.place);
    }
    return found;
}

std::shared_ptr<const Vocabulary> ContactBook::vocabulary(Deadline deadline)
{
    const Snapshot all = contents(deadline);
    return all ? std::shared_ptr<const Vocabulary>(all, &all->words) : nullptr;
}

FoundPlace ContactBook::place(const QString &externalId, Deadline deadline)
{
    const Snapshot all = contents(deadline);
    if (!all)
        return nullptr;
    const bool isAny = externalId.endsWith(QLatin1String(",0"));
    const QString start = isAny ? externalId.chopped(1) : externalId;
    const auto found = std::find_if(all->entries.begin(), all->entries.end(), [&](const Entry &entry) {
        return isAny ? entry.externalId.startsWith(start) : entry.externalId == start;
    });
    return found == all->entries.end() ? nullptr : found->place;
}

/// The current contacts, after a check for changes.
ContactBook::Snapshot ContactBook::contents(Deadline deadline)
{
    // While one thread reads, the others use the previous contents.
    if (const std::unique_lock<std::mutex> turn(m_reading, std::try_to_lock); turn)
        readChanges();
    std::unique_lock<std::mutex> lock(m_mutex);
    waitUntil(m_isThere, lock, deadline, [this] { return m_contents != nullptr; });
    return m_contents;
}

void ContactBook::readChanges()
{
    if (!hasChanged())
        return;
    try {
        m_files = readFolder();
    } catch (const fs::filesystem_error &error) {
        if (!m_isMissing)
            logError("contacts: there are none until their folder can be read: %s", error.what());
        m_isMissing = true;
        m_files.clear();
    }
    Snapshot fresh = contentsOf(m_files);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_contents = std::move(fresh);
    }
    m_isThere.notify_all();
}

ContactBook::Snapshot ContactBook::contentsOf(const std::map<std::string, File> &files)
{
    auto contents = std::make_shared<Contents>();
    Entries &entries = contents->entries;
    for (const auto &file : files)
        entries.insert(entries.end(), file.second.entries.begin(), file.second.entries.end());
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry &a, const Entry &b) { return a.sortKey < b.sortKey; });
    std::vector<std::string> all;
    for (const Entry &entry : entries) {
        for (std::string &word : utf8Words(QString::fromStdString(entry.textKey)))
            all.push_back(std::move(word));
    }
    contents->words.add(std::move(all));
    return contents;
}

/// Whether the folder may have changed since the last reading. A missing folder is looked for each time.
bool ContactBook::hasChanged()
{
    const int generation = m_gazetteer ? m_gazetteer->generation() : 0;
    bool changed = m_isStale.exchange(false) || generation != m_geocodedWith;
    if (changed)
        m_files.clear();
    m_geocodedWith = generation;

    if (!m_changes.isOpen()) {
        constexpr unsigned int CHANGES =
            IN_CLOSE_WRITE | IN_MOVE | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
        m_changes.reset(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
        if (::inotify_add_watch(m_changes.get(), m_folder.c_str(), CHANGES) < 0)
            m_changes.reset();
        return true;
    }
    alignas(inotify_event) std::array<char, 4096> events = {};
    for (ssize_t size = 0; (size = ::read(m_changes.get(), events.data(), events.size())) > 0;) {
        changed = true;
        for (ssize_t at = 0; at < size;) {
            inotify_event event = {};
            std::memcpy(&event, events.data() + at, sizeof event);
            at += static_cast<ssize_t>(sizeof event) + static_cast<ssize_t>(event.len);
            // The folder itself was removed or replaced; the next check watches the new one.
            if (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED)) {
                m_changes.reset();
                return true;
            }
        }
    }
    return changed;
}

ContactBook::Entry ContactBook::entryFor(const FoundPlace &place, bool isRoom)
{
    return {place,
            place->auxiliaryData(0).externalId(),
            sortKey(place->name()),
            indexKey(place->name()).toStdString(),
            textKeyOf(*PlacePrivate::privateFromPublic(place.get())).toStdString(),
            isRoom};
}

std::map<std::string, ContactBook::File> ContactBook::readFolder()
{
    std::map<std::string, File> files;
    const fs::directory_iterator folder(m_folder);
    m_isMissing = false;
    std::size_t count = 0;
    for (const fs::directory_entry &entry : folder) {
        if (m_stopping)
            break;
        if (!isVCardFile(entry))
            continue;
        const auto known = m_files.find(entry.path().string());
        std::error_code ignored;
        const bool isSame = known != m_files.end() && known->second.size == entry.file_size(ignored)
                            && known->second.time == entry.last_write_time(ignored);
        File file = isSame ? std::move(known->second) : readFile(entry);
        count += file.entries.size();
        if (count > limits::CONTACT_PLACES) {
            logError("contacts: %s has more than %zu places; the rest was left out", m_folder.c_str(),
                     limits::CONTACT_PLACES);
            break;
        }
        files.emplace(entry.path().string(), std::move(file));
    }
    return files;
}

ContactBook::File ContactBook::readFile(const fs::directory_entry &entry)
{
    std::error_code ignored;
    File file;
    file.size = entry.file_size(ignored);
    file.time = entry.last_write_time(ignored);
    const Geocode geocode = [this](const Address &address) {
        return m_geocodedWith > 0 ? m_gazetteer->geocode(address, Clock::now() + limits::GEOCODING_TIME)
                                  : Coordinates();
    };
    int number = 0;
    Faults faults;
    const auto take = [&](const formats::CardText &card) {
        const formats::VCard contact(card.text);
        // The id of a card without a UID is its file and position.
        const QByteArray key = contact.uid().isEmpty()
                                   ? QByteArray(entry.path().filename().c_str()) + '#' + QByteArray::number(number)
                                   : contact.uid().toUtf8();
        ++number;
        faults.cut += card.isCut ? 1 : 0;
        faults.leftOut += card.leftOut;
        if (contact.name().isEmpty())
            ++faults.unusable;
        for (const FoundPlace &place : placesOf(contact, idFor(key), geocode))
            file.entries.push_back(entryFor(place, isRoom(contact)));
        return true;
    };
    formats::Input cards(QString::fromLocal8Bit(entry.path().c_str()));
    faults.isTooLong = !formats::splitVCards(cards, take, limits::VCARD_FILE_SIZE);
    faults.unread = cards.problem();
    report(entry.path(), faults);
    return file;
}

/// The number of a contact, derived from the contact alone if possible.
int ContactBook::idFor(const QByteArray &key)
{
    int id = hashOf(key);
    for (auto taken = m_ids.find(id); taken != m_ids.end() && taken->second != key; taken = m_ids.find(id))
        id = id < std::numeric_limits<int>::max() ? id + 1 : 1;
    m_ids.emplace(id, key);
    return id;
}

} // namespace placesd
