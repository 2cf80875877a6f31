// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/Wording.h"

namespace placesd
{

/// Whether a place has what a term asks for, by a reading of the term. A term without words, such as "--", is looked
/// for in names as it is.
class TermTest
{
public:
    TermTest(const QString &term, Reading reading);

    /// Whether names are looked at, or all texts.
    [[nodiscard]] bool isOfNames() const { return m_reading.inNames || !hasWords(); }
    [[nodiscard]] const Reading &reading() const { return m_reading; }
    [[nodiscard]] bool hasWords() const { return !m_expression.empty(); }
    /// Expression for a full-text index of such keys; empty without words.
    [[nodiscard]] const std::string &expression() const { return m_expression; }

    /// Whether another test of the same term gives the same answers.
    [[nodiscard]] bool isLike(const TermTest &other) const
    {
        return isOfNames() == other.isOfNames() && m_expression == other.m_expression;
    }

    /// @param key the index key of the name or of all texts.
    [[nodiscard]] bool operator()(std::string_view key) const;

private:
    Reading m_reading;
    std::string m_expression;
    std::string m_term; ///< Its search key.
};

} // namespace placesd
