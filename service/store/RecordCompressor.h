// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

struct ZSTD_CCtx_s;
struct ZSTD_DCtx_s;

namespace placesd
{

/// Packs the records of places as Zstandard frames (RFC 8878). Records are short and much alike, so they are packed by
/// a dictionary of what they have in common. Belongs to one thread.
class RecordCompressor
{
public:
    /// @param dictionary the one that everything in a database is packed by; it is kept there.
    explicit RecordCompressor(const std::string &dictionary);
    ~RecordCompressor();

    /// A dictionary for a new database: places as this version writes them. It is the same in all databases so far, and
    /// Repair tries it for one that has lost its own.
    static std::string makeDictionary();

    /// Throws std::bad_alloc.
    std::string pack(const std::string &record);
    /// Throws UnreadablePlace for what is no packed record, or one longer than a record may be.
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
