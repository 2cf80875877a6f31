// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"
#include "places/SearchOperator.h"
#include "protocol/ProtocolTypes.h"
#include "search/SearchRulePrivate.h"
#include "store/Records.h"
#include "support/Wire.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

/// Requests field by field, and sockets to send them, for tests of requests that our clients never send.
namespace requests
{

using namespace wire;
using Type = orix_places_protocol::MessageType;
using Kind = orix_places_protocol::SearchRuleKind;
using Rules = vela::platform::places::SearchRulePrivate;
using Operator = vela::platform::places::SearchOperator;

inline Fields head(Type type, int perimeter = 0, const std::string &key = "")
{
    return {i32(static_cast<int>(type)), i32(perimeter), text(key)};
}

inline Fields rule(Kind kind, int field = 0, int op = Operator::None, const std::string &value = "", int members = 0)
{
    return {i32(static_cast<int>(kind)), i32(field), i32(op), text(value), text(""), i32(0), i32(members)};
}
/// Rules of several members.
inline Fields rule(Kind kind, const std::vector<Fields> &members)
{
    Fields all = rule(kind, 0, Operator::None, "", static_cast<int>(members.size()));
    for (const Fields &member : members)
        all = all + member;
    return all;
}
const Fields EVERYTHING = rule(Kind::Abstract);
/// A sort rule that sorts nothing: kind, order, field, members.
const Fields UNSORTED = {i32(1), i32(1), i32(0), i32(0)};

inline std::string find(int count, int offset, const Fields &searchRule = EVERYTHING, const Fields &sortRule = UNSORTED,
                        bool headerOnly = true, int perimeter = 0, Type type = Type::FindPlaces)
{
    return message(head(type, perimeter) + Fields{i32(count), i32(offset)} + coordinate(0, 0, 0, 0, 0)
                   + Fields{flag(headerOnly)} + searchRule + sortRule + Fields{i32(-1), i32(-1)});
}

/// A request about a stored place.
inline std::string withId(Type type, long long id, const Fields &more = {}, int perimeter = 0)
{
    return message(head(type, perimeter) + Fields{i64(id)} + more);
}

inline std::string fetch(long long id, int perimeter = 0, const std::string &term = "")
{
    return withId(Type::GetPlace, id, {text(""), text(""), text(term)}, perimeter);
}

/// The request that stores a place, or changes one that has an id.
inline std::string store(const vela::platform::places::Place &place, int perimeter = 0)
{
    return message(head(place.isPersisted() ? Type::UpdatePlace : Type::AddPlace, perimeter))
           + placesd::fullRecordOf(place);
}

inline vela::system::channel::Descriptor connectTo(const std::string &path)
{
    vela::system::channel::Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.c_str());
    EXPECT_EQ(::connect(socket.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    return socket;
}

} // namespace requests
