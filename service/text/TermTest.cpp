// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/TermTest.h"

#include "text/TextKeys.h"

namespace placesd
{

TermTest::TermTest(const QString &term, Reading reading)
    : m_reading(std::move(reading))
    , m_term(searchKey(term).toStdString())
{
    const auto &wordings = m_reading.wordings;
    if (std::none_of(wordings.begin(), wordings.end(), [](const Wording &wording) { return wording.isEmpty(); }))
        m_expression = m_reading.expression();
}

bool TermTest::operator()(std::string_view key) const
{
    if (!hasWords())
        return searchKeyIn(key).find(m_term) != std::string_view::npos;
    return std::any_of(m_reading.wordings.begin(), m_reading.wordings.end(),
                       [key](const Wording &wording) { return wording.isIn(key); });
}

} // namespace placesd
