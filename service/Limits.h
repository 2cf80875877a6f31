// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>

/// What the service allows. A request outside these gets an answer that says so, and the service goes on.
namespace placesd::limits
{

/// Longest request, in bytes.
constexpr std::size_t REQUEST_SIZE = 4 * 1024 * 1024;
/// Longest reply, in bytes.
constexpr std::size_t REPLY_SIZE = 64 * 1024 * 1024;
/// Longest record of a stored place, in bytes: what a request can carry, and what the service adds to it.
constexpr std::size_t RECORD_SIZE = 2 * REQUEST_SIZE;
/// Most connections open at once.
constexpr int CONNECTIONS = 256;
/// Requests of one connection that are answered before others have their turn.
constexpr int REQUESTS_PER_TURN = 16;
/// Longest time that a connection may stand without a whole request, or without taking its reply.
constexpr std::chrono::seconds CONNECTION_IDLE{60};
/// Longest time from the arrival of a request to its answer.
constexpr std::chrono::seconds REQUEST_TIME{20};
/// Threads that answer requests from the store alone, without writing to it.
constexpr int FAST_THREADS = 4;
/// Threads for slow requests: providers, backup and restore.
constexpr int SLOW_THREADS = 8;
/// Most requests that share one transaction.
constexpr std::size_t WRITES_PER_COMMIT = 40;

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
/// Most lines of a vCard, longest such line and all of them together, in bytes. A folded line is one. Parsing takes the
/// square of the lines, and of the parameters of one.
constexpr int VCARD_LINES = 500;
constexpr int VCARD_LINE_SIZE = 16 * 1024;
constexpr int VCARD_SIZE = 256 * 1024;
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
