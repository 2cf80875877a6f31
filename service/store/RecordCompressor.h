// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

struct ZSTD_CCtx_s;
struct ZSTD_DCtx_s;

namespace placesd
{

/// Compresses records of places as Zstandard frames (RFC 8878). Records are short and similar, so it uses a dictionary
/// of common content. Not thread-safe.
class RecordCompressor
{
public:
    /// @param dictionary of the database; it stays the same for all of its records.
    explicit RecordCompressor(const std::string &dictionary);
    ~RecordCompressor();

    /// A dictionary for a new database, made of sample places in the current record form. So far it is the same in all
    /// databases; Repair tries it for a database that lost its own.
    static std::string makeDictionary();

    /// Throws std::bad_alloc.
    std::string pack(const std::string &record);
    /// Throws UnreadablePlace for invalid data, and for a record longer than the limit.
    std::string unpack(const void *bytes, std::size_t size);

private:
    struct Free
    {
        void operator()(ZSTD_CCtx_s *context) const;
        void operator()(ZSTD_DCtx_s *context) const;
    };
    std::unique_ptr<ZSTD_CCtx_s, Free> m_packing;
    std::unique_ptr<ZSTD_DCtx_s, Free> m_unpacking;
};

} // namespace placesd
