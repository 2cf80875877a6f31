// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "LargeNumbers.h"

#include <QtCore/QByteArray>

#include <charconv>
#include <cmath>
#include <cstdint>

#include <rapidjson/document.h>
#include <rapidjson/reader.h>

namespace formats
{

/// A RapidJSON handler that receives 64-bit integers exactly and all other numbers as the nearest double. The parser's
/// own conversions are slightly inexact, and undefined for a zero with an exponent.
template <typename Handler>
class ExactNumbers : public Handler
{
public:
    using Handler::Handler;

    /// Parses a text into this handler. A number beyond the range of double is an error.
    rapidjson::ParseResult parse(const char *text)
    {
        constexpr unsigned FLAGS = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag
                                   | rapidjson::kParseValidateEncodingFlag;
        rapidjson::StringStream stream(text);
        rapidjson::Reader reader;
        return reader.Parse<FLAGS>(stream, *this);
    }

    /// Called by the parser for each number.
    bool RawNumber(const char *digits, rapidjson::SizeType length, bool /*copy*/)
    {
        std::int64_t whole = 0;
        std::uint64_t large = 0;
        if (isWhole(digits, length, whole))
            return this->Int64(whole);
        if (isWhole(digits, length, large))
            return this->Uint64(large);
        const double real = nearestDouble(QByteArray::fromRawData(digits, static_cast<int>(length)));
        return std::isfinite(real) && this->Double(real);
    }

private:
    template <typename Integer>
    static bool isWhole(const char *digits, rapidjson::SizeType length, Integer &value)
    {
        const auto [stop, error] = std::from_chars(digits, digits + length, value);
        return stop == digits + length && error == std::errc();
    }
};

/// A JSON document with exact numbers.
class ExactDocument : public ExactNumbers<rapidjson::Document>
{
public:
    /// Replaces the content of the document by a text; null after an error.
    rapidjson::ParseResult read(const char *text)
    {
        rapidjson::ParseResult result;
        auto build = [&](rapidjson::Document & /*self*/) { return !(result = parse(text)).IsError(); };
        SetNull();
        Populate(build);
        return result;
    }
};

} // namespace formats
