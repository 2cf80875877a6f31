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

/// Rows of tables and indexes, as they are on the pages of a database that may be damaged. Every number of a page is
/// checked; no page is read twice in one tree, and overflow pages no oftener than a sound file could ask for. Belongs
/// to one thread.
class PageScan
{
public:
    using Number = DatabasePages::Number;

    enum class Type
    {
        Null,
        Integer,
        Real, ///< Its value is not read.
        Text,
        Blob,
        Lost ///< On an overflow page that cannot be read.
    };
    struct Value
    {
        Type type = Type::Null;
        qint64 number = 0;      ///< Of an integer.
        std::string bytes = {}; ///< Of a text or blob.
    };
    struct Row
    {
        qint64 id = 0; ///< 0 in an index.
        std::vector<Value> values;
        bool isInTree = false; ///< Found from the root of its table, and not by chance.

        /// Whether its values have these types; a lost one may be a blob.
        [[nodiscard]] bool has(std::initializer_list<Type> types) const;
    };
    /// Takes a row. False for one that cannot be of that table.
    using Visit = std::function<bool(const Row &)>;

    explicit PageScan(DatabasePages &pages);

    /// Visits the rows of a table or index in its tree. False when a page or a row of the tree cannot be read.
    /// @param root 0 for one that is not known. @param seen receives the pages of the tree.
    bool walk(Number root, const Visit &visit, std::unordered_set<Number> &seen);
    /// Visits the rows of all leaves but those in `seen` and the free ones: every row that a tree, whose inner pages
    /// cannot be read, may have.
    void visitRest(const Visit &visit, const std::unordered_set<Number> &seen);
    /// Walks, and visits the rest when the tree cannot be read as a whole. Returns whether it can.
    bool read(Number root, const Visit &visit, std::unordered_set<Number> seen = {});

private:
    struct Page;
    Page open(Number number);
    /// Visits the rows on a page. False when one of them cannot be read, or is none of the table.
    bool visitRows(const Page &page, const Visit &visit, bool isInTree);
    bool readRow(const Page &page, std::size_t at, Row &row);
    std::string payload(const Page &page, std::size_t at, quint64 size);
    /// Adds the pages that an inner page leads to.
    static void addChildren(const Page &page, std::vector<Number> &children);

    DatabasePages &m_pages;
    qint64 m_overflowsLeft; ///< Overflow pages that may still be read.
};

} // namespace placesd
