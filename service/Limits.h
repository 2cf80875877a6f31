// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>

/// What the service allows. A request outside these gets an answer that says so, and the service goes on.
namespace placesd::limits
{

/// Longest request, in bytes.
constexpr std::size_t REQUEST_SIZE = 4 * 1024 * 1024;
/// Requests longer than this, in bytes, run one at a time for each channel: what is made of them takes many times that.
constexpr std::size_t LONG_REQUEST = 256 * 1024;
/// Longest reply, in bytes.
constexpr std::size_t REPLY_SIZE = 64 * 1024 * 1024;
/// Longest record of a stored place, in bytes: what a request can carry, and what the service adds to it.
constexpr std::size_t RECORD_SIZE = 2 * REQUEST_SIZE;
/// Most connections at once on the owner's channel: enough for all programs of a user, several times over.
constexpr std::size_t OWNER_CONNECTIONS = 2048;
/// The same for the open channel, and for one of its users: two users alone never fill it.
constexpr std::size_t OPEN_CONNECTIONS = 1024;
constexpr std::size_t OPEN_USER_CONNECTIONS = 384;
/// Descriptors for databases, logs, files and sockets that listen; the rest are for connections.
constexpr std::size_t RESERVED_DESCRIPTORS = 256;
/// Time that accepting rests after a failure, such as a lack of descriptors: it would fail again at once.
constexpr std::chrono::milliseconds ACCEPT_PAUSE{10};
/// Bytes of requests that have not arrived in full or wait, and of replies on their way, over all connections of the
/// owner's channel. A reply in the making counts as well. This keeps the process below 200 MB.
constexpr std::size_t OWNER_MEMORY = 48 * 1024 * 1024;
/// The same for the open channel, and for one of its users: several of the longest requests.
constexpr std::size_t OPEN_MEMORY = 32 * 1024 * 1024;
constexpr std::size_t OPEN_USER_MEMORY = 16 * 1024 * 1024;
/// Bytes of a connection that are not counted: most requests and replies never cost a look at the budget.
constexpr std::size_t UNCOUNTED_BYTES = 4 * 1024;
/// A reply takes at most this part of what its user has left, so that others have room beside it. Old connections are
/// closed for one that could not have REPLY_ROOM_MIN bytes.
constexpr std::size_t REPLY_PART = 4;
constexpr std::size_t REPLY_ROOM_MIN = 1024 * 1024;
/// Memory that is asked for in pieces of this many bytes goes back to the system as soon as it is free.
constexpr int MAPPED_ALLOCATION = 128 * 1024;
/// Requests of one connection that are answered before others have their turn.
constexpr int REQUESTS_PER_TURN = 16;
/// Longest time that a connection may stand without a whole request, or without taking its reply.
constexpr std::chrono::seconds CONNECTION_IDLE{60};
/// Longest time from the arrival of a request to its answer.
constexpr std::chrono::seconds REQUEST_TIME{20};
/// Time that work under way has left once the service is told to stop; most requests end by themselves in it.
constexpr std::chrono::seconds STOP_TIME{2};
/// Time from there on until the process ends at the latest. A caller that waits for it may count on five seconds.
constexpr std::chrono::seconds STOP_LIMIT{4};
/// Threads that answer requests from the store alone, without writing to it; most that the open channel and one of its
/// users keep busy. One thread is always there for the owner.
constexpr int FAST_THREADS = 4;
constexpr int FAST_THREADS_OPEN = FAST_THREADS - 1;
constexpr int FAST_THREADS_OPEN_USER = FAST_THREADS_OPEN - 1;
/// Longest time that a request keeps one of these threads busy. It starts anew as a slow request then.
constexpr std::chrono::milliseconds FAST_TIME{100};
/// Threads for slow requests: providers, long finds, backup and restore. Half of them are for the owner alone: a
/// provider may hold a thread for all the time that a request has.
constexpr int SLOW_THREADS = 8;
constexpr int SLOW_THREADS_OPEN = SLOW_THREADS / 2;
constexpr int SLOW_THREADS_OPEN_USER = SLOW_THREADS_OPEN / 2;
/// Most requests that share one transaction, and how many of them the open channel and one of its users have.
constexpr int WRITES_PER_COMMIT = 40;
constexpr int WRITES_PER_COMMIT_OPEN = WRITES_PER_COMMIT / 2;
constexpr int WRITES_PER_COMMIT_OPEN_USER = WRITES_PER_COMMIT_OPEN / 2;
/// Bytes of requests after which a transaction takes no more of them: others wait for the answer of the longest.
constexpr std::size_t WRITE_BYTES_PER_COMMIT = 1024 * 1024;
/// Idle prepared statements of one text, and memory of all of them for each connection to the database, in bytes.
/// Beyond that they are prepared anew.
constexpr std::size_t IDLE_STATEMENTS_OF_TEXT = 8;
constexpr std::size_t IDLE_STATEMENT_MEMORY = 2 * 1024 * 1024;

/// Most places that came by the open channel, and most of one of its users.
constexpr long long OPEN_PLACES = 20000;
constexpr long long OPEN_USER_PLACES = 10000;
/// Bytes of all of them, and of those of one user: their records and what they are found by, see Store::Share.
constexpr long long OPEN_BYTES = 64LL * 1024 * 1024;
constexpr long long OPEN_USER_BYTES = OPEN_BYTES / 2;

/// Room on the disk that is kept for removing places, in bytes: more than the pages that one removal changes, unless
/// the place has thousands of tags or properties.
constexpr long long RESERVE_SIZE = 8LL * 1024 * 1024;
/// Most places that one transaction takes out of the recent bucket, so that it needs no more room than that.
constexpr std::ptrdiff_t BUCKET_PIECE = 16;
/// Shortest time between two messages that the disk is full.
constexpr std::chrono::minutes REPORT_INTERVAL{1};

/// Deepest nesting of a search rule.
constexpr int RULE_DEPTH = 16;
/// Most nodes of a search or sort rule.
constexpr int RULE_COUNT = 500;
/// Most criteria that one find sorts by.
constexpr std::size_t SORT_CRITERIA = 16;
/// Most places in one reply.
constexpr int PAGE_SIZE = 10000;
/// Most locations, auxiliary records, tags or aliases of a place, and properties of a record.
constexpr int LIST_LENGTH = 1000;
/// Longest text of a place or of a term, in UTF-16 units, but for these: descriptions and values of properties.
constexpr int TEXT_LENGTH = 4096;
constexpr int LONG_TEXT_LENGTH = 256 * 1024;
/// Most words of a term whose words are searched for.
constexpr int TERM_WORDS = 64;
/// Words that the vocabulary of the stored places grows by before it is read again: what was removed is not in it then.
/// They take some 5 MB.
constexpr std::size_t VOCABULARY_SLACK = 250000;
/// Most letters of a typed word that is corrected.
constexpr int CORRECTED_LETTERS = 63;
/// Most corrections of a word that a search tries, and most combinations of those of several words.
constexpr std::size_t CORRECTIONS_OF_WORD = 48;
constexpr std::size_t CORRECTED_WORDINGS = 16;
/// Most words of a term that a search corrects.
constexpr std::size_t CORRECTED_WORDS = 8;
/// Most words that a search looks up for the beginning of one, and for those of a term.
constexpr std::size_t EXPANSIONS_OF_WORD = 4;
constexpr std::size_t EXPANSIONS_OF_TERM = 128;
/// Edits that a search tries beyond those that each word needs on its own.
constexpr int MORE_EDITS = 2;
/// Most words of a term of which a search leaves some out.
constexpr std::size_t WORDS_IN_TURN = 8;
/// Places with a word that are counted to tell which of two words is rarer.
constexpr int COUNTED_PLACES = 2000;
/// Most leaves of a rule that find what is not stored.
constexpr std::size_t RULE_SOURCES = 8;
/// Results that a provider is asked for at once.
constexpr int PROVIDER_BATCH = 100;
/// Most results of a provider that a search goes through, batch by batch.
constexpr int PROVIDER_RESULTS = 10000;
/// The same for a search that has to know all of them before it can give any.
constexpr int PROVIDER_RESULTS_AT_ONCE = 1000;
/// The part of a file of vCards that is read, in bytes.
constexpr long long VCARD_FILE_SIZE = 256LL * 1024 * 1024;
/// Most addresses of a contact, and places of all contacts.
constexpr int CONTACT_ADDRESSES = 20;
constexpr std::size_t CONTACT_PLACES = 100000;
/// Longest time that a contact's address is looked for.
constexpr std::chrono::seconds GEOCODING_TIME{1};
/// Longest time that names of removed places are taken out of the index of words, at the end of the service.
constexpr std::chrono::seconds FORGETTING_TIME{3};
/// Most recent search terms that are kept.
constexpr int SEARCH_TERMS = 100;

} // namespace placesd::limits
