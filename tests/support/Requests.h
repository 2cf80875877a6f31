// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"
#include "support/Wire.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

/// Requests field by field, and sockets to send them on: for what no client of ours would do.
namespace requests
{

using namespace wire;

inline Fields head(int type, int perimeter = 0, const std::string &key = "")
{
    return {i32(type), i32(perimeter), text(key)};
}

inline Fields rule(int kind, int field, int op, const std::string &value, int members)
{
    return {i32(kind), i32(field), i32(op), text(value), text(""), i32(0), i32(members)};
}

inline std::string find(int count, int offset, const Fields &searchRule,
                        const Fields &sortRule = {i32(1), i32(1), i32(0), i32(0)}, bool headerOnly = true)
{
    return message(head(13) + Fields{i32(count), i32(offset)} + coordinate(0, 0, 0, 0, 0) + Fields{flag(headerOnly)}
                   + searchRule + sortRule + Fields{i32(-1), i32(-1)});
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
