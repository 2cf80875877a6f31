// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"
#include "sources/BackgroundJob.h"
#include "sources/ContactPlaces.h"
#include "text/TermTest.h"
#include "text/Vocabulary.h"

#include <QtCore/QString>

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>

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

    /// Reads all files again, in the background.
    void reread();

    /// Whether nobody has to wait for the contacts to be read for the first time.
    [[nodiscard]] bool isRead() const;

    /// Places of contacts, or of rooms only, that pass the test, by name. Unset when the contacts were not read by the
    /// deadline.
    std::optional<std::vector<FoundPlace>> find(const TermTest &test, bool onlyRooms, Deadline deadline);
    /// The words of all their texts; null when they were not read by the deadline.
    std::shared_ptr<const Vocabulary> vocabulary(Deadline deadline);
    /// The place of this id; with the number 0, the contact's first. Null when there is none.
    FoundPlace place(const QString &externalId, Deadline deadline);

private:
    /// A place, ready to be searched.
    struct Entry
    {
        FoundPlace place;
        QString externalId;
        QString sortKey;
        std::string nameKey; ///< Index key, as the next one.
        std::string textKey; ///< Of all texts.
        bool isRoom = false;
    };
    using Entries = std::vector<Entry>;
    /// What was read of all files.
    struct Contents
    {
        Entries entries; ///< By name.
        Vocabulary words;
    };
    using Snapshot = std::shared_ptr<const Contents>;
    /// A file as it was when it was read.
    struct File
    {
        std::uintmax_t size = 0;
        std::filesystem::file_time_type time;
        Entries entries;
    };

    static Entry entryFor(const FoundPlace &place, bool isRoom);
    Snapshot contents(Deadline deadline);
    static Snapshot contentsOf(const std::map<std::string, File> &files);
    void readChanges();
    bool hasChanged();
    std::map<std::string, File> readFolder();
    File readFile(const std::filesystem::directory_entry &file);
    int idFor(const QByteArray &key);

    const std::string m_folder;
    Gazetteer *const m_gazetteer;

    std::atomic<bool> m_stopping = false;
    std::atomic<bool> m_isStale = false; ///< All files are to be read again, also those that look the same.

    std::mutex m_reading;
    // Guarded by m_reading: what only the reader needs.
    vela::system::channel::Descriptor m_changes; ///< Tells of changes in the folder; closed while it cannot be watched.
    bool m_isMissing = false;
    int m_geocodedWith = 0; ///< Generation of the gazetteer that found the positions; 0 for none.
    std::map<std::string, File> m_files;
    std::map<int, QByteArray> m_ids; ///< Contacts by the ids that they have got.

    mutable std::mutex m_mutex;
    std::condition_variable m_isThere;
    Snapshot m_contents; ///< Guarded by m_mutex; null before the first reading.

    BackgroundJob m_reader;
};

} // namespace placesd
