// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"
#include "sources/ContactPlaces.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace placesd
{

class Gazetteer;

/// The contacts of a folder of vCard files, as places. They are read in the background at first, and again whenever a
/// file has changed, by whoever asks next. Safe on any thread.
class ContactBook
{
public:
    /// @param gazetteer what finds the positions of addresses, as soon as it is ready; null for nothing. It outlives
    /// the book.
    ContactBook(std::string folder, Gazetteer *gazetteer);
    ~ContactBook();
    ContactBook(const ContactBook &) = delete;
    ContactBook &operator=(const ContactBook &) = delete;

    /// Whether nobody has to wait for the contacts to be read for the first time.
    [[nodiscard]] bool isRead() const;

    /// Places of contacts, or of rooms only, whose name has a word starting with each word of the term, by name. Unset
    /// when the contacts were not read by the deadline.
    std::optional<std::vector<FoundPlace>> find(const QString &term, bool onlyRooms, Deadline deadline);
    /// The place of this id; with the number 0, the contact's first. Null when there is none.
    FoundPlace place(const QString &externalId, Deadline deadline);

private:
    /// A place, ready to be searched.
    struct Entry
    {
        FoundPlace place;
        QString externalId;
        QString sortKey;
        QString key;       ///< Of the name, without case and accents.
        QStringList words; ///< Of the key, sorted.
        bool isRoom = false;
    };
    using Entries = std::vector<Entry>;
    using Snapshot = std::shared_ptr<const Entries>;
    /// A file as it was when it was read.
    struct File
    {
        std::uintmax_t size = 0;
        std::filesystem::file_time_type time;
        Entries entries;
    };

    static Entry entryFor(const FoundPlace &place, bool isRoom);
    Snapshot entries(Deadline deadline);
    void readChanges();
    bool hasChanged();
    std::map<std::string, File> readFolder();
    File readFile(const std::filesystem::directory_entry &file);
    int idFor(const QByteArray &key);

    const std::string m_folder;
    Gazetteer *const m_gazetteer;

    std::atomic<bool> m_stopping = false;

    std::mutex m_reading;
    // Guarded by m_reading: what only the reader needs.
    vela::system::channel::Descriptor m_changes; ///< Tells of changes in the folder; closed while it cannot be watched.
    bool m_isMissing = false;
    bool m_isGeocoded = false;
    std::map<std::string, File> m_files;
    std::map<int, QByteArray> m_ids; ///< Contacts by the ids that they have got.

    mutable std::mutex m_mutex;
    std::condition_variable m_isThere;
    Snapshot m_entries; ///< Guarded by m_mutex; null before the first reading.

    std::thread m_firstReader;
};

} // namespace placesd
