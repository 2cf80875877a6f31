// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/DatabasePages.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <numeric>
#include <stdexcept>

namespace placesd
{

namespace
{

constexpr char MAGIC[] = "SQLite format 3";
/// For a file whose first page is lost. The service creates all databases with this page size.
constexpr std::uint32_t USUAL_PAGE_SIZE = 4096;
constexpr std::uint32_t LEAST_PAGE_SIZE = 512;
constexpr std::uint32_t MOST_PAGE_SIZE = 65536;
constexpr std::uint32_t LEAST_USABLE_SIZE = 480;

// Offsets of fields in the first page, in a frame of the log and in the header of the log; all but the first are 4-byte
// numbers.
constexpr int PAGE_SIZE_AT = 16;
constexpr int RESERVED_AT = 20;
constexpr int FREE_TRUNK_AT = 32;
constexpr int HEADER_SIZE = 100;
constexpr int LOG_MAGIC_AT = 0;
constexpr int LOG_PAGE_SIZE_AT = 8;
constexpr int LOG_SALT_AT = 16;
constexpr int LOG_CHECKSUM_AT = 24;
constexpr int LOG_HEADER_SIZE = 32;
constexpr int FRAME_COMMIT_AT = 4;
constexpr int FRAME_SALT_AT = 8;
constexpr int FRAME_CHECKSUM_AT = 16;
constexpr int FRAME_HEADER_SIZE = 24;
constexpr int SALT_SIZE = 8;
/// Magic number of the log; the last bit means that checksums use big-endian numbers.
constexpr std::uint32_t LOG_MAGIC = 0x377f0682;

std::uint32_t numberAt(std::string_view bytes, std::size_t at)
{
    return qFromBigEndian<quint32>(bytes.data() + at);
}

bool isPageSize(std::uint32_t size)
{
    return size >= LEAST_PAGE_SIZE && size <= MOST_PAGE_SIZE && (size & (size - 1)) == 0;
}

/// Bytes at an offset of a file; empty when the file is too short.
std::string bytesAt(QFile &file, qint64 at, std::uint32_t size)
{
    std::string bytes(size, '\0');
    const bool isRead = file.seek(at) && file.read(bytes.data(), size) == static_cast<qint64>(size);
    return isRead ? bytes : std::string();
}

/// Cumulative checksum of the log's frames.
struct Checksum
{
    bool isBigEndian;
    std::uint32_t first = 0;
    std::uint32_t second = 0;

