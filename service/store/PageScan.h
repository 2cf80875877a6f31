// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/DatabasePages.h"

#include <QtCore/QtGlobal>

#include <functional>
#include <initializer_list>
#include <string>
#include <unordered_set>
#include <vector>

namespace placesd
{

/// Reads rows of tables and indexes from the pages of a database that may be damaged. Checks every number on a page;
/// reads no page twice in a tree, and overflow pages no more often than a sound file needs. Not thread-safe.
class PageScan
{
public:
    using Number = DatabasePages::Number;

    enum class Type
    {
        Null,
        Integer,
        Real, ///< The value is not read.
        Text,
        Blob,
        Lost ///< On an overflow page that cannot be read.
    };
    struct Value
    {
        Type type = Type::Null;
        qint64 number = 0;      ///< Value of an integer.
        std::string bytes = {}; ///< Value of a text or blob.
    };
    struct Row
    {
        qint64 id = 0; ///< 0 in an index.
        std::vector<Value> values;
        bool isInTree = false; ///< Found from the root of its table, not by scanning leaves.

        /// Whether the values have these types; a lost value matches a blob.
        [[nodiscard]] bool has(std::initializer_list<Type> types) const;
    };
    /// Takes a row. Returns false for a row that cannot be from the table.
    using Visit = std::function<bool(const Row &)>;

    explicit PageScan(DatabasePages &pages);

    /// Visits the rows of a table or index. False when a page or a row of the tree cannot be read.
    /// @param root 0 when it is unknown. @param seen receives the pages of the tree.
    bool walk(Number root, const Visit &visit, std::unordered_set<Number> &seen);
    /// Visits the rows of all leaves except those in `seen` and free pages. It finds the rows of a tree whose inner
    /// pages are damaged.
    void visitRest(const Visit &visit, const std::unordered_set<Number> &seen);
    /// Calls walk(), and visitRest() when the tree is not completely readable. Returns whether it is.
    bool read(Number root, const Visit &visit, std::unordered_set<Number> seen = {});

private:
    struct Page;
    Page open(Number number);
    /// Visits the rows on a page. False when a row cannot be read or is not from the table.
    bool visitRows(const Page &page, const Visit &visit, bool isInTree);
    bool readRow(const Page &page, std::size_t at, Row &row);
    std::string payload(const Page &page, std::size_t at, quint64 size);
    /// Adds the children of an inner page.
    static void addChildren(const Page &page, std::vector<Number> &children);

    DatabasePages &m_pages;
    qint64 m_overflowsLeft; ///< Number of overflow pages that may still be read.
};

} // namespace placesd
