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

/// The contacts of a folder of vCard files, as places. The first reading runs in the background; after a change of a
/// file the next caller reads it again. Thread-safe.
class ContactBook
{
public:
    /// @param gazetteer finds the positions of addresses once it is ready; null for no positions. Must outlive the
    /// book.
    ContactBook(std::string folder, Gazetteer *gazetteer);
    ~ContactBook();
    /// Why this build cannot read contacts; empty when it can.
    static QString missingSupport();
    ContactBook(const ContactBook &) = delete;
    ContactBook &operator=(const ContactBook &) = delete;

    /// Reads all files again in the background.
    void reread();

    /// Whether the first reading is done.
    [[nodiscard]] bool isRead() const;

    /// The places of contacts, or of rooms only, that pass the test, by name. Unset when the contacts are not read by
    /// the deadline.
    std::optional<std::vector<FoundPlace>> find(const TermTest &test, bool onlyRooms, Deadline deadline);
    /// The words of all texts of the contacts; null when they are not read by the deadline.
    std::shared_ptr<const Vocabulary> vocabulary(Deadline deadline);
    /// The place with this id; the number 0 is the contact's first place. Null when there is none.
    FoundPlace place(const QString &externalId, Deadline deadline);

private:
    /// A place with its search keys.
    struct Entry
    {
        FoundPlace place;
        QString externalId;
        QString sortKey;
        std::string nameKey; ///< An index key, like textKey.
        std::string textKey; ///< Of all texts.
        bool isRoom = false;
    };
    using Entries = std::vector<Entry>;
    /// Contents of all files.
    struct Contents
    {
        Entries entries; ///< By name.
        Vocabulary words;
    };
    using Snapshot = std::shared_ptr<const Contents>;
    /// The state of a file when it was read.
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
    std::atomic<bool> m_isStale = false; ///< Read all files again, including unchanged ones.

    std::mutex m_reading;
    // Guarded by m_reading: state of the thread that reads.
    vela::system::channel::Descriptor m_changes; ///< Reports changes in the folder; closed while the folder cannot be
                                                 ///< watched.
    bool m_isMissing = false;
    int m_geocodedWith = 0; ///< Generation of the gazetteer that found the positions; 0 for none.
    std::map<std::string, File> m_files;
    std::map<int, QByteArray> m_ids; ///< Keys of contacts by their numbers.

    mutable std::mutex m_mutex;
    std::condition_variable m_isThere;
    Snapshot m_contents; ///< Guarded by m_mutex; null before the first reading.

    BackgroundJob m_reader;
};

} // namespace placesd
