// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/PageScan.h"

#include "Limits.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <optional>

namespace placesd
{

namespace
{

enum PageType : unsigned char
{
    InnerIndex = 2,
    InnerTable = 5,
    LeafIndex = 10,
    LeafTable = 13
};

/// Size of the file header, which precedes the header of page 1.
constexpr std::size_t FILE_HEADER_SIZE = 100;
constexpr std::size_t LEAF_HEADER_SIZE = 8;
constexpr std::size_t INNER_HEADER_SIZE = 12;
constexpr std::size_t COUNT_AT = 3;
constexpr std::size_t RIGHT_CHILD_AT = 8;
constexpr std::size_t CHILD_SIZE = 4;
/// Longest row in bytes: two records and the other columns.
constexpr quint64 ROW_SIZE = 4 * limits::RECORD_SIZE;
/// Number of trees that are read one after the other; each may read every overflow page once.
constexpr qint64 MAX_TREES = 16;

/// Reads a varint of one to nine bytes and removes it; std::nullopt when the bytes end early.
std::optional<quint64> takeVarint(std::string_view &bytes)
{
    constexpr std::size_t MOST_BYTES = 9;
    quint64 value = 0;
    for (std::size_t i = 0; i < std::min(MOST_BYTES, bytes.size()); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const bool isWhole = i + 1 == MOST_BYTES;
        value = isWhole ? value << 8 | byte : value << 7 | (byte & 0x7FU);
        if (isWhole || byte < 0x80) {
            bytes.remove_prefix(i + 1);
            return value;
        }
    }
    return std::nullopt;
}

/// Size of a value by its serial type; std::nullopt for an invalid type.
std::optional<quint64> sizeOf(quint64 serialType)
{
    constexpr quint64 SIZES[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
    if (serialType < std::size(SIZES))
        return SIZES[serialType];
    if (serialType < 12)
        return std::nullopt;
    return (serialType - 12) / 2;
}

PageScan::Value valueOf(quint64 serialType, std::string_view bytes)
{
    constexpr quint64 REAL = 7;
    constexpr quint64 ONE = 9;
    if (serialType == 0)
        return {PageScan::Type::Null};
    if (serialType >= 12)
        return {serialType % 2 == 0 ? PageScan::Type::Blob : PageScan::Type::Text, 0, std::string(bytes)};
    if (serialType == REAL)
        return {PageScan::Type::Real};
    if (bytes.empty())
        return {PageScan::Type::Integer, serialType == ONE};
    quint64 number = static_cast<signed char>(bytes[0]) < 0 ? ~quint64{0} : 0;
    for (const char byte : bytes)
        number = number << 8 | static_cast<unsigned char>(byte);
    return {PageScan::Type::Integer, static_cast<qint64>(number)};
}

/// The available part of a range of bytes.
std::string_view partOf(std::string_view bytes, quint64 at, quint64 size)
{
    return bytes.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(size));
}

/// Parses the bytes of a row; the last ones may be missing. False when they are not a row.
bool parseRow(std::string_view bytes, quint64 size, std::vector<PageScan::Value> &values)
{
    std::string_view rest = bytes;
    const std::optional<quint64> headerSize = takeVarint(rest);
    if (!headerSize || *headerSize > bytes.size() || *headerSize < bytes.size() - rest.size())
        return false;
    std::string_view header = partOf(bytes, 0, *headerSize).substr(bytes.size() - rest.size());
    quint64 at = *headerSize;
    while (!header.empty()) {
        const std::optional<quint64> type = takeVarint(header);
        const std::optional<quint64> length = type ? sizeOf(*type) : std::nullopt;
        if (!length || *length > size - at)
            return false;
        const bool isThere = at + *length <= bytes.size();
        values.push_back(isThere ? valueOf(*type, partOf(bytes, at, *length)) : PageScan::Value{PageScan::Type::Lost});
        at += *length;
    }
    return at == size;
}

} // namespace

/// A page of a tree. Its cells are offsets of rows within the page.
struct PageScan::Page
{
    Number number = 0;
    std::string bytes = {}; ///< Without the reserved ones.
    PageType type = {};
    std::vector<std::size_t> cells = {};
    bool isWhole = false; ///< The whole page is valid.

