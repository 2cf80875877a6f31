// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <random>
#include <string>
#include <vector>

/// Requests with changed or missing bytes, and sometimes random or too many bytes. They may add a place, but never
/// change or remove a stored one.
class HostileRequests
{
public:
    explicit HostileRequests(unsigned seed)
        : m_random(seed)
    {}

    std::string next()
    {
        const auto kind = m_random() % 500;
        if (kind == 0)
            return std::string(5 * 1024 * 1024, 'x');
        std::string bytes = kind < 20 ? std::string(8 + m_random() % 5000, 'x') : m_seeds[m_random() % m_seeds.size()];
        const std::size_t changes = kind < 20 ? bytes.size() : 1 + m_random() % 8;
        for (std::size_t i = 0; i < changes; ++i)
            bytes[TYPE_SIZE + m_random() % (bytes.size() - TYPE_SIZE)] = static_cast<char>(m_random());
        if (m_random() % 4 == 0)
            bytes.resize(m_random() % bytes.size());
        return bytes;
    }

private:
    /// The type of a request is not changed.
    static constexpr std::size_t TYPE_SIZE = 4;

    std::mt19937 m_random;
    const std::vector<std::string> m_seeds = {
        wire::message(requests::head(requests::Type::AddPlace, 2) + sample::placeFields(-1, "")),
        wire::message(requests::head(requests::Type::GetTags)),
        requests::find(
            5, 0,
            requests::rule(requests::Kind::And, {requests::rule(requests::Kind::UnaryString, requests::Rules::Name,
                                                                requests::Operator::Contains, "caf")}))};
};
