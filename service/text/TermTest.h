// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/Wording.h"

namespace placesd
{

/// Tests whether a place matches a term by a reading of the term. A term without words, such as "--", is compared with
/// names literally.
class TermTest
{
public:
    TermTest(const QString &term, Reading reading);

    /// Whether only names are tested, or all texts.
    [[nodiscard]] bool isOfNames() const { return m_reading.inNames || !hasWords(); }
    [[nodiscard]] const Reading &reading() const { return m_reading; }
    [[nodiscard]] bool hasWords() const { return !m_expression.empty(); }
    /// Full-text expression for these keys; empty without words.
    [[nodiscard]] const std::string &expression() const { return m_expression; }

    /// Whether another test of the same term is equivalent.
    [[nodiscard]] bool isLike(const TermTest &other) const
    {
        return isOfNames() == other.isOfNames() && m_expression == other.m_expression;
    }

    /// @param key index key of the name or of all texts.
    [[nodiscard]] bool operator()(std::string_view key) const;

private:
    Reading m_reading;
    std::string m_expression;
    std::string m_term; ///< The search key of the term.
};

} // namespace placesd