    [[nodiscard]] bool isLeaf() const { return type == LeafIndex || type == LeafTable; }
    [[nodiscard]] bool isTable() const { return type == LeafTable || type == InnerTable; }
    [[nodiscard]] std::size_t start() const { return number == 1 ? FILE_HEADER_SIZE : 0; }
};

bool PageScan::Row::has(std::initializer_list<Type> types) const
{
    return values.size() == types.size()
           && std::equal(values.begin(), values.end(), types.begin(), [](const Value &value, Type type) {
                  return value.type == type || (value.type == Type::Lost && type == Type::Blob);
              });
}

PageScan::PageScan(DatabasePages &pages)
    : m_pages(pages)
    , m_overflowsLeft(MAX_TREES * static_cast<qint64>(pages.numbers().size()))
{}

PageScan::Page PageScan::open(Number number)
{
    Page page{number, m_pages.page(number)};
    if (page.bytes.empty())
        return page;
    page.bytes.resize(m_pages.usableSize());
    page.type = PageType(page.bytes[page.start()]);
    if (!page.isLeaf() && page.type != InnerIndex && page.type != InnerTable)
        return page;
    const auto count = qFromBigEndian<quint16>(page.bytes.data() + page.start() + COUNT_AT);
    const std::size_t pointers = page.start() + (page.isLeaf() ? LEAF_HEADER_SIZE : INNER_HEADER_SIZE);
    const std::size_t cells = pointers + std::size_t{2} * count;
    if (cells > page.bytes.size())
        return page;
    page.isWhole = true;
    for (std::size_t at = pointers; at < cells; at += 2) {
        const std::size_t cell = qFromBigEndian<quint16>(page.bytes.data() + at);
        if (cell >= cells && cell + CHILD_SIZE <= page.bytes.size())
            page.cells.push_back(cell);
        else
            page.isWhole = false;
    }
    return page;
}

bool PageScan::walk(Number root, const Visit &visit, std::unordered_set<Number> &seen)
{
    bool isWhole = true;
    std::vector<Number> next{root};
    while (!next.empty()) {
        const Number number = next.back();
        next.pop_back();
        const bool isNew = seen.insert(number).second;
        const Page page = isNew ? open(number) : Page();
        isWhole = page.isWhole && isWhole;
        if (page.cells.empty() && !page.isWhole)
            continue;
        if (!page.isLeaf())
            addChildren(page, next);
        if (page.type != InnerTable)
            isWhole = visitRows(page, visit, true) && isWhole;
    }
    return isWhole;
}

void PageScan::addChildren(const Page &page, std::vector<Number> &children)
{
    const auto childAt = [&page](std::size_t at) { return qFromBigEndian<quint32>(page.bytes.data() + at); };
    children.push_back(childAt(page.start() + RIGHT_CHILD_AT));
    for (const std::size_t cell : page.cells)
        children.push_back(childAt(cell));
}

void PageScan::visitRest(const Visit &visit, const std::unordered_set<Number> &seen)
{
    const std::unordered_set<Number> free = m_pages.freePages();
    for (const Number number : m_pages.numbers()) {
        if (seen.count(number) + free.count(number) > 0)
            continue;
        const Page page = open(number);
        if (page.type != InnerTable)
            visitRows(page, visit, false);
    }
}

bool PageScan::read(Number root, const Visit &visit, std::unordered_set<Number> seen)
{
    if (walk(root, visit, seen))
        return true;
    visitRest(visit, seen);
    return false;
}

bool PageScan::visitRows(const Page &page, const Visit &visit, bool isInTree)
{
    bool isWhole = true;
    for (const std::size_t cell : page.cells) {
        Row row;
        row.isInTree = isInTree;
        const std::size_t at = page.isLeaf() ? cell : cell + CHILD_SIZE;
        isWhole = readRow(page, at, row) && visit(row) && isWhole;
    }
    return isWhole;
}

bool PageScan::readRow(const Page &page, std::size_t at, Row &row)
{
    std::string_view rest = std::string_view(page.bytes).substr(at);
    const std::optional<quint64> size = takeVarint(rest);
    const std::optional<quint64> id = page.isTable() ? takeVarint(rest) : std::optional<quint64>(0);
    if (!size || !id || *size > ROW_SIZE)
        return false;
    row.id = static_cast<qint64>(*id);
    const std::string bytes = payload(page, page.bytes.size() - rest.size(), *size);
    return parseRow(bytes, *size, row.values);
}

/// The readable bytes of a row that begins on the page.
std::string PageScan::payload(const Page &page, std::size_t at, quint64 size)
{
    const quint64 usable = page.bytes.size();
    const quint64 most = page.isTable() ? usable - 35 : (usable - 12) * 64 / 255 - 23;
    const quint64 least = (usable - 12) * 32 / 255 - 23;
    const quint64 part = least + (size - std::min(size, least)) % (usable - CHILD_SIZE);
    const quint64 local = size <= most ? size : part <= most ? part : least;
    const bool overflows = local < size;
    if (at + local + (overflows ? CHILD_SIZE : 0) > usable)
        return {};
    std::string bytes(partOf(page.bytes, at, local));
    std::vector<Value> values;
    if (!overflows || !parseRow(bytes, size, values)) // do not follow the overflow pages of an invalid row
        return bytes;
    Number next = qFromBigEndian<quint32>(page.bytes.data() + at + local);
    while (bytes.size() < size && m_overflowsLeft-- > 0) {
        const std::string overflow = m_pages.page(next);
        if (overflow.empty())
            break;
        bytes.append(partOf(overflow, CHILD_SIZE, std::min(usable - CHILD_SIZE, size - bytes.size())));
        next = qFromBigEndian<quint32>(overflow.data());
    }
    return bytes;
}

} // namespace placesd
