// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <string_view>
#include <vector>

/// The forms in which texts are compared, searched and sorted. The full-text index holds search keys and takes for a
/// word what words() takes for one, so that every operator sees a name alike.
namespace placesd
{

/// Without case and accents: what two texts have in common that are the same to whoever searches. Signs that are no
/// accents, such as the vowels of many scripts, stay.
QString searchKey(const QString &text);

/// Without case: what names are sorted by, whatever the locale.
QString sortKey(const QString &text);

/// The words of a text, each once: runs of letters, digits, marks and pictographs.
QStringList words(const QString &text);

/// True when every word of `wanted` starts one of `there`, which are sorted.
bool startWords(const QStringList &there, const QStringList &wanted);

/// True when every word of `term` starts a word of `text`; where the term has no words, when it occurs in the text.
bool containsWords(const QString &text, const QString &term);

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
