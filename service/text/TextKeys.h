// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <string_view>
#include <vector>

/// The forms in which texts are compared, searched and sorted. The full-text indexes hold keys and take for a word what
/// words() takes for one, so that every operator sees a name alike.
namespace placesd
{

/// Version of the rules by which keys are made, with that of the Unicode data behind them. Keys of another version
/// are not those that are made now.
std::string keyVersion();

/// Without case and accents, Latin letters as ASCII ("Łódź" as "lodz"). Texts with the same key are the same for a
/// search. Signs that are no accents, such as the vowels of many scripts, stay.
QString searchKey(const QString &text);

/// Without case: what names are sorted by, whatever the locale.
QString sortKey(const QString &text);

/// Ends the search key in an index key.
constexpr char KEY_END = '\x1F';
/// What a full-text index holds of a text: its search key and, behind KEY_END if there are any, other spellings of its
/// words. These are umlauts as two letters ("glueck" for "Glück"), words without their apostrophes ("ohare" for
/// "O'Hare"), words of other scripts in Latin letters ("moskva" for "Москва"), and the pairs of characters of scripts
/// that are written without spaces.
QString indexKey(const QString &text);
/// The same for several texts of one place: the search key of each, ended by KEY_END, and the other spellings of all.
/// The search key is that of the first.
QString indexKey(const QStringList &texts);
/// True when `key`, which is not empty, is the search key of one of the texts of an index key.
bool isTextIn(std::string_view indexKey, std::string_view key);
/// The search key in an index key.
std::string_view searchKeyIn(std::string_view indexKey);

/// The words of a text, each once: runs of letters, digits, marks and pictographs.
QStringList words(const QString &text);
/// The same in UTF-8, as a vocabulary takes them.
std::vector<std::string> utf8Words(const QString &text);

/// Whether a code point belongs to a script that is written without spaces between words.
bool isUnspaced(uint code);

/// The beginnings of a key that end with a word but not with the key, the shortest first.
/// @param most beginnings that are given.
std::vector<std::string> wordStarts(std::string_view key, std::size_t most);

/// True when `start` starts a word of `key`, which is a key in valid UTF-8, or is a whole word of it.
bool hasWord(std::string_view key, std::string_view start, bool isWhole = false);

/// Whether a text, in UTF-8, fulfils a condition of a search rule. Made once for a rule, asked for each place.
class TextTest
{
public:
    /// @param op a number of SearchOperator.
    /// @param term what the text is compared with, folded as the text is.
    TextTest(int op, const QString &term);

    /// False for an operator that compares no texts.
    [[nodiscard]] bool isUnderstood() const;
    [[nodiscard]] bool operator()(std::string_view text) const;

    [[nodiscard]] int op() const { return m_op; }
    [[nodiscard]] const std::string &term() const { return m_term; }

private:
    [[nodiscard]] bool containsWords(std::string_view text) const;

    int m_op;
    std::string m_term;
    std::vector<std::string> m_words; ///< Of the term, for the operator that compares words.
};

} // namespace placesd
