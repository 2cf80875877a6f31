// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <string_view>
#include <vector>

/// Forms of texts for comparison, search and sorting. The full-text indexes contain keys and split words like words(),
/// so that all operators treat a name alike.
namespace placesd
{

/// Version of the rules for keys and of their Unicode data. Keys of another version may differ.
std::string keyVersion();

/// Without case and accents, Latin letters as ASCII ("Łódź" as "lodz"). Texts with the same key are equal for a search.
/// Marks that are no accents, such as vowel signs of many scripts, are kept.
QString searchKey(const QString &text);

/// Without case; the sort key of names, for all locales.
QString sortKey(const QString &text);

/// Ends the search key in an index key.
constexpr char KEY_END = '\x1F';
/// The content of a full-text index for a text: its search key and, after KEY_END, other spellings of its words, if
/// any. These are umlauts as two letters ("glueck" for "Glück"), words without their apostrophes ("ohare" for
/// "O'Hare"), words of other scripts in Latin letters ("moskva" for "Москва"), and pairs of characters of scripts
/// without spaces.
QString indexKey(const QString &text);
/// The same for several texts of one place: the search key of each, ended by KEY_END, then the other spellings of all.
/// Its search key is that of the first text.
QString indexKey(const QStringList &texts);
/// True when `key`, which is not empty, equals the search key of one of the texts of an index key.
bool isTextIn(std::string_view indexKey, std::string_view key);
/// The search key in an index key.
std::string_view searchKeyIn(std::string_view indexKey);

/// The words of a text without duplicates: runs of letters, digits, marks and pictographs.
QStringList words(const QString &text);
/// The same in UTF-8, for a vocabulary.
std::vector<std::string> utf8Words(const QString &text);

/// Whether a code point belongs to a script without spaces between words.
bool isUnspaced(uint code);

/// The proper prefixes of a key that end with a word, the shortest first.
/// @param most maximum number of prefixes.
std::vector<std::string> wordStarts(std::string_view key, std::size_t most);

/// True when `start` is the prefix of a word of `key`, or with `isWhole` a whole word of it. `key` is valid UTF-8.
bool hasWord(std::string_view key, std::string_view start, bool isWhole = false);

/// Tests UTF-8 texts against a condition of a search rule. Created once per rule, called for each place.
class TextTest
{
public:
    /// @param op a number of SearchOperator.
    /// @param term compared with the texts, folded like them.
    TextTest(int op, const QString &term);

    /// False for an operator that does not compare texts.
    [[nodiscard]] bool isUnderstood() const;
    [[nodiscard]] bool operator()(std::string_view text) const;

    [[nodiscard]] int op() const { return m_op; }
    [[nodiscard]] const std::string &term() const { return m_term; }

private:
    [[nodiscard]] bool containsWords(std::string_view text) const;

    int m_op;
    std::string m_term;
    std::vector<std::string> m_words; ///< Words of the term, for the operator that compares words.
};

} // namespace placesd
