// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>

/// Limits of the service. A request beyond a limit is answered with an error.
namespace placesd::limits
{

/// Longest request, in bytes.
constexpr std::size_t REQUEST_SIZE = 4 * 1024 * 1024;
/// Longer requests, in bytes, run one at a time per channel: the objects made of them are many times larger.
constexpr std::size_t LONG_REQUEST = 256 * 1024;
/// Longest reply, in bytes.
constexpr std::size_t REPLY_SIZE = 64 * 1024 * 1024;
/// Longest record of a stored place, in bytes: a whole request and the values that the service adds.
constexpr std::size_t RECORD_SIZE = 2 * REQUEST_SIZE;
/// Maximum number of connections on the owner's channel; many more than all programs of a user need.
constexpr std::size_t OWNER_CONNECTIONS = 2048;
/// The same for the open channel, and for one user of it: two users alone cannot fill the channel.
constexpr std::size_t OPEN_CONNECTIONS = 1024;
constexpr std::size_t OPEN_USER_CONNECTIONS = 384;
/// File descriptors reserved for databases, logs, files and listening sockets; the rest is for connections.
constexpr std::size_t RESERVED_DESCRIPTORS = 256;
/// Pause after a failed accept, for example without free descriptors: an immediate retry would fail again.
constexpr std::chrono::milliseconds ACCEPT_PAUSE{10};
/// Maximum memory of the owner's channel for incomplete and waiting requests and for unsent replies, in bytes. Includes
/// replies under construction. Keeps the process below 200 MB.
constexpr std::size_t OWNER_MEMORY = 48 * 1024 * 1024;
/// The same for the open channel, and for one user of it: room for several requests of maximum size.
constexpr std::size_t OPEN_MEMORY = 32 * 1024 * 1024;
constexpr std::size_t OPEN_USER_MEMORY = 16 * 1024 * 1024;
/// Bytes of a connection that are not counted, so that most requests and replies need no lock for the budget.
constexpr std::size_t UNCOUNTED_BYTES = 4 * 1024;
/// A reply takes at most 1/REPLY_PART of the memory that its user has left. When this is less than REPLY_ROOM_MIN
/// bytes, old connections are closed.
constexpr std::size_t REPLY_PART = 4;
constexpr std::size_t REPLY_ROOM_MIN = 1024 * 1024;
/// Allocations of at least this size, in bytes, are mapped by the system and returned to it when freed.
constexpr int MAPPED_ALLOCATION = 128 * 1024;
/// Requests that one connection may run before other connections get a turn.
constexpr int REQUESTS_PER_TURN = 16;
/// Maximum time without a complete request, or without progress in sending a reply.
constexpr std::chrono::seconds CONNECTION_IDLE{60};
/// Longest time from the arrival of a request to its answer.
constexpr std::chrono::seconds REQUEST_TIME{20};
/// Time for running work after a stop signal; most requests finish within it.
constexpr std::chrono::seconds STOP_TIME{2};
/// Maximum time from then until the process ends. Callers may rely on five seconds in total.
constexpr std::chrono::seconds STOP_LIMIT{4};
/// Threads for requests that only read the store, and how many of them the open channel and one user of it may use. One
/// thread is always free for the owner.
constexpr int FAST_THREADS = 4;
constexpr int FAST_THREADS_OPEN = FAST_THREADS - 1;
constexpr int FAST_THREADS_OPEN_USER = FAST_THREADS_OPEN - 1;
/// Maximum time of a request in this pool. It is then restarted in the slow pool.
constexpr std::chrono::milliseconds FAST_TIME{100};
/// Threads for slow requests: providers, long finds, backup and restore. Half of them are reserved for the owner,
/// because a provider can block a thread until the request times out.
constexpr int SLOW_THREADS = 8;
constexpr int SLOW_THREADS_OPEN = SLOW_THREADS / 2;
constexpr int SLOW_THREADS_OPEN_USER = SLOW_THREADS_OPEN / 2;
/// Maximum number of requests in one transaction, and how many of them the open channel and one user of it may have.
constexpr int WRITES_PER_COMMIT = 40;
constexpr int WRITES_PER_COMMIT_OPEN = WRITES_PER_COMMIT / 2;
constexpr int WRITES_PER_COMMIT_OPEN_USER = WRITES_PER_COMMIT_OPEN / 2;
/// No request is added to a transaction of this size in bytes: all of its requests are answered only after the commit.
constexpr std::size_t WRITE_BYTES_PER_COMMIT = 1024 * 1024;
/// Idle prepared statements per SQL text, and their total memory per database connection, in bytes. Further statements
/// are prepared again for each use.
constexpr std::size_t IDLE_STATEMENTS_OF_TEXT = 8;
constexpr std::size_t IDLE_STATEMENT_MEMORY = 2 * 1024 * 1024;

/// Maximum number of places added through the open channel, and by one user of it.
constexpr long long OPEN_PLACES = 20000;
constexpr long long OPEN_USER_PLACES = 10000;
/// Maximum size of these places in bytes, and of one user's: records and index entries; see Store::Share.
constexpr long long OPEN_BYTES = 64LL * 1024 * 1024;
constexpr long long OPEN_USER_BYTES = OPEN_BYTES / 2;

/// Disk space reserved for removals, in bytes. It exceeds the pages that one removal changes, except for a place with
/// thousands of tags or properties.
constexpr long long RESERVE_SIZE = 8LL * 1024 * 1024;
/// Maximum number of places that one transaction removes from the recent bucket, so that the reserve suffices.
constexpr std::ptrdiff_t BUCKET_PIECE = 16;
/// Minimum time between two log messages about a full disk.
constexpr std::chrono::minutes REPORT_INTERVAL{1};

/// Maximum nesting of a search rule.
constexpr int RULE_DEPTH = 16;
/// Maximum number of nodes of a search or sort rule.
constexpr int RULE_COUNT = 500;
/// Maximum number of sort criteria of a find.
constexpr std::size_t SORT_CRITERIA = 16;
/// Maximum number of places in one reply.
constexpr int PAGE_SIZE = 10000;
/// Maximum number of locations, auxiliary records, tags and aliases of a place, and of properties of a record.
constexpr int LIST_LENGTH = 1000;
/// Longest text of a place or term, in UTF-16 units. Descriptions and values of properties have their own limits:
constexpr int TEXT_LENGTH = 4096;
constexpr int LONG_TEXT_LENGTH = 256 * 1024;
/// Maximum number of words of a term that are searched.
constexpr int TERM_WORDS = 64;
/// The vocabulary of the stored places is read again after growing by this many words, to drop words of removed places.
/// They take about 5 MB.
constexpr std::size_t VOCABULARY_SLACK = 250000;
/// Maximum number of letters of a word that is corrected.
constexpr int CORRECTED_LETTERS = 63;
/// Maximum number of corrections of a word, and of combinations of corrections of several words.
constexpr std::size_t CORRECTIONS_OF_WORD = 48;
constexpr std::size_t CORRECTED_WORDINGS = 16;
/// Maximum number of words of a term that are corrected.
constexpr std::size_t CORRECTED_WORDS = 8;
/// Maximum number of words looked up for one prefix, and for all prefixes of a term.
constexpr std::size_t EXPANSIONS_OF_WORD = 4;
constexpr std::size_t EXPANSIONS_OF_TERM = 128;
/// Maximum number of edits beyond the minimum that each word needs.
constexpr int MORE_EDITS = 2;
/// Maximum number of words of a term for a search that leaves words out.
constexpr std::size_t WORDS_IN_TURN = 8;
/// Maximum number of places counted to find which of two words is rarer.
constexpr int COUNTED_PLACES = 2000;
/// Maximum number of leaves of a rule that search sources other than the store.
constexpr std::size_t RULE_SOURCES = 8;
/// Results requested from a provider at once.
constexpr int PROVIDER_BATCH = 100;
/// Maximum number of results of a provider that a search reads, batch by batch.
constexpr int PROVIDER_RESULTS = 10000;
/// The same for a search that must read all of them before it can return any.
constexpr int PROVIDER_RESULTS_AT_ONCE = 1000;
/// Maximum number of bytes read from a vCard file.
constexpr long long VCARD_FILE_SIZE = 256LL * 1024 * 1024;
/// Maximum number of addresses of a contact, and of places of all contacts.
constexpr int CONTACT_ADDRESSES = 20;
constexpr std::size_t CONTACT_PLACES = 100000;
/// Maximum time for finding the position of a contact's address.
constexpr std::chrono::seconds GEOCODING_TIME{1};
/// Maximum time for removing words of removed places from the word indexes when the service stops.
constexpr std::chrono::seconds PURGE_TIME{3};
/// Maximum number of stored recent search terms.
constexpr int SEARCH_TERMS = 100;

} // namespace placesd::limits