    void add(std::string_view bytes)
    {
        for (std::size_t i = 0; i + 8 <= bytes.size(); i += 8) {
            first += number(bytes, i) + second;
            second += number(bytes, i + 4) + first;
        }
    }
    [[nodiscard]] bool isAt(std::string_view bytes, std::size_t at) const
    {
        return numberAt(bytes, at) == first && numberAt(bytes, at + 4) == second;
    }

private:
    [[nodiscard]] std::uint32_t number(std::string_view bytes, std::size_t at) const
    {
        return isBigEndian ? numberAt(bytes, at) : qFromLittleEndian<quint32>(bytes.data() + at);
    }
};

} // namespace

DatabasePages::DatabasePages(const std::string &path)
    : m_file(QFile::decodeName(path.c_str()))
    , m_log(QFile::decodeName((path + "-wal").c_str()))
    , m_pageSize(USUAL_PAGE_SIZE)
    , m_usableSize(USUAL_PAGE_SIZE)
{
    if (!std::filesystem::is_regular_file(path) || !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw std::runtime_error(path + " cannot be read");
    const bool isSizeKnown = readHeader();
    readLog(isSizeKnown);
    m_filePages = static_cast<Number>(std::min<qint64>(m_file.size() / m_pageSize, UINT32_MAX - 1));
    if (m_inLog.empty())
        m_count = m_filePages;
}

bool DatabasePages::readHeader()
{
    const std::string header = bytesAt(m_file, 0, HEADER_SIZE);
    if (header.empty() || std::memcmp(header.data(), MAGIC, sizeof MAGIC) != 0)
        return false;
    const std::uint32_t size = qFromBigEndian<quint16>(header.data() + PAGE_SIZE_AT);
    const std::uint32_t pageSize = size == 1 ? MOST_PAGE_SIZE : size;
    const std::uint32_t reserved = static_cast<unsigned char>(header[RESERVED_AT]);
    if (!isPageSize(pageSize) || pageSize < LEAST_USABLE_SIZE + reserved)
        return false;
    m_pageSize = pageSize;
    m_usableSize = pageSize - reserved;
    return true;
}

void DatabasePages::readLog(bool isSizeKnown)
{
    if (!std::filesystem::is_regular_file(QFile::encodeName(m_log.fileName()).toStdString())
        || !m_log.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return;
    const std::string header = bytesAt(m_log, 0, LOG_HEADER_SIZE);
    if (header.empty() || (numberAt(header, LOG_MAGIC_AT) & ~1U) != LOG_MAGIC)
        return;
    const std::uint32_t size = numberAt(header, LOG_PAGE_SIZE_AT);
    if (!isPageSize(size) || (isSizeKnown && size != m_pageSize))
        return;
    if (!isSizeKnown)
        m_pageSize = m_usableSize = size;
    readFrames(header);
}

void DatabasePages::readFrames(std::string_view header)
{
    Checksum checksum{(numberAt(header, LOG_MAGIC_AT) & 1U) != 0};
    checksum.add(header.substr(0, LOG_CHECKSUM_AT));
    if (!checksum.isAt(header, LOG_CHECKSUM_AT))
        return;
    std::unordered_map<Number, qint64> uncommitted;
    for (qint64 at = LOG_HEADER_SIZE;; at += FRAME_HEADER_SIZE + m_pageSize) {
        const std::string frame = bytesAt(m_log, at, FRAME_HEADER_SIZE + m_pageSize);
        const std::string_view bytes = frame;
        if (frame.empty() || bytes.substr(FRAME_SALT_AT, SALT_SIZE) != header.substr(LOG_SALT_AT, SALT_SIZE))
            return;
        checksum.add(bytes.substr(0, FRAME_SALT_AT));
        checksum.add(bytes.substr(FRAME_HEADER_SIZE));
        if (!checksum.isAt(bytes, FRAME_CHECKSUM_AT) || numberAt(bytes, 0) == 0)
            return;
        uncommitted[numberAt(bytes, 0)] = at + FRAME_HEADER_SIZE;
        if (const Number count = numberAt(bytes, FRAME_COMMIT_AT); count != 0) {
            for (const auto &[page, place] : uncommitted)
                m_inLog[page] = place;
            uncommitted.clear();
            m_count = count;
        }
    }
}

std::vector<DatabasePages::Number> DatabasePages::numbers() const
{
    std::vector<Number> numbers(std::min(m_count, m_filePages));
    std::iota(numbers.begin(), numbers.end(), 1);
    for (const auto &[page, place] : m_inLog) {
        if (page > m_filePages && page <= m_count)
            numbers.push_back(page);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::string DatabasePages::page(Number number)
{
    if (number < 1 || number > m_count)
        return {};
    const auto newest = m_inLog.find(number);
    return newest != m_inLog.end() ? bytesAt(m_log, newest->second, m_pageSize)
                                   : bytesAt(m_file, qint64{number - 1} * m_pageSize, m_pageSize);
}

std::unordered_set<DatabasePages::Number> DatabasePages::freePages()
{
    std::unordered_set<Number> free;
    const std::string first = page(1);
    if (first.size() < HEADER_SIZE || std::memcmp(first.data(), MAGIC, sizeof MAGIC) != 0)
        return free;
    for (Number trunk = numberAt(first, FREE_TRUNK_AT); trunk != 0 && free.insert(trunk).second;) {
        const std::string bytes = page(trunk);
        if (bytes.empty())
            break;
        const std::size_t most = bytes.size() / 4 - 2;
        const std::size_t leaves = std::min<std::size_t>(numberAt(bytes, 4), most);
        for (std::size_t i = 0; i < leaves; ++i)
            free.insert(numberAt(bytes, 8 + 4 * i));
        trunk = numberAt(bytes, 0);
    }
    return free;
}

} // namespace placesd
